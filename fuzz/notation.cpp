// Fuzzes FEN, PGN and move notation. Each input sets up a position and plays moves. The moves are
// then undone, written as PGN and read again.
//
// An input has one of two forms. If the first byte is an index of STARTS, this byte selects the
// position, and the rest is a list of moves in coordinate notation or SAN. Otherwise the first line
// is a FEN, and each byte after this line selects a legal move.
#include "notation/notation.h"
#include "board/move.h"
#include "board/position.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "moves/makemove.h"
#include "notation/fen.h"
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

// Writes the moves as PGN, reads them again, and checks that they are the same moves.
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

void PlayWords(std::string_view text) {
    for (std::string_view word; !(word = NextWord(text)).empty();) {
        PlayUserMove(word);
    }
}

void PlayChoices(std::string_view text) {
    for (const char choice : text) {
        MoveList list;
        GenerateAllLegalMoves(list, LastMove());
        if (list.count == 0) return;
        PlayLegalMove(list.moves[static_cast<unsigned char>(choice) % list.count]);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const bool is_chosen = data[0] < std::size(STARTS);
    const std::size_t end = is_chosen ? 1 : std::min(text.find('\n'), size);
    ResetEngine(false);
    const Position before = board;
    if (!SetBoardFen(is_chosen ? STARTS[data[0]] : text.substr(0, end))) {
        Require(board == before, "a refused position changes nothing");
        return 0;
    }
    CheckFen();
    const Position start = board;
    (is_chosen ? PlayWords : PlayChoices)(text.substr(end));
    const std::string last = GetBoardFen();
    static Move moves[HISTORY_SIZE];
    const std::int32_t count = state_history.count;
    std::copy_n(state_history.moves + 1, count, moves);
    CheckUndo();
    Require(board == start, "undoing every move leads back to the start");
    CheckMoveList({moves, static_cast<std::size_t>(count)});
    // A FEN from the input can set the half-move clock to 100,000, the highest value that is read
    // from a FEN. If the moves increase the clock further, reading the FEN of the last position
    // changes the clock, and CheckFen would fail. The positions in STARTS have small clocks.
    if (is_chosen) CheckFen();
    Require(SetBoardFen(last), "the last position is accepted");
    CheckFen();
    return 0;
}
