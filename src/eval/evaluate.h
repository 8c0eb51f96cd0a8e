// Static evaluation of the position.
#pragma once

#include "board/types.h"

#include <cstdint>

// Returns the static score of the position in centipawns, positive if US is better.
template <Colour US>
std::int32_t Evaluate();
