// The command input channel: standard input as command lines, for a main loop that waits for them
// and a search that only looks, and the engine's own lines on standard output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Bytes of a command line with its closing NUL. What a longer line has beyond is dropped.
inline constexpr std::size_t COMMAND_SIZE = 4096;
using CommandLine = char[COMMAND_SIZE];

// The line that stands for the end of standard input, which a front end that has gone leaves
// behind.
inline constexpr std::string_view QUIT_COMMAND = "quit";

// Reads one line from standard input without its line end, waiting for it. The end of the input
// reads as QUIT_COMMAND, time and again.
void NextBuffer(CommandLine& line);

// Gets a command line. With `consume` it waits for one and hands it over for good; without, it only
// looks: a line that is there is delivered and held, so that the next call delivers it again.
// False, and `line` untouched, when none waits. `timestamp`, when not null, gets the number of
// lines read so far, which names the newest line.
bool NextCommand(CommandLine& line, std::int32_t* timestamp, bool consume);

// Waits for the next command line and takes it.
void ReceiveCommand(CommandLine& line);

// Something waits to be read, or a read will tell at once that nothing more comes.
bool IsInputWaiting();

// Sends one line to the front end at once; the line end is added here.
void SendCommand(std::string_view text);
