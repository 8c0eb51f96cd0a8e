// Functions for all fuzz harnesses: input and output in memory, the state of the engine, and checks
// after each step.
#pragma once

#include "board/move.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// A byte of the input that hides the bytes after it for 50 polls, so that a search can run. The
// engine does not read this byte.
inline constexpr char PAUSE = '\x01';

// Replaces standard input by the text.
void SetInput(std::string_view text);

// From now on, appends standard output to `text`.
void SetOutput(std::string* text);

// Closes the files that the engine left open.
void CloseFiles();

// From now on, allocations of tables larger than this fail.
void SetMostMemory(std::size_t bytes);

// Puts the engine into the state after start-up and starts a new game, with or without its book.
void ResetEngine(bool has_book);

// Runs a function that may call exit(). Returns the exit status, or -1 if exit() was not called.
int RunToExit(const std::function<void()>& run);

void WriteText(const char* file_name, std::string_view text);
std::string ReadText(const char* file_name);

// Writes a book file with four short lines of moves.
void WriteSmallBook(const char* file_name);

// Prints `what` and aborts if the condition does not hold. The fuzzer then saves the input.
void Require(bool holds, const char* what);

// Checks the position's records against a recomputation and against the game history.
void CheckPosition();

// Writes the position as a FEN, sets it up from that FEN, and checks that nothing has changed. This
// starts a new game from the position.
void CheckFen();

// Undoes every move of the game, and checks each position.
void CheckUndo();

// Checks that a legal move, written in either notation, reads as the same move. Then plays the
// move, unless the history is full.
void PlayLegalMove(const Move& move);

// The same for a move as text. Does nothing if the text is not a legal move.
void PlayUserMove(std::string_view token);
