// The plain text logs: one summary line per game, one line per rejected command.
#pragma once

#include "notation/portable.h"

#include <string_view>

// Appends the game's summary to GameLog. The tags must be under the real colours.
void BlogGame(const PgnGameInfo& info);

// Appends a message to ErrorLog.
void BlogError(std::string_view message);
