// The state history: every position of the game with its move, game record and book position.
// Making and unmaking moves of the game.
#pragma once

#include "board/move.h"
#include "board/position.h"
#include "game/gamestate.h"

#include <cstdint>

inline constexpr int HISTORY_SIZE = 4096;

// Entry i belongs to the position after the i-th move and to ply number i of the key history;
// entry 0 is the start of the game.
struct StateHistory {
    std::int32_t count; // index of the newest entry
    Piece positions[HISTORY_SIZE][SQUARES];
    Move moves[HISTORY_SIZE]; // entry 0 is not used
    GameState game_states[HISTORY_SIZE];
    BookState book_states[HISTORY_SIZE];
};
extern StateHistory state_history;

// The longest game, in plies. It is shorter than the history allows, because the key history also
// needs room for a search line after the game. A move beyond it is refused.
inline constexpr std::int32_t MAX_GAME_PLIES = MAX_PLY_NUMBER - MAX_LINE_PLIES;
static_assert(MAX_GAME_PLIES < HISTORY_SIZE);

bool IsHistoryFull();

// Starts an empty history from the current state.
void NewStateHistory();

// Appends one entry: the move just made, and the board and the records as they are now.
void SaveIntoStateHistory(const Move& move);

// Drops the newest entry and restores the records, but not the board, from the one before it.
void LoadFromStateHistory();

// Makes a move on the board and in the game record; sends and saves nothing.
void MakeForceMove(const Move& move);

// Takes back the last move of the game; does nothing at its start.
void UndoMove();

// Updates the game record after a move: last move, ply count and fifty-move count.
void CountGameMove(const Move& move);
