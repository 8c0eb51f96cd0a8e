// Static evaluation.
#pragma once

#include <cstdint>

// The static score of the position in centipawns, positive when the side to move stands better.
std::int32_t Evaluate();
