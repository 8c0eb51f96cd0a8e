// perft: counts the positions that the move machinery reaches, against which move generators are
// checked.
#pragma once

#include "board/move.h"

#include <cstdint>

inline constexpr std::int32_t PERFT_MAX_DEPTH = 64; // plies

// How leaves are counted: from the list of moves, of which only those are made and unmade that may
// be illegal, or by making and unmaking each.
enum class LastPly { LISTED, MADE };

// The number of lines of that many plies from the position; `last_move` led to it, or is null.
// Calls search_host.must_stop every few thousand leaves; the result of a stopped count is useless.
std::uint64_t CountLeaves(std::int32_t depth, const Move* last_move, LastPly last_ply);

// Prints the count after each move of the game's position, and their sum; neither for a count that
// was stopped.
void Divide(std::int32_t depth, LastPly last_ply = LastPly::LISTED);
