// The full-width search below the root: principal-variation search with null-move pruning,
// futility pruning, internal iterative deepening and extensions.
#pragma once

#include "board/move.h"
#include "board/score.h"
#include "search/records.h"

#include <cstdint>

// Fail-soft score of the position within the window, from the side to move's point of view, or
// STOPPED_EVAL if the search was stopped. Depth and ply (the distance from the root,
// at least one ply) are in quarter-plies; `last_move` is the move that led here, or null below a
// null move; `pv`, unless null, receives the principal variation; `extended` is set if the move
// that led here was extended.
std::int32_t FullSearch(std::int32_t alpha, std::int32_t beta, std::int32_t depth, std::int32_t ply,
                        const Move* last_move, PvLine* pv, std::uint8_t extended);
