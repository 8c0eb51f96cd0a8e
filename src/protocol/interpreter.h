// The command interpreter of the Chess Engine Communication Protocol, version 2.
#pragma once

#include "protocol/command.h"

#include <span>

// All commands, for the poll of the search to hear them too.
std::span<const Command> CommandTable();

// Carries out one command line, thinking included if the command starts it. An unknown line gets an
// error line.
void ParseCommand(const char* line);
