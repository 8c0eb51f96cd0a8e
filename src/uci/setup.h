// The game that a UCI front end sets up: its starting position and moves.
#pragma once

#include "board/move.h"

#include <string_view>

// Finds the legal move for a word in coordinate notation, such as "e7e8q". Returns false if there
// is no such move.
bool FindMove(std::string_view word, Move& move);

// Carries out "position startpos|fen FEN [moves MOVE...]". If the position or a move is illegal,
// or the game is too long, reports the error and keeps the previous game.
void SetUpGame(std::string_view arguments);

// Discards the game and clears the transposition tables.
void ForgetGame();

// Sets up the current game again, after other code has used the board.
void RestoreGame();
