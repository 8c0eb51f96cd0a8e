// The command poll: the front end is heard while the search thinks.
#pragma once

#include <cstdint>

// Carries out one command line. Given by the start-up, so that the search need not know who does;
// without it the poll hears nothing.
using CommandHandler = void (*)(const char* line);
void SetCommandHandler(CommandHandler handler);

// Looks at the waiting lines: answers those that can be answered in passing, leaves the rest to the
// main loop. 1: the search must stop; 0: it goes on.
std::uint8_t PollCommands();
