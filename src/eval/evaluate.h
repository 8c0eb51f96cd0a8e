// Static evaluation.
#pragma once

#include "board/types.h"

#include <cstdint>

// The static score of the position in centipawns, positive if US is better.
template <Colour US>
std::int32_t Evaluate();
