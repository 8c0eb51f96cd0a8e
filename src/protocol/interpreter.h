// The command interpreter of the Chess Engine Communication Protocol, version 2.
#pragma once

// Carries out one command line, thinking included if the command starts it. Every line gets its
// answer, an unknown one an error line.
void ParseCommand(const char* line);
