// Levels for people: how the engine plays as if it had a lower Elo rating.
#pragma once

#include "board/move.h"
#include "search/records.h"

#include <cstdint>

inline constexpr std::int32_t FULL_STRENGTH = 0; // in place of a level's rating
inline constexpr std::int32_t MIN_ELO = 1000;
inline constexpr std::int32_t MAX_ELO = 2400;

// Finds a move of that level within the limits; at full strength, the best. Returns its score. The
// higher levels search fewer nodes. The lower ones often pick at random among the moves that a
// short search finds not much worse than the best.
std::int32_t FindMoveOfLevel(std::int32_t elo, Move& move, Move& expected_reply,
                             const SearchLimits& limits);

// The number of plies at the start of a game that a player of that level knows from the book.
std::int32_t BookPliesOfLevel(std::int32_t elo);

// Picks a book move as PickBookMove does, as long as a player of that level knows the book.
bool PickBookMoveOfLevel(std::int32_t elo, Move& move);
