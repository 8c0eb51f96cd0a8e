// The game in progress: its record, and its position in the opening book. Both are copied whole
// into the state history after every move, so every field belongs to a position of the game, the
// clocks included.
#pragma once

#include "board/move.h"

#include <cstddef>
#include <cstdint>

inline constexpr int EXPECTED_MOVE_SIZE = 8; // the longest is like "Qa1xb2+"

struct GameState {
    std::uint8_t no_last_move; // there is no last move; last_move is undefined
    std::uint8_t game_over;
    std::int32_t ply_count; // half-moves played since the game began
    std::int32_t last_eval; // of the engine's last own move, in centipawns from its side; book: 0
    Move last_move;
    Move expected_move;                          // the reply that the engine expects; fake: unknown
    char expected_move_text[EXPECTED_MOVE_SIZE]; // the same as text, in the notation of that time
    std::int32_t fifty_move_count;               // half-moves since the last pawn push or capture
    std::uint64_t engine_time;                   // clocks in centiseconds, as last given
    std::uint64_t opponent_time;
    std::uint64_t time_increment; // per move, in centiseconds
    std::uint8_t hopeless;        // the engine's last move left it clearly lost
};
extern GameState game_state;

struct MoveTrieNode;

inline constexpr std::size_t BOOK_HELP_SIZE = 512;

struct BookState {
    std::uint8_t in_book;      // the game still follows the book
    const MoveTrieNode* node;  // node of the current position
    char help[BOOK_HELP_SIZE]; // the book moves of the position, as shown to the user
};
extern BookState book_state;

// Both clocks until the front end sets them: more than 300 years.
inline constexpr std::uint64_t UNKNOWN_CLOCK = 1'000'000'000'000;

inline void SetFakeMove(Move& move) { move.from = NO_SQUARE; }

// The move that led to the position, or null.
inline const Move* LastMove() { return game_state.no_last_move ? nullptr : &game_state.last_move; }

// Resets the record to a game without moves; the clocks and the increment stay.
void ForgetMoves();

// The defaults of a new game.
void NewGameState();

// Puts the initial position on the board, with a new game record; the caller resets
// the other records. This is enough to replay moves.
void SetUpInitialPosition();
