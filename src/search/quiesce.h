// Quiescence search: captures only, until the position is quiet.
#pragma once

#include "board/move.h"

#include <cstdint>

// Fail-soft score of the position within the window, from the point of view of US, which is to
// move. `ply` is the distance from the root in quarter-plies, `last_move` the move that led here or
// null. A stop does not end it, unless search_info.stop_quiescence is set: it then returns
// STOPPED_EVAL.
template <Colour US>
std::int32_t QuiescenceSearch(std::int32_t alpha, std::int32_t beta, std::int32_t ply,
                              const Move* last_move);
