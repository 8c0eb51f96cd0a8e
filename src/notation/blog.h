// The plain text logs: a summary line a game, and a line a rejected command.
#pragma once

#include "notation/portable.h"

#include <string_view>

// Appends the game's summary to GameLog. The tags must stand under their real colours.
void BlogGame(const PgnGameInfo& info);

// Appends a message to ErrorLog.
void BlogError(std::string_view message);
