// Start-up and shut-down: what is initialised in which order, the offline actions of the command
// line, and the settings that it makes.
#pragma once

#include <string_view>

// Runs the whole start-up; an offline action or an error on the command line ends the program.
void Initialize(int argument_count, const char* const* arguments);

// The part of Initialize before the first game; an offline action ends the program in it.
void ParseParameters(const char* const* arguments, int argument_count);

// The precomputed tables and default settings alone, in their fixed order. From then on running out
// of memory is a fatal error.
void InitializeTables();

// Gives back what the start-up allocated.
void Finalize();

void PrintVersion();

// The word asks a tool or korvane-uci for its usage.
inline bool IsHelpOption(std::string_view word) { return word == "--help" || word == "-h"; }
