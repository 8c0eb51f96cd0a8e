// Strength levels: the engine plays at a lower Elo rating.
#pragma once

#include "board/move.h"
#include "search/records.h"

#include <cstdint>

inline constexpr std::int32_t FULL_STRENGTH = 0; // value of `elo` for no strength limit
inline constexpr std::int32_t MIN_ELO = 1000;
inline constexpr std::int32_t MAX_ELO = 2400;

// Finds a move of this strength within the limits. Returns the move's score in centipawns. Levels
// from 1800 limit the number of nodes. Lower levels also play random moves that are not much worse
// than the best move. If no reply is expected, sets `expected_reply` to a fake move (see
// board/move.h).
std::int32_t FindMoveOfLevel(std::int32_t elo, Move& move, Move& expected_reply,
                             const SearchLimits& limits);

// Returns the number of plies (of both sides) after which this level stops using the book.
std::int32_t BookPliesOfLevel(std::int32_t elo);

// Picks a book move. Returns false if the book has no move, or if the game already has
// BookPliesOfLevel(elo) plies.
bool PickBookMoveOfLevel(std::int32_t elo, Move& move);
