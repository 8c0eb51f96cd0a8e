// The commands of the Universal Chess Interface (UCI), and a few for testers.
#pragma once

#include "uci/go.h"

#include <string_view>

// True if the line contains a command.
bool IsCommand(std::string_view line);

// Carries out a line, including any search that it starts. Skips words before the command.
// Returns false if the program must end.
bool CarryOutLine(std::string_view line);

// The hear_line of "go": carries out the commands that are answered during a search.
LineEffect HearDuringSearch(std::string_view line);
