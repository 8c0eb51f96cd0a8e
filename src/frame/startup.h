// Start-up and shut-down. The start-up also reads the command line.
#pragma once

#include <string_view>

// Runs the whole start-up and starts a new game. Ends the program if the command line contains an
// action, such as --help, or an error.
void Initialize(int argument_count, const char* const* arguments);

// Reads the command line and sets up tables, settings and the book. Initialize calls this function
// before it starts a new game.
void ParseParameters(const char* const* arguments, int argument_count);

// Sets up the precomputed tables and the default settings. From then on, a failed allocation is a
// fatal error.
void InitializeTables();

// Frees the transposition tables and the book.
void Finalize();

void PrintVersion();

// True for "--help" and "-h". The program korvane does not use this function: it accepts "--help",
// but not "-h".
inline bool IsHelpOption(std::string_view word) { return word == "--help" || word == "-h"; }
