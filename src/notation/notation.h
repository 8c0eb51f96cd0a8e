// Moves as text, in coordinate notation (e2e4, e7e8q) and in standard algebraic notation (SAN:
// Nf3, exd5, e8=Q, O-O).
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// True if the text begins like a move in coordinate notation.
bool IsInCan(std::string_view text);

// Finds the move of the side to move that a token of either notation names. Returns false, and
// leaves `move` unchanged, if there is none. The move may leave the king in check. Parsing is
// lenient: a promotion without a letter is to a queen, a token that begins with O is castling, and
// the piece letter is ignored if both file and rank of the from-square are given.
bool ParseMove(std::string_view text, Move& move);

// Return the text of a move, in a static buffer for each notation. The board must show the position
// before the move. WrittenMove uses the current output notation.
const char* WrittenSan(const Move& move);
const char* WrittenCoordinates(const Move& move);
const char* WrittenMove(const Move& move);
