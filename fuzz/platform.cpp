// The operating system of the fuzz harnesses: input from memory, output to nowhere, and a clock
// that every look at it moves on, so that the same bytes always do the same.
#include "harness.h"
#include "platform/system.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::uint64_t TICKS_PER_LOOK = 300'000;             // 30 milliseconds
constexpr std::size_t MAX_TABLE_SIZE = std::size_t{64} << 20; // memory that can be had
constexpr int PATIENCE = 4; // looks at the input, then the front end lets no search go on

std::string_view input;
int looks = 0; // at the input since the last byte was read

} // namespace

void SetInput(std::string_view text) { input = text; }

void PrepareProcess(Interrupts) {}

std::uint64_t SystemTime() {
    static std::uint64_t now = 0;
    return now += TICKS_PER_LOOK;
}

bool IsConsoleInput() { return false; }
bool IsConsoleErrors() { return false; }

int WaitingInput() {
    const bool is_unknown = input.empty() || ++looks > PATIENCE;
    return is_unknown ? INPUT_UNKNOWN : static_cast<int>(input.size());
}

bool IsHungUp() { return input.empty() || looks > PATIENCE; }

std::size_t ReadInput(std::span<char> room) {
    looks = 0;
    const std::size_t count = input.copy(room.data(), room.size());
    input.remove_prefix(count);
    return count;
}

void WriteOutput(std::string_view) {}

std::string ProgramFolder() { return ""; }

std::FILE* OpenLog(const char* name) { return std::fopen(name, "a"); }

bool ReplaceFile(const char* from, const char* to) { return std::rename(from, to) == 0; }

void* AllocateTable(std::size_t bytes) {
    return bytes > MAX_TABLE_SIZE ? nullptr : std::calloc(1, bytes);
}

void FreeTable(void* table, std::size_t) { std::free(table); }
