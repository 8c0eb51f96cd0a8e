// perft: counts the positions that the moves reach, the usual check of a move generator.
#pragma once

#include "board/move.h"

#include <cstdint>

inline constexpr std::int32_t PERFT_MAX_DEPTH = 64; // plies

// Counts the lines of `depth` plies from the position; `last_move` led to it, or is null. Calls
// search_host.must_stop every few thousand leaves; the result of a stopped count is undefined.
std::uint64_t CountLeaves(std::int32_t depth, const Move* last_move);

// Prints the count after each move of the game's position, and their sum. A stopped count ends the
// output.
void Divide(std::int32_t depth);
