// The game so far as a record. Writing it takes the game back to its start, so these play it again.
#pragma once

#include "board/move.h"

#include <cstdio>
#include <span>
#include <vector>

std::vector<Move> MovesSoFar();

// Plays the moves of a record from the start of its game.
void PlayAgain(std::span<const Move> moves);

// Writes the moves, numbered and wrapped, without a line end.
void WriteMovesSoFar(std::FILE* file);

// Appends the game to a PGN file, with this result. False when it cannot be written.
bool AppendGameSoFar(const char* file_name, const char* result);
