// The commands of the Universal Chess Interface (UCI), and a few for testers.
#pragma once

#include <string_view>

// The line holds a command.
bool IsCommand(std::string_view line);

// Carries out a line, thinking included if it starts it. Words in front of the command are skipped.
// False when the program shall end.
bool CarryOutLine(std::string_view line);

// Judges a line that comes during a search: it is answered at once, passed over, or ends the
// search, and is then carried out behind it. True: the search must end.
bool HearDuringSearch(std::string_view line);
