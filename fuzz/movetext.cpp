// Move tokens, in either notation, from one of a few positions; then the game as PGN, read again.
#include "board/move.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "mutate.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "play/newgame.h"

#include <algorithm>
#include <span>

namespace {

constexpr const char* STARTS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "1n2k1n1/P1P3P1/8/2pPp3/5Pp1/Q6Q/p1p2p1p/Q3K2R b K f3 0 1",
};

// The game's moves, written and read again, are the same ones.
void CheckMoveList(std::span<const Move> moves) {
    static char text[1 << 16];
    std::FILE* file = fmemopen(text, sizeof text, "w+");
    WritePgnMoveList(file, moves, {1, 80, "*", WrittenSan});
    std::fputc('\n', file);
    std::rewind(file);
    char token[MOVE_TOKEN_SIZE];
    std::size_t read = 0;
    for (; ReadNextPgnMove(file, token); ++read) {
        Move move;
        Require(read < moves.size() && ParseMove(token, move) && IsEqualMove(move, moves[read]) &&
                    move.promoted == moves[read].promoted,
                "a game's move is read as it was written");
        MakeForceMove(move);
        SaveIntoStateHistory(move);
    }
    Require(read == moves.size() || IsEndOfGame(LastMove()), "the game is read to its end");
    std::fclose(file);
}

// The first byte chooses where the moves begin.
void PlayGame(std::string_view text) {
    ResetEngine(false);
    SetBoardFen(STARTS[static_cast<unsigned char>(text[0]) % std::size(STARTS)]);
    text.remove_prefix(1);
    for (std::string_view token; !(token = NextWord(text)).empty();) {
        PlayUserMove(token);
    }
}

} // namespace

std::string MutateInput(std::string_view text) {
    if (text.empty()) return " ";
    const std::string start(1, text[0]);
    Parts tokens = SplitText(text.substr(1), ' ');
    ChangeParts(tokens, [&start](std::span<const std::string> before) {
        PlayGame(start + JoinedText(before, ' '));
        return SomeMove();
    });
    return start + JoinedText(tokens, ' ');
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    PlayGame({reinterpret_cast<const char*>(data), size});
    const std::int32_t count = state_history.count;
    static Move moves[HISTORY_SIZE];
    std::copy_n(state_history.moves + 1, count, moves);
    CheckUndo();
    CheckMoveList({moves, static_cast<std::size_t>(count)});
    CheckFen();
    return 0;
}
