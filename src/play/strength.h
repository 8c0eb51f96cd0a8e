// Levels for people: how the engine plays as if it had a lower Elo rating.
#pragma once

#include "board/move.h"
#include "search/records.h"

#include <cstdint>

inline constexpr std::int32_t MIN_ELO = 1000;
inline constexpr std::int32_t MAX_ELO = 2400;

// Finds a move of that level, within the limits too, as FindBestMove finds the best one. The higher
// levels search, with fewer nodes; the lower ones pick at random among the moves that a short
// search finds not much worse than the best.
std::int32_t FindMoveOfLevel(std::int32_t elo, Move& move, Move& expected_reply,
                             const SearchLimits& limits);

// How many plies of a game a player of that level knows from the book.
std::int32_t BookPliesOfLevel(std::int32_t elo);
