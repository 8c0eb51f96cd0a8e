// Time control: limits for the engine's thinking time, in centiseconds. The results depend on the
// arguments only.
#pragma once

#include <cstdint>

// Time left on the engine's clock, and the increment per move.
struct TimeLeft {
    std::uint64_t clock;
    std::uint64_t increment;
};

// Returns the duration after which a search is stopped. `clock` is the time left at the start of
// the search.
std::uint64_t TimeLimit(std::uint64_t clock);

// True if there is time for another iteration. `iteration_time` is the duration of the last
// iteration, and `used` is the duration of the whole search so far.
bool IsTimeForIteration(const TimeLeft& left, std::uint64_t used, std::uint64_t iteration_time);
