#include "board/utility.h"

#include "platform/system.h"

namespace {

constexpr std::uint32_t START_SEED = 5;

std::uint32_t random_state = 1;

} // namespace

std::uint32_t POP_COUNT[POP_COUNT_SIZE];

void InitializeUtility() {
    SeedRandom(START_SEED);
    for (std::uint32_t i = 1; i < POP_COUNT_SIZE; ++i) {
        POP_COUNT[i] = POP_COUNT[i & (i - 1)] + 1;
    }
}

void SeedRandom(std::uint32_t seed) { random_state = seed; }

std::uint32_t RandomU15() {
    random_state = random_state * 214013 + 2531011;
    return (random_state >> 16) & 0x7FFF;
}

std::uint32_t RandomU32() {
    const std::uint32_t high = RandomU15();
    const std::uint32_t low = RandomU15();
    return (high << 15) ^ low;
}

std::uint64_t RandomU64() {
    std::uint64_t value = 0;
    for (int draw = 0; draw < 5; ++draw) {
        value = (value << 15) ^ RandomU15();
    }
    return value;
}

std::uint64_t CurrentTimeU64() { return SystemTime() / TICKS_PER_CENTISECOND; }
