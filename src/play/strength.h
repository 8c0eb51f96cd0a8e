// Levels for people: play at a lower Elo rating.
#pragma once

#include "board/move.h"
#include "search/records.h"

#include <cstdint>

inline constexpr std::int32_t FULL_STRENGTH = 0; // in place of a level's rating
inline constexpr std::int32_t MIN_ELO = 1000;
inline constexpr std::int32_t MAX_ELO = 2400;

// Finds a move at this level within the limits, or the best one at full strength. Returns its score
// in centipawns. Levels from 1800 search a limited number of nodes. Lower ones often pick at random
// among the moves that a short search scores not much below the best.
std::int32_t FindMoveOfLevel(std::int32_t elo, Move& move, Move& expected_reply,
                             const SearchLimits& limits);

// Returns the number of plies from the start of a game in which this level plays book moves.
std::int32_t BookPliesOfLevel(std::int32_t elo);

// Picks a book move like PickBookMove, but only within BookPliesOfLevel.
bool PickBookMoveOfLevel(std::int32_t elo, Move& move);
