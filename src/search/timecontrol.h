// The time rules: how long the engine may think on its own clock. They are functions of what they
// are given, all of it in centiseconds; nothing here reads a clock.
#pragma once

#include <cstdint>

// What the engine has left, and what it gets for each move.
struct TimeLeft {
    std::uint64_t clock;
    std::uint64_t increment;
};

// The longest that the search for one move may take; it is stopped then.
std::uint64_t TimeLimit(std::uint64_t clock);

// Another iteration fits into the time, after one that took `iteration_time`; `used` is what the
// search has taken in all.
bool IsTimeForIteration(const TimeLeft& left, std::uint64_t used, std::uint64_t iteration_time);
