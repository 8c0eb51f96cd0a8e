// The position in play and FEN: put on the board, written, and logged.
#pragma once

#include "notation/fen.h"

// Puts the position on the board, with its key as the first of the key history, and with what the
// game record knows of it: the double step that led here, if one did, and the fifty-move count.
// Everything else of the game is the caller's.
void PlacePosition(const Fen& fen);

// The position as FEN, in a static buffer.
const char* GetBoardFen();

// Appends the position to the log of final positions.
void WriteFenBoard();
