// Pseudo-random numbers, a clock, a table of bit counts, and a helper for spans.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Number of set bits of every 16-bit value.
inline constexpr int POP_COUNT_SIZE = 65536;
extern std::uint32_t POP_COUNT[POP_COUNT_SIZE];

// Seeds the random generator with a fixed value and fills POP_COUNT.
void InitializeUtility();

// A linear congruential generator. The same seed gives the same numbers on every system.
void SeedRandom(std::uint32_t seed);
std::uint32_t RandomU15(); // 0 to 32767
std::uint32_t RandomU32(); // 0 to 2^30 - 1
std::uint64_t RandomU64();

// Returns a span of the first `count` items. `count` must not be negative.
template <typename T>
constexpr std::span<T> SpanOf(T* items, std::int32_t count) {
    return {items, static_cast<std::size_t>(count)};
}

// Returns the time of a steady clock, in centiseconds. Only the difference of two times is
// meaningful.
std::uint64_t CurrentTimeU64();
