// What the fuzz harnesses share: an engine without an operating system, and what must always hold.
#pragma once

#include "board/move.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// A byte of the input that is not read: for a while nothing waits, so that a search goes on.
inline constexpr char PAUSE = '\x01';

// Standard input from now on; the end of the text is the end of the input.
void SetInput(std::string_view text);

// Where standard output goes from now on.
void SetOutput(std::string* text);

// Closes the files that the program left open.
void CloseFiles();

// How large a table can be had from now on.
void SetMostMemory(std::size_t bytes);

// A new game in an engine as it starts.
void ResetEngine(bool has_book);

// Runs what may end the program; the exit status, or -1 when it returned.
int RunToExit(const std::function<void()>& run);

void WriteText(const char* file_name, std::string_view text);
std::string ReadText(const char* file_name);

// Ends the run as a finding unless the condition holds.
void Require(bool holds, const char* what);

// The position's records agree with a recomputation, and with those of the game.
void CheckPosition();

// The position written as FEN and read again is the same. It becomes the start of the game.
void CheckFen();

// Takes every move back, and checks each position on the way.
void CheckUndo();

// Plays a legal move, and checks how it is written.
void PlayLegalMove(const Move& move);

// Does so with a move that a user gave; what is none is passed over.
void PlayUserMove(std::string_view token);
