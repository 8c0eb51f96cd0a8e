// Levels for people: how the engine plays as if it had a lower rating.
#pragma once

#include <cstdint>

// The levels, as Elo ratings.
inline constexpr std::int32_t MIN_ELO = 1000;
inline constexpr std::int32_t MAX_ELO = 2400;
