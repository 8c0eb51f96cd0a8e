// bench: searches a fixed set of positions to a fixed depth. The number of nodes is the signature
// of the search, the same on every run and machine.
#pragma once

#include <cstdint>

inline constexpr std::int32_t BENCH_DEFAULT_DEPTH = 7; // plies
inline constexpr std::int32_t BENCH_MIN_DEPTH = 3;
inline constexpr std::int32_t BENCH_MAX_DEPTH = 50;

// Searches the positions, each from empty tables, and prints a row for each and the totals. Starts
// a new game afterwards. False if a position cannot be set up or search_host stops the search.
bool RunBench(std::int32_t plies);
