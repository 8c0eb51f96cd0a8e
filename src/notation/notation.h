// Moves as text, in coordinate notation (e2e4, e7e8q) and in standard algebraic notation (SAN:
// Nf3, exd5, e8=Q, O-O).
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// The text begins like a move in coordinate notation.
bool IsInCan(std::string_view text);

// Finds the move of the side to move that one token, of either notation, names in the position.
// False, and `move` untouched, when there is none. The move may leave the own king to be taken. The
// reading is lenient: a promotion without a letter is to a queen, what begins with O is castling,
// and with file and rank both given the letter of the piece is ignored.
bool ParseMove(std::string_view text, Move& move);

// The text of a move of the position, in a static buffer for each notation. WrittenMove uses the
// current output notation.
const char* WrittenSan(const Move& move);
const char* WrittenCoordinates(const Move& move);
const char* WrittenMove(const Move& move);
