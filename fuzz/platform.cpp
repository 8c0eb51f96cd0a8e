// The platform layer of the fuzz harnesses: input from memory, output to a string, and a clock that
// advances by a fixed time at every reading. Every run of an input therefore has the same result.
#include "harness.h"
#include "platform/system.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <vector>

namespace {

constexpr std::uint64_t TICKS_PER_READING = 30 * TICKS_PER_MILLISECOND;
constexpr std::size_t PAGE = 4096;
// After this many polls without a read, further polls report the end of the input.
constexpr int PATIENCE = 4;
constexpr int POLLS_OF_PAUSE = 50; // number of polls for which PAUSE hides the input

std::size_t most_memory = std::size_t{64} << 20; // largest table that can be allocated, in bytes
std::string_view input;
int polls = 0; // number of polls since the last read
int polls_left_of_pause = 0;
std::string* output = nullptr; // null to drop the output
std::vector<std::FILE*> open_files;

std::size_t SizeInPages(std::size_t bytes) { return (bytes + PAGE - 1) / PAGE * PAGE; }

// True if a table is allocated on the heap, where the address sanitizer checks every access to it.
// Larger tables are mapped: mapped pages are zero from the start, so nothing needs to be cleared.
bool IsGuarded(std::size_t bytes) { return bytes < std::size_t{1} << 20; }

bool IsPause() {
    if (polls_left_of_pause == 0 && input.starts_with(PAUSE)) {
        input.remove_prefix(1);
        polls_left_of_pause = POLLS_OF_PAUSE;
    }
    return polls_left_of_pause > 0;
}

} // namespace

void SetInput(std::string_view text) {
    input = text;
    polls_left_of_pause = 0;
}

void SetMostMemory(std::size_t bytes) { most_memory = bytes; }

void SetOutput(std::string* text) { output = text; }

void PrepareProcess(Interrupts) {}

std::span<const char* const> CommandLineWords(int argument_count, const char* const* arguments) {
    return {arguments, static_cast<std::size_t>(argument_count)};
}

std::uint64_t SystemTime() {
    static std::uint64_t now = 0;
    return now += TICKS_PER_READING;
}

bool IsConsoleInput() { return false; }
void QuietConsole() {}
bool IsConsoleOutput() { return false; }
bool IsConsoleErrors() { return false; }
bool IsUnicodeConsole() { return false; }

int WaitingInput() {
    if (IsPause()) {
        --polls_left_of_pause;
        return 0;
    }
    const bool is_unknown = input.empty() || ++polls > PATIENCE;
    return is_unknown ? INPUT_UNKNOWN : static_cast<int>(input.size());
}

bool IsHungUp() { return !IsPause() && (input.empty() || polls > PATIENCE); }

std::size_t ReadInput(std::span<char> room) {
    polls = polls_left_of_pause = 0;
    input.remove_prefix(std::min(input.find_first_not_of(PAUSE), input.size()));
    const std::size_t count = input.substr(0, input.find(PAUSE)).copy(room.data(), room.size());
    input.remove_prefix(count);
    return count;
}

void WriteOutput(std::string_view bytes) {
    if (output) output->append(bytes);
}

void FlushOutput() { std::fflush(stdout); }

std::string ProgramFolder() { return ""; }

std::filesystem::path PathOf(std::string_view name) { return name; }

std::string NameOf(const std::filesystem::path& path) { return path.string(); }

std::FILE* OpenFile(const char* name, FileUse use) {
    constexpr const char* MODES[] = {"r", "w", "wx", "a"};
    std::FILE* const file = std::fopen(name, MODES[static_cast<int>(use)]);
    if (file) open_files.push_back(file);
    return file;
}

// The linker option --wrap=fclose makes every call of fclose() call __wrap_fclose().
extern "C" int __real_fclose(std::FILE* file);
extern "C" int __wrap_fclose(std::FILE* file) {
    std::erase(open_files, file);
    return __real_fclose(file);
}

void CloseFiles() {
    while (!open_files.empty()) {
        std::fclose(open_files.back());
    }
}

bool MoveIntoPlace(const char* from, const char* to) { return std::rename(from, to) == 0; }

void* AllocateTable(std::size_t bytes) {
    if (bytes > most_memory) return nullptr;
    const std::size_t size = SizeInPages(bytes);
    if (!IsGuarded(size)) {
        void* const area =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return area == MAP_FAILED ? nullptr : area;
    }
    void* const table = std::aligned_alloc(PAGE, size);
    if (table) std::memset(table, 0, size);
    return table;
}

void FreeTable(void* table, std::size_t bytes) {
    if (!table) return;
    if (IsGuarded(SizeInPages(bytes))) {
        std::free(table);
    } else {
        munmap(table, SizeInPages(bytes));
    }
}
