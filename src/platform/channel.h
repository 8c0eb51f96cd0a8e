// The command input channel: standard input as command lines, for a main loop that waits and
// a search that polls; and the engine's own lines on standard output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Bytes of a command line with its closing NUL. A longer line is cut.
inline constexpr std::size_t COMMAND_SIZE = 4096;
using CommandLine = char[COMMAND_SIZE];

// The command delivered at the end of standard input, as when the front end has gone.
inline constexpr std::string_view QUIT_COMMAND = "quit";

// Waits for a line from standard input and reads it without its line end. At the end of the input,
// every call reads QUIT_COMMAND.
void NextBuffer(CommandLine& line);

// Gets a command line. With `consume`, waits for a line and takes it. Without, polls: a waiting
// line is delivered and held, so that the next call delivers it again. False, and `line` unchanged,
// if none waits. Sets `timestamp`, unless null, to the number of lines read so far.
bool NextCommand(CommandLine& line, std::int32_t* timestamp, bool consume);

// Waits for the next command line and takes it.
void ReceiveCommand(CommandLine& line);

// True if a read would return at once: with input, or because the input has ended.
bool IsInputWaiting();

// Sends one line to the front end at once; the line end is added here.
void SendCommand(std::string_view text);
