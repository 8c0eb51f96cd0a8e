#include "play/record.h"

#include "game/history.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "play/newgame.h"
#include "play/turns.h"

namespace {

constexpr int WIDTH = 80; // columns of a terminal

} // namespace

std::vector<Move> MovesSoFar() {
    return {state_history.moves + 1, state_history.moves + 1 + state_history.count};
}

void PlayAgain(std::span<const Move> moves) {
    for (const Move& move : moves) {
        PlayMove(WrittenMove(move));
    }
}

void WriteMovesSoFar(std::FILE* file) {
    const std::vector<Move> moves = MovesSoFar();
    RestartGame();
    WritePgnMoveList(file, moves, {pgn_game_info.first_ply, WIDTH, nullptr});
    PlayAgain(moves);
}

bool AppendGameSoFar(const char* file_name, const char* result) {
    const std::vector<Move> moves = MovesSoFar();
    PgnGameInfo info = pgn_game_info;
    CorrectPgnTagValues(info);
    SetPgnTagValueByName(info, "Result", result);
    RestartGame();
    const bool is_written = WritePgnGame(file_name, info, moves);
    PlayAgain(moves);
    return is_written;
}
