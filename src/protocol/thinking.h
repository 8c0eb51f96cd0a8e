// What the search reports to the front end.
#pragma once

#include "search/request.h"

// Prints a thinking line, unless the front end wants none: plies, score, centiseconds, nodes,
// moves.
void PrintThinking(const SearchLine& line);

// Writes the root move into analyze_info, for the status line. Always true: the search may go on.
bool NoteRootMove(const Move& move);
