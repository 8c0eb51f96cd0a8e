// The time rules: how long the engine may think on its own clock. Pure functions
// of their arguments, in centiseconds; nothing here reads a clock.
#pragma once

#include <cstdint>

// Time left on the engine's clock, and the increment per move.
struct TimeLeft {
    std::uint64_t clock;
    std::uint64_t increment;
};

// The longest that the search for one move may take; it is stopped then.
std::uint64_t TimeLimit(std::uint64_t clock);

// True if there is time for another iteration after one that took `iteration_time`; `used` is the
// time of the whole search so far.
bool IsTimeForIteration(const TimeLeft& left, std::uint64_t used, std::uint64_t iteration_time);
