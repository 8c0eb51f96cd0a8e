// The full-width search below the root: principal-variation search with null-move pruning, reverse
// futility pruning, internal iterative deepening and extensions.
#pragma once

#include "board/move.h"
#include "board/score.h"
#include "search/records.h"

#include <cstdint>

// Returns the fail-soft score of the position from the side to move's point of view, or
// STOPPED_EVAL if the search was stopped. `depth` and `ply` are in quarter-plies. `ply` is the
// distance from the root, at least one ply. `last_move` is the move that led to the position, or
// null after a null move. `pv` receives the principal variation and may be null. `extended` is 1 if
// `last_move` was extended by one ply, else 0.
std::int32_t FullSearch(std::int32_t alpha, std::int32_t beta, std::int32_t depth, std::int32_t ply,
                        const Move* last_move, PvLine* pv, std::uint8_t extended);
