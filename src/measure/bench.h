// bench: searches a fixed set of positions to a fixed depth. The total number of nodes is the same
// on every run and machine, so a different number means that the search has changed.
#pragma once

#include <cstdint>

inline constexpr std::int32_t BENCH_DEFAULT_DEPTH = 7; // in plies
inline constexpr std::int32_t BENCH_MIN_DEPTH = 3;
inline constexpr std::int32_t BENCH_MAX_DEPTH = 50;

// Searches each position with empty hash tables and prints a row for each search, then the totals.
// Starts a new game afterwards. Returns false if a position is illegal or search_host.must_stop
// stops a search.
bool RunBench(std::int32_t plies);
