// perft: counts the positions that the move machinery reaches, every leaf made and unmade, against
// which move generators are checked.
#pragma once

#include "board/move.h"

#include <cstdint>

inline constexpr std::int32_t PERFT_MAX_DEPTH = 64; // plies

// Must the count stop? Asked every thousands of leaves; null: never.
extern bool (*must_stop_counting)();

// How many lines of that many plies begin in the position; `last_move` led to it, or is null.
std::uint64_t CountLeaves(std::int32_t depth, const Move* last_move);

// Prints the counts behind the moves of the game's position one by one, and their sum; neither for
// a count that was stopped.
void Divide(std::int32_t depth);
