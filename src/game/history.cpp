#include "game/history.h"

#include "moves/makemove.h"
#include "moves/predicates.h"

#include <algorithm>
#include <cassert>

BookState book_state;
StateHistory state_history;

std::uint8_t IsHistoryFull() {
    return state_history.count >= MAX_GAME_PLIES || zobrist_ply_number >= MAX_GAME_PLIES;
}

void NewStateHistory() {
    state_history.count = 0;
    std::ranges::copy(position, state_history.positions[0]);
    state_history.game_states[0] = game_state;
    state_history.book_states[0] = book_state;
}

void SaveIntoStateHistory(StateHistory& history, const Move& move, const GameState& game,
                          const BookState& book) {
    assert(history.count >= 0 && history.count < HISTORY_SIZE - 1);
    ++history.count;
    std::ranges::copy(position, history.positions[history.count]);
    history.moves[history.count] = move;
    history.game_states[history.count] = game;
    history.book_states[history.count] = book;
}

void LoadFromStateHistory(StateHistory& history, GameState& game, BookState& book) {
    assert(history.count > 0);
    --history.count;
    game = history.game_states[history.count];
    book = history.book_states[history.count];
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
    LoadFromStateHistory(state_history, game_state, book_state);
}
