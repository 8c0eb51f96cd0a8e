// perft: counts the leaves of the tree of legal moves. This is the usual test of a move generator.
#pragma once

#include "board/move.h"

#include <cstdint>

inline constexpr std::int32_t PERFT_MAX_DEPTH = 64; // in plies

// Returns the number of legal move sequences of `depth` plies. `last_move` is the move that led to
// the position, or null. Calls search_host.must_stop at every node with three plies left. If
// must_stop returns true, the count ends and the result is undefined.
std::uint64_t CountLeaves(std::int32_t depth, const Move* last_move);

// Prints the number of leaves below each legal move of the game's position, then the total. Prints
// no total if search_host.must_stop stops the count.
void Divide(std::int32_t depth);
