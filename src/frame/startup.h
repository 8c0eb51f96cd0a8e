// Start-up and shut-down: the order of initialisation, the offline actions of the command line, and
// its settings.
#pragma once

#include <string_view>

// Runs the whole start-up. An offline action or an error on the command line ends the program.
void Initialize(int argument_count, const char* const* arguments);

// Runs the part of Initialize before the first game. An offline action ends the program here.
void ParseParameters(const char* const* arguments, int argument_count);

// Sets up the precomputed tables and default settings only, in their fixed order. From then on,
// running out of memory is a fatal error.
void InitializeTables();

// Frees the memory that the start-up allocated.
void Finalize();

void PrintVersion();

// True if the word asks for the usage (korvane-uci and the tools).
inline bool IsHelpOption(std::string_view word) { return word == "--help" || word == "-h"; }
