#include "search/timecontrol.h"

namespace {

// Clocks of a minute and more allow larger shares.
constexpr std::uint64_t LONG_CLOCK = 5'999;
constexpr std::uint64_t SEARCHES_IN_LONG_CLOCK = 10;
constexpr std::uint64_t SEARCHES_IN_SHORT_CLOCK = 15;

// Below this clock no second iteration begins. The reserve covers the delays between front end and
// engine over a hundred moves and more.
constexpr std::uint64_t LAST_RESERVE = 50;

// The next iteration is expected to take this many times as long as the last one.
constexpr std::uint64_t ITERATION_GROWTH = 6;

// The clock must have time for this many iterations of that length.
constexpr std::uint64_t ITERATIONS_IN_CLOCK = 20;
constexpr std::uint64_t ITERATIONS_IN_CLOCK_WITH_INCREMENT = 15;

// If a long clock is at least INCREMENTS_IN_CLOCK increments, an iteration may take 2/60 of it plus
// three increments.
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
    // Deliberately unsigned: if used > clock (after a pause), the search continues.
    return next * iterations <= left.clock - used;
}
