// Command lines from standard input and answers on standard output. The main loop waits for a line.
// A running search polls the input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Size of a command line in bytes, including the closing NUL. Longer lines are cut.
inline constexpr std::size_t COMMAND_SIZE = 4096;
using CommandLine = char[COMMAND_SIZE];

// After the end of standard input, every read returns this command.
inline constexpr std::string_view QUIT_COMMAND = "quit";

// Waits for the next line of standard input and stores it without the line end. After the end of
// the input, stores QUIT_COMMAND.
void NextBuffer(CommandLine& line);

// With `consume`, waits for a command line, takes it and returns true. Without `consume`, copies
// the waiting command line, and the next call returns the same line again. If no input is waiting,
// a call without `consume` returns false and leaves `line` unchanged. Stores the number of lines
// read so far in `timestamp`, which may be null.
bool NextCommand(CommandLine& line, std::int32_t* timestamp, bool consume);

// Waits for the next command line and takes it.
void ReceiveCommand(CommandLine& line);

// True if input is waiting or the input has ended.
bool IsInputWaiting();

// Sends one line to the front end, without buffering. Adds the line end.
void SendCommand(std::string_view text);
