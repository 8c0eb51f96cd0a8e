// Quiescence search: searches only captures, until the position is quiet.
#pragma once

#include "board/move.h"

#include <cstdint>

// Returns the fail-soft score of the position from the point of view of US, the side to move. `ply`
// is the distance from the root in quarter-plies. `last_move` is the move that led to the position,
// or null. Returns STOPPED_EVAL if the search is stopped and SearchLimits::is_strict is true. If
// is_strict is false, every quiescence search runs to its end.
template <Colour US>
std::int32_t QuiescenceSearch(std::int32_t alpha, std::int32_t beta, std::int32_t ply,
                              const Move* last_move);
