// The interface to the operating system: the signals, the clock, files, and raw standard input and
// output. A port to another system is one more implementation of this header. Names of files are
// UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

// The effect of the interrupt and termination signals, which some front ends send routinely and
// others to end an engine. END_OF_INPUT: standard input appears to end; after an interrupt,
// TakeInterrupt resumes it.
enum class Interrupts : std::uint8_t { IGNORED, FATAL, END_OF_INPUT };

// Sets the effect of these signals, and ignores the signal about too large files, so that the write
// fails instead. If nobody reads standard output any more, the next write ends the process; if it
// is only full, the write waits.
void PrepareProcess(Interrupts interrupts);

// True if an interrupt has ended standard input; resumes it.
bool TakeInterrupt();

// The words of the command line, the program's first, which live as long as the process.
std::span<const char* const> CommandLineWords(int argument_count, const char* const* arguments);

// A steady clock: 100-nanosecond ticks since some fixed moment.
std::uint64_t SystemTime();
inline constexpr std::uint64_t TICKS_PER_SECOND = 10'000'000;
inline constexpr std::uint64_t TICKS_PER_CENTISECOND = TICKS_PER_SECOND / 100;
inline constexpr std::uint64_t TICKS_PER_MILLISECOND = TICKS_PER_SECOND / 1000;

// True when standard input is an interactive console, false for a pipe or a file.
bool IsConsoleInput();

// On an interactive console, drops waiting events and lets only keys cause events from now on.
void QuietConsole();

// True when standard output, standard error is seen by a person.
bool IsConsoleOutput();
bool IsConsoleErrors();

// True when chess symbols, as UTF-8, are seen as such on a console.
bool IsUnicodeConsole();

// True when a person sees standard output in 256 colours and has not set NO_COLOR.
bool IsColourConsole();

// The value of an environment variable; empty when it is not set.
std::string EnvironmentValue(const char* name);

// Returns the amount of waiting standard input, without blocking: bytes, or the events of a
// console. INPUT_UNKNOWN if the amount is unknown, the input has ended or nobody reads standard
// output; a read will find out, soon.
inline constexpr int INPUT_UNKNOWN = -1;
int WaitingInput();

// True when nobody can write to standard input any more, whether or not all has been read, or
// nobody reads standard output.
bool IsHungUp();

// Waits for standard input, reads at most room.size() bytes and returns their number. 0 if the
// input has ended or cannot be read, or if none waits and nobody reads standard output any more.
std::size_t ReadInput(std::span<char> room);

// Writes the bytes to standard output at once, all of them unless the output is broken. Line feeds
// become the system's line ends.
void WriteOutput(std::string_view bytes);

// Flushes the standard output stream.
void FlushOutput();

// The folder of the running program; empty if unknown.
std::string ProgramFolder();

// Converts a UTF-8 name to a path, and back. Bytes that are not UTF-8 are replaced on systems whose
// names cannot hold them.
std::filesystem::path PathOf(std::string_view name);
std::string NameOf(const std::filesystem::path& path);

// Opens a file in binary mode. READ; WRITE truncates; CREATE fails if the file exists; LOG appends.
// Null on failure, or if opening a log would block.
enum class FileUse : std::uint8_t { READ, WRITE, CREATE, LOG };
std::FILE* OpenFile(const char* name, FileUse use);

// Gives a finished file its final name, in place of any file of that name; false on failure.
bool MoveIntoPlace(const char* from, const char* to);

// Allocates zeroed memory for large tables, page-aligned, in large pages if the system has them;
// null on failure. FreeTable takes the size given to AllocateTable.
void* AllocateTable(std::size_t bytes);
void FreeTable(void* table, std::size_t bytes);
