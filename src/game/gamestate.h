// The state of the current game, and the game's place in the opening book. GameState and BookState
// are saved in the state history after every move. Taking back a move restores all their fields,
// including the clocks.
#pragma once

#include "board/move.h"

#include <cstddef>
#include <cstdint>

// Large enough for the longest move text, such as "Qa1xb2+", and its NUL.
inline constexpr int EXPECTED_MOVE_SIZE = 8;

struct GameState {
    std::uint8_t no_last_move; // set if last_move is undefined
    std::uint8_t game_over;
    std::int32_t ply_count; // number of plies played in the game
    std::int32_t last_eval; // score of the engine's last move, in centipawns; 0 for a book move
    Move last_move;
    Move expected_move; // the reply that the engine expects; `from` is NO_SQUARE if none
    char expected_move_text[EXPECTED_MOVE_SIZE];
    std::int32_t fifty_move_count; // plies since the last pawn move or capture
    // Clocks in centiseconds, as last reported by the front end.
    std::uint64_t engine_time;
    std::uint64_t opponent_time;
    std::uint64_t time_increment; // added per move, in centiseconds
    std::uint8_t hopeless;        // set if the engine made the last move and is clearly lost
};
extern GameState game_state;

struct MoveTrieNode;

inline constexpr std::size_t BOOK_HELP_SIZE = 512;

struct BookState {
    std::uint8_t in_book;      // set until the game leaves the book
    const MoveTrieNode* node;  // node of the current position, if in_book is set
    char help[BOOK_HELP_SIZE]; // text of the book moves, for the command "bk"
};
extern BookState book_state;

// Initial value of both clocks, in centiseconds (about 317 years). Used until the front end reports
// a time.
inline constexpr std::uint64_t UNKNOWN_CLOCK = 1'000'000'000'000;

// Turns `move` into a fake move, which stands for no move.
inline void SetFakeMove(Move& move) { move.from = NO_SQUARE; }

// Returns the move that led to the current position, or null if there is none.
inline const Move* LastMove() { return game_state.no_last_move ? nullptr : &game_state.last_move; }

// Resets game_state except the clocks and the increment.
void ForgetMoves();

// Resets game_state for a new game, including the clocks and the increment.
void NewGameState();

// Sets up the initial position on the board and resets game_state. Does not change book_state or
// the state history.
void SetUpInitialPosition();
