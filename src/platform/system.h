// The interface to the operating system. Each supported system has its own implementation file.
// File names are in UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

// The effect of an interrupt (Ctrl-C) or a termination signal. END_OF_INPUT: after the signal,
// reads of standard input report the end of the input. After an interrupt, TakeInterrupt makes
// standard input readable again. A termination signal ends the input for good.
enum class Interrupts : std::uint8_t { IGNORED, FATAL, END_OF_INPUT };

// Sets the effect of interrupts. From then on, a write to standard output waits if the
// output is a full pipe, and ends the process if the output is a pipe that nobody reads. A write to
// any file beyond the file size limit fails without a signal.
void PrepareProcess(Interrupts interrupts);

// If an interrupt has ended standard input, makes standard input readable again and returns true.
bool TakeInterrupt();

// Returns the words of the command line, beginning with the program's name. They remain valid until
// the program ends.
std::span<const char* const> CommandLineWords(int argument_count, const char* const* arguments);

// Returns the time of a monotonic clock, in ticks of 100 nanoseconds.
std::uint64_t SystemTime();
inline constexpr std::uint64_t TICKS_PER_SECOND = 10'000'000;
inline constexpr std::uint64_t TICKS_PER_CENTISECOND = TICKS_PER_SECOND / 100;
inline constexpr std::uint64_t TICKS_PER_MILLISECOND = TICKS_PER_SECOND / 1000;

// True if standard input is an interactive console. False for a pipe or a file.
bool IsConsoleInput();

// Discards the waiting events of a Windows console and turns its mouse and window events off. Has
// no effect on other systems.
void QuietConsole();

// True if standard output (or standard error) is an interactive console.
bool IsConsoleOutput();
bool IsConsoleErrors();

// True if the console can show UTF-8 text. On Windows, switches the output of the console to UTF-8.
bool IsUnicodeConsole();

// True if standard output is a console with at least 256 colours and the environment variable
// NO_COLOR is empty or not set.
bool IsColourConsole();

// Returns the value of an environment variable, or an empty text if the variable is not set.
std::string EnvironmentValue(const char* name);

// Returns the amount of unread standard input: a number of events for a console, a number of bytes
// for other input. Never blocks. Returns INPUT_UNKNOWN if the input has ended or the amount is
// unknown. Also returns INPUT_UNKNOWN if nobody reads standard output any more and no unread input
// is left.
inline constexpr int INPUT_UNKNOWN = -1;
int WaitingInput();

// True if the other end of standard input or of standard output has closed, even if unread input
// remains.
bool IsHungUp();

// Waits for standard input, reads at most room.size() bytes and returns the number of bytes.
// Returns 0 at the end of the input, after an error, or if nobody reads standard output any more
// and no input is waiting.
std::size_t ReadInput(std::span<char> room);

// Writes all bytes to standard output, without buffering. Replaces each line feed by the system's
// line end. Gives up after a write error.
void WriteOutput(std::string_view bytes);

// Flushes stdout. Ends the process if nobody reads the output any more.
void FlushOutput();

// Returns the folder of the running program, or an empty text if the folder is unknown.
std::string ProgramFolder();

// Convert a UTF-8 name to a path, and a path to a UTF-8 name. On Windows, invalid UTF-8 is
// replaced.
std::filesystem::path PathOf(std::string_view name);
std::string NameOf(const std::filesystem::path& path);

// WRITE truncates an existing file. CREATE fails if the file exists. LOG appends to the file.
enum class FileUse : std::uint8_t { READ, WRITE, CREATE, LOG };

// Opens a file in binary mode. Returns null on failure. With LOG, opening a named pipe that has no
// reader fails at once.
std::FILE* OpenFile(const char* name, FileUse use);

// Renames a file and replaces any file that has the new name. Returns false on failure.
bool MoveIntoPlace(const char* from, const char* to);

// Allocates zeroed memory for a large table, page-aligned, in large pages if possible. Returns null
// on failure. FreeTable requires the size that was passed to AllocateTable.
void* AllocateTable(std::size_t bytes);
void FreeTable(void* table, std::size_t bytes);
