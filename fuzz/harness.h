// What the fuzz harnesses share: an engine on a platform layer in memory, and the checks after each
// step.
#pragma once

#include "board/move.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// A byte that is not read: it hides the input after it for 50 polls, so that a search goes on.
inline constexpr char PAUSE = '\x01';

// Makes the text standard input, to its end.
void SetInput(std::string_view text);

// Appends standard output to the text from now on.
void SetOutput(std::string* text);

// Closes the files that the engine left open.
void CloseFiles();

// The largest table that can be allocated from now on.
void SetMostMemory(std::size_t bytes);

// Gives the engine its state after start-up, in a new game.
void ResetEngine(bool has_book);

// Runs a function that may call exit(). Returns the exit status, or -1 if the function returned.
int RunToExit(const std::function<void()>& run);

void WriteText(const char* file_name, std::string_view text);
std::string ReadText(const char* file_name);

// Writes a book of four short lines.
void WriteSmallBook(const char* file_name);

// Ends the run as a finding unless the condition holds.
void Require(bool holds, const char* what);

// Checks that the position's records agree with a recomputation and with the game's records.
void CheckPosition();

// Checks that the position's FEN reads as the same position, which becomes the start of the game.
void CheckFen();

// Undoes every move, and checks each position.
void CheckUndo();

// Plays a legal move, and checks that it is read as it is written in both notations.
void PlayLegalMove(const Move& move);

// The same for a move in text. Ignores text that is not a legal move.
void PlayUserMove(std::string_view token);
