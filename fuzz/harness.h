// Functions for all fuzz harnesses: input and output in memory, resetting the engine, and checks
// after each step.
#pragma once

#include "board/move.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// After this byte, the rest of a fuzz input stays hidden for 50 polls of the input, so that a
// search can run. The byte itself never reaches the engine.
inline constexpr char PAUSE = '\x01';

// From now on, the engine reads this text as its standard input.
void SetInput(std::string_view text);

// From now on, the engine's standard output is appended to `text`.
void SetOutput(std::string* text);

// Closes all files that the engine has opened and not closed.
void CloseFiles();

// From now on, every allocation of a table larger than `bytes` fails.
void SetMostMemory(std::size_t bytes);

// Puts the engine into the state after start-up and starts a new game. The engine uses its book
// only if `has_book` is true.
void ResetEngine(bool has_book);

// Runs a function that may call exit(). Returns the exit status, or -1 if exit() was not called.
int RunToExit(const std::function<void()>& run);

void WriteText(const char* file_name, std::string_view text);
std::string ReadText(const char* file_name);

// Writes a book file made from four short games.
void WriteSmallBook(const char* file_name);

// If `holds` is false, prints `what` and aborts. The fuzzer then saves the input.
void Require(bool holds, const char* what);

// Recomputes the bitboards, counts, sums and hash key of the position. Fails if they differ from
// the stored ones, or if the game history does not end with this position.
void CheckPosition();

// Writes the position as a FEN, sets up a new game from this FEN, and checks that the position is
// unchanged.
void CheckFen();

// Undoes every move of the game, and calls CheckPosition for every position.
void CheckUndo();

// Writes a legal move in coordinate notation and in SAN, and checks that each text reads as the
// same move. Then plays the move. Does nothing if the history is full.
void PlayLegalMove(const Move& move);

// Calls PlayLegalMove for a move given as text. Does nothing if the text is not a legal move.
void PlayUserMove(std::string_view token);
