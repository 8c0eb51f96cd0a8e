// Polling of the front end during a search, and output of thinking lines.
#pragma once

#include "search/records.h"

// Carries out the waiting command lines during a search, up to the first line that must wait until
// after the search. Unknown commands also wait. Returns true if the search must stop.
bool PollCommands();

// If thinking output is on, prints the depth in plies, the score in centipawns, the time in
// centiseconds, the number of nodes and the moves.
void PrintThinking(const SearchLine& line);

// Stores the root move in analyze_info for the status line. Returns true, so that the search
// continues.
bool NoteRootMove(const Move& move);
