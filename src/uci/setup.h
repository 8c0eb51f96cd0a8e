// The game that a UCI front end tells: where it begins, and its moves.
#pragma once

#include "board/move.h"

#include <string_view>

// Finds the legal move that the word names in coordinate notation, to the letter.
bool FindMove(std::string_view word, Move& move);

// Sets up the game of "position startpos|fen FEN [moves MOVE...]". When the position is not
// playable or a move is not legal, the front end is told, and the game of before stays.
void SetUpGame(std::string_view arguments);

// Forgets the game; the tables are emptied.
void ForgetGame();

// Sets up the game once more, after something else has used the board.
void RestoreGame();
