// Thinking lines, which tell the front end what the search finds.
#pragma once

#include "search/request.h"

// Prints the line, unless the front end wants none: plies, score, centiseconds, nodes, moves.
void PrintThinking(const SearchLine& line);
