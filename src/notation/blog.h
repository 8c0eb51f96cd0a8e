// Two text logs: GameLog has one line per game, ErrorLog has one line per rejected command.
#pragma once

#include "notation/portable.h"

#include <string_view>

// Appends a summary line to GameLog. Call CorrectPgnTagValues on `info` first, so that the tags
// match the colours played.
void BlogGame(const PgnGameInfo& info);

// Appends the message to ErrorLog, with the program version, date and time.
void BlogError(std::string_view message);
