// Lines from a UCI front end, and lines to the front end.
#pragma once

#include <string>
#include <string_view>

// After the end of standard input, every read returns this line.
inline constexpr std::string_view QUIT_LINE = "quit";

// Takes the next line. Returns false if no complete line is waiting. Cuts lines of more than a
// megabyte.
bool TakeLine(std::string& line);

// Waits for the next line and takes it.
void WaitForLine(std::string& line);

// Puts a line back. The next call of TakeLine or WaitForLine returns that line.
void ReturnLine(std::string_view line);
bool IsLineReturned();

// Discards all pending input, so that the next test begins with empty buffers.
void ForgetLines();

// Sends one line to the front end, without buffering. Adds the line end.
void Tell(std::string_view line);

// Sends a message for the user, as "info string".
void TellInfo(std::string_view text);

// If set, TellInfo calls this function and sends nothing to the front end.
extern void (*info_listener)(std::string_view text);
