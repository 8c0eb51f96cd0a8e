// The command poll: the front end is heard while the search thinks.
#pragma once

#include "search/records.h"

// Looks at the waiting lines and treats each as its row of the command table says; a line without a
// row waits. True: the search must stop.
bool PollCommands();

// Prints a thinking line, unless the front end wants none: plies, score, centiseconds, nodes,
// moves.
void PrintThinking(const SearchLine& line);

// Writes the root move into analyze_info, for the status line. Always true: the search may go on.
bool NoteRootMove(const Move& move);
