// The game that a UCI front end sets up: its starting position and moves.
#pragma once

#include "board/move.h"

#include <string_view>

// Finds the legal move whose coordinate notation is exactly the word. Returns false if there is
// none.
bool FindMove(std::string_view word, Move& move);

// Sets up the game of "position startpos|fen FEN [moves MOVE...]". If the position
// is not playable or a move is not legal, reports that and keeps the previous game.
void SetUpGame(std::string_view arguments);

// Discards the game and clears the tables.
void ForgetGame();

// Sets up the same game again, after other code has used the board.
void RestoreGame();
