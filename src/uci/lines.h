// Input and output lines of a UCI front end.
#pragma once

#include <string>
#include <string_view>

// Also returned for every read after the end of standard input.
inline constexpr std::string_view QUIT_LINE = "quit";

// Takes the next line if a whole one is available; never waits. A line of more than a megabyte
// is cut.
bool TakeLine(std::string& line);

// Takes the next line, waiting for it.
void WaitForLine(std::string& line);

// Puts a line back; the next call that takes a line returns it.
void ReturnLine(std::string_view line);
bool IsLineReturned();

// Discards all pending input, for a new conversation.
void ForgetLines();

// Sends a line immediately, with a line end.
void Tell(std::string_view line);

// Sends a message for a person as "info string".
void TellInfo(std::string_view text);

// If not null, gets the messages of TellInfo instead of the front end.
extern void (*info_listener)(std::string_view text);
