// Polling the front end during a search, and thinking lines.
#pragma once

#include "search/records.h"

// Handles pending lines by the "during search" column of the command table, up to the first that
// must wait; a line without a row waits. Returns true if the search must stop.
bool PollCommands();

// Prints a thinking line if thinking output is on: plies, centipawns, centiseconds, nodes, moves.
void PrintThinking(const SearchLine& line);

// Records the root move in analyze_info for the status line. Always returns true: the search
// continues.
bool NoteRootMove(const Move& move);
