#include "search/timecontrol.h"

namespace {

// All times are in centiseconds. A search may use 1/10 of the time left on the clock if this is
// above LONG_CLOCK (a minute or more), otherwise 1/15.
constexpr std::uint64_t LONG_CLOCK = 5'999;
constexpr std::uint64_t SEARCHES_IN_LONG_CLOCK = 10;
constexpr std::uint64_t SEARCHES_IN_SHORT_CLOCK = 15;

// If less time than this is left at the start of a search, the search ends after the first
// iteration. The time left is a reserve for delays between front end and engine.
constexpr std::uint64_t LAST_RESERVE = 50;

// The next iteration is expected to take this many times as long as the last iteration.
constexpr std::uint64_t ITERATION_GROWTH = 6;

// The next iteration may take at most 1/20 of the remaining time, or 1/15 if the time control has
// an increment.
constexpr std::uint64_t ITERATIONS_IN_CLOCK = 20;
constexpr std::uint64_t ITERATIONS_IN_CLOCK_WITH_INCREMENT = 15;

// If the clock is above LONG_CLOCK and is at least 20 times the increment, the next iteration may
// also take up to 2/60 of the clock plus three increments.
constexpr std::uint64_t INCREMENTS_IN_CLOCK = 20;
constexpr std::uint64_t CLOCK_PARTS = 60;
constexpr std::uint64_t PARTS_FOR_ITERATION = 2;
constexpr std::uint64_t INCREMENTS_FOR_ITERATION = 3;

bool IsRichInIncrements(const TimeLeft& left) {
    return left.increment > 0 && left.clock > LONG_CLOCK &&
           left.clock / left.increment >= INCREMENTS_IN_CLOCK;
}

} // namespace

std::uint64_t TimeLimit(std::uint64_t clock) {
    return clock / (clock > LONG_CLOCK ? SEARCHES_IN_LONG_CLOCK : SEARCHES_IN_SHORT_CLOCK);
}

bool IsTimeForIteration(const TimeLeft& left, std::uint64_t used, std::uint64_t iteration_time) {
    if (left.clock < LAST_RESERVE) return false;
    const std::uint64_t next = ITERATION_GROWTH * iteration_time;
    if (IsRichInIncrements(left) && PARTS_FOR_ITERATION * (left.clock / CLOCK_PARTS) +
                                            INCREMENTS_FOR_ITERATION * left.increment >=
                                        next) {
        return true;
    }
    const std::uint64_t iterations =
        left.increment > 0 ? ITERATIONS_IN_CLOCK_WITH_INCREMENT : ITERATIONS_IN_CLOCK;
    // Unsigned on purpose: if `used` exceeds the clock (after a pause), the difference wraps around
    // to a huge number, and the search continues.
    return next * iterations <= left.clock - used;
}
