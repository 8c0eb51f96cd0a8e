#include "game/history.h"

#include "board/move.h"
#include "moves/makemove.h"

#include <algorithm>
#include <cassert>

StateHistory state_history;

namespace {

void SaveNewestEntry() {
    std::ranges::copy(board.position, state_history.positions[state_history.count]);
    state_history.game_states[state_history.count] = game_state;
    state_history.book_states[state_history.count] = book_state;
}

} // namespace

bool IsHistoryFull() {
    return state_history.count >= MAX_GAME_PLIES || board.zobrist_ply_number >= MAX_GAME_PLIES;
}

void NewStateHistory() {
    state_history.count = 0;
    SaveNewestEntry();
}

void SaveIntoStateHistory(const Move& move) {
    assert(state_history.count >= 0 && state_history.count < HISTORY_SIZE - 1);
    ++state_history.count;
    state_history.moves[state_history.count] = move;
    SaveNewestEntry();
}

void LoadFromStateHistory() {
    assert(state_history.count > 0);
    --state_history.count;
    game_state = state_history.game_states[state_history.count];
    book_state = state_history.book_states[state_history.count];
}

void CountGameMove(const Move& move) {
    ++game_state.ply_count;
    game_state.no_last_move = 0;
    game_state.last_move = move;
    if (IsPawnPushMove(move) || IsCaptureMove(move)) {
        game_state.fifty_move_count = 0;
    } else {
        ++game_state.fifty_move_count;
    }
}

void MakeForceMove(const Move& move) {
    MakeMove(move);
    CountGameMove(move);
    game_state.hopeless = 0;
}

void UndoMove() {
    if (game_state.ply_count <= 0) return;
    UnMakeMove(game_state.last_move);
    LoadFromStateHistory();
}
