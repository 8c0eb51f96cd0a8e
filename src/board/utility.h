// Pseudo-random numbers, the clock in centiseconds, the counts of set bits, and spans.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Number of set bits of every 16-bit value.
inline constexpr int POP_COUNT_SIZE = 65536;
extern std::uint32_t POP_COUNT[POP_COUNT_SIZE];

// Seeds the generator with its fixed start value and fills POP_COUNT.
void InitializeUtility();

// One linear congruential generator serves keys, move choice and book. The same seed gives the same
// numbers on every system. Each book move seeds it again.
void SeedRandom(std::uint32_t seed);
std::uint32_t RandomU15(); // 0 to 32767
std::uint32_t RandomU32(); // 30 significant bits
std::uint64_t RandomU64();

// The first `count` items; `count` must not be negative.
template <typename T>
constexpr std::span<T> SpanOf(T* items, std::int32_t count) {
    return {items, static_cast<std::size_t>(count)};
}

// A steady clock in centiseconds; only differences are meaningful.
std::uint64_t CurrentTimeU64();
