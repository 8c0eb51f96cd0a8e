#include "play/turns.h"

#include "board/move.h"
#include "board/position.h"
#include "book/book.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/blog.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "platform/channel.h"
#include "search/hash.h"
#include "search/rootsearch.h"

#include <cassert>
#include <span>
#include <string>
#include <string_view>

namespace {

// The engine's position is hopeless if the score and the material balance are both at most
// HOPELESS_EVAL centipawns, and the opponent has more than HOPELESS_OPPONENT_TIME centiseconds
// left.
constexpr std::int32_t HOPELESS_EVAL = -900;
constexpr std::uint64_t HOPELESS_OPPONENT_TIME = 2'999;

constexpr std::size_t USER_MOVE_SIZE = 32;
constexpr std::size_t OUTPUT_SIZE = 64;

struct EngineChoice {
    Move move;
    Move expected_reply;
    std::int32_t score;
};

EngineChoice ChooseMove() {
    EngineChoice choice;
    SetFakeMove(choice.expected_reply);
    choice.score = 0;
    if (!GetNextBookMove(choice.move)) {
        choice.score = FindBestMove(&choice.move, &choice.expected_reply, LastMove());
    }
    return choice;
}

// True if the engine's position after its move is hopeless. The side to move is the opponent.
// `score` is the score of the engine's move.
bool IsHopeless(std::int32_t score) {
    const Colour opponent = board.side_to_move;
    const Colour engine = Opponent(opponent);
    return score <= HOPELESS_EVAL &&
           board.piece_weight_eval[engine] - board.piece_weight_eval[opponent] <= HOPELESS_EVAL &&
           game_state.opponent_time > HOPELESS_OPPONENT_TIME;
}

void RecordEngineMove(const EngineChoice& choice) {
    game_state.last_eval = choice.score;
    game_state.expected_move = choice.expected_reply;
    CountGameMove(choice.move);
    if (!IsFakeMove(choice.expected_reply)) {
        CopyText(game_state.expected_move_text, WrittenMove(choice.expected_reply));
    }
    game_state.hopeless = IsHopeless(choice.score);
}

// Makes the move on the board and updates game_state and book_state.
void FollowMove(const Move& move) {
    MakeForceMove(move);
    SetNextBookMove(move);
    UpdateBookHelp();
}

} // namespace

void MakeEngineMove() {
    pgn_game_info.engine_color = board.side_to_move;
    if (IsHistoryFull() || !HasLegalMove(LastMove())) return;
    const EngineChoice choice = ChooseMove();
    const bool was_repetition = IsNfoldRepetition(2);
    char output[OUTPUT_SIZE] = "move ";
    CopyText(std::span(output).subspan(std::string_view(output).size()), WrittenMove(choice.move));
    MakeMove(choice.move);
    RecordEngineMove(choice);
    // The game is repeating itself: both the position before the engine's move and the position
    // after it have occurred before. In the transposition tables, store a draw score for the
    // position before the opponent's last move, so that later searches score it as a draw.
    if (was_repetition && IsNfoldRepetition(2) && choice.score >= 0) {
        ForceHashTable(zobrist_keys[board.zobrist_ply_number - 2], 0);
    }
    UpdateBookHelp();
    SendCommand(output);
    CheckEndOfGame(&game_state.last_move);
    SaveIntoStateHistory(choice.move);
    if (engine_state.ponder && !game_state.game_over && !IsFollowingBook()) PonderMove();
}

bool FindLegalMove(std::string_view token, Move& move) {
    return !IsHistoryFull() && ParseMove(token, move) && IsLegalMove(move);
}

void PlayMove(const Move& move) {
    assert(!IsHistoryFull() && IsLegalMove(move));
    FollowMove(move);
    SaveIntoStateHistory(move);
}

bool MakeUserMove(std::string_view token) {
    pgn_game_info.engine_color = Opponent(board.side_to_move);
    const std::string_view text = token.substr(0, USER_MOVE_SIZE - 1);
    Move move;
    if (!FindLegalMove(text, move)) {
        const std::string message = "Illegal move: " + std::string(text);
        SendCommand(message);
        BlogError(message);
        return false;
    }
    FollowMove(move);
    CheckEndOfGame(&move);
    SaveIntoStateHistory(move);
    return true;
}

void CheckEndOfGame(const Move* last_move) {
    const char* const line = EndOfGameLine(last_move);
    if (!line) return;
    game_state.game_over = 1;
    SendCommand(line);
}

void PonderMove() {
    engine_state.pondering = 1;
    FindBestMove(nullptr, nullptr, LastMove());
    engine_state.pondering = 0;
}

void AnalyzePosition() { FindBestMove(nullptr, nullptr, LastMove()); }
