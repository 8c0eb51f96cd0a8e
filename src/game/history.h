// The state history: all positions of the current game, with copies of game_state and book_state.
// Also the functions that make a move of the game or take it back.
#pragma once

#include "board/move.h"
#include "board/position.h"
#include "game/gamestate.h"

#include <cstdint>

inline constexpr int HISTORY_SIZE = 4096;

// Entry i is the position after i moves. Its Zobrist key is zobrist_keys[i].
struct StateHistory {
    std::int32_t count; // index of the newest entry
    Piece positions[HISTORY_SIZE][SQUARES];
    Move moves[HISTORY_SIZE]; // moves[i] leads to positions[i]; moves[0] is unused
    GameState game_states[HISTORY_SIZE];
    BookState book_states[HISTORY_SIZE];
};
extern StateHistory state_history;

// Maximum length of a game, in plies. Moves beyond this length are refused. The remaining
// MAX_LINE_PLIES entries of zobrist_keys are reserved for the moves of the search.
inline constexpr std::int32_t MAX_GAME_PLIES = MAX_PLY_NUMBER - MAX_LINE_PLIES;
static_assert(MAX_GAME_PLIES < HISTORY_SIZE);

bool IsHistoryFull();

// Clears the history, then saves the current state as entry 0.
void NewStateHistory();

// Appends an entry with this move, the current board, game_state and book_state. Call after making
// the move.
void SaveIntoStateHistory(const Move& move);

// Drops the newest entry and restores game_state and book_state from the previous entry. Does not
// change the board.
void LoadFromStateHistory();

// Makes a move on the board and updates game_state. Does not append to the history.
void MakeForceMove(const Move& move);

// Takes back the last move of the game. Does nothing if no move has been made.
void UndoMove();

// Updates last_move, ply_count and fifty_move_count in game_state after a move.
void CountGameMove(const Move& move);
