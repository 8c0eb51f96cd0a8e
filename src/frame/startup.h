// Start-up and shut-down. The start-up also reads the command line.
#pragma once

#include <string_view>

// Runs the whole start-up and starts a new game. Ends the program if the command line contains an
// action, such as --help, or an error.
void Initialize(int argument_count, const char* const* arguments);

// The first part of Initialize: reads the command line and sets up tables, settings and the book.
void ParseParameters(const char* const* arguments, int argument_count);

// Sets up the precomputed tables and the default settings. From then on, a failed allocation is a
// fatal error.
void InitializeTables();

// Frees the transposition tables and the book.
void Finalize();

void PrintVersion();

// The help options of korvane-uci and the tools. The program korvane accepts only --help.
inline bool IsHelpOption(std::string_view word) { return word == "--help" || word == "-h"; }
