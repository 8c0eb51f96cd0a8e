// The lines between the program and a UCI front end.
#pragma once

#include <string>
#include <string_view>

// The line that also stands for the end of standard input, time and again.
inline constexpr std::string_view QUIT_LINE = "quit";

// Takes the next line if a whole one is there; it never waits for the rest of one. A line may be of
// any sensible length: what one of more than a megabyte has beyond that is lost.
bool TakeLine(std::string& line);

// Takes the next line, waiting for it.
void WaitForLine(std::string& line);

// Gives a line back, to be the next one that is taken.
void ReturnLine(std::string_view line);
bool IsLineReturned();

// Forgets all input, for a conversation that begins anew.
void ForgetLines();

// Sends a line at once and whole; the line end is added here.
void Tell(std::string_view line);

// Tells a person what is wrong with a line; no program needs to know.
void TellInfo(std::string_view text);

// Gets what TellInfo tells instead of the front end; null: the front end gets it.
extern void (*info_listener)(std::string_view text);
