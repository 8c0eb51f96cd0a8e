// What the operating system gives: the signals, the clock, files, and raw standard input and
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

// What the interrupt and termination signals do, which some front ends send as a matter of course
// and others to be rid of an engine. END_OF_INPUT: standard input seems to have ended; after an
// interrupt it goes on when TakeInterrupt is called.
enum class Interrupts : std::uint8_t { IGNORED, FATAL, END_OF_INPUT };

// Sets what these signals do, and ignores the one about files that grow too large, so that the
// write just fails. When nobody reads standard output any more, the next write ends the process.
// When it is only full, the write waits.
void PrepareProcess(Interrupts interrupts);

// True when an interrupt has ended standard input, which can be read again from now on.
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

// Of an interactive console, only keys are events from now on, and none waits.
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

// How much standard input waits to be read, without blocking: bytes, or the events of a console.
// INPUT_UNKNOWN when that cannot be told, and when no more will come because the input has ended or
// nobody reads standard output. A read then tells more, and does not wait long.
inline constexpr int INPUT_UNKNOWN = -1;
int WaitingInput();

// True when nobody can write to standard input any more, whether or not all has been read, or
// nobody reads standard output.
bool IsHungUp();

// Waits for standard input and takes what is there, as far as there is room: how many bytes. 0 when
// the input has ended or cannot be read, and when nothing is there and nobody reads standard output
// any more.
std::size_t ReadInput(std::span<char> room);

// Writes the bytes to standard output at once, all of them unless the output is broken. Line feeds
// become the system's line ends.
void WriteOutput(std::string_view bytes);

// Sends what was printed to the standard output stream. Without, it may stay where it is.
void FlushOutput();

// The folder that the running program lies in; empty when that cannot be told.
std::string ProgramFolder();

// A name as the standard library wants it, and back; bytes that are no UTF-8 are replaced where the
// system knows none.
std::filesystem::path PathOf(std::string_view name);
std::string NameOf(const std::filesystem::path& path);

// Opens a file, whose bytes are the same on every system: to be read, to be written from its start,
// to be written where no file has that name yet, to be appended to. Null on failure, and when a log
// cannot be opened at once.
enum class FileUse : std::uint8_t { READ, WRITE, CREATE, LOG };
std::FILE* OpenFile(const char* name, FileUse use);

// Gives a finished file its final name, in place of any file of that name; false on failure.
bool MoveIntoPlace(const char* from, const char* to);

// Zeroed memory for large tables, at the start of a page, a large one where the system has them;
// null on failure. The size given to FreeTable is the one that was asked for.
void* AllocateTable(std::size_t bytes);
void FreeTable(void* table, std::size_t bytes);
