// The commands of the Universal Chess Interface (UCI), and additional commands for testing.
#pragma once

#include "uci/go.h"

#include <string_view>

// True if the line contains a known command.
bool IsCommand(std::string_view line);

// Carries out a command line. If the command starts a search, returns after the search. Ignores
// unknown words before the command. Returns false if the program must end.
bool CarryOutLine(std::string_view line);

// The function for hear_line (see uci/go.h). Carries out a command that must be answered during a
// search. Returns the effect of the line on the search.
LineEffect HearDuringSearch(std::string_view line);
