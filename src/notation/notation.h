// Moves as text, in coordinate notation (e2e4, e7e8q) and in standard algebraic notation (SAN: Nf3,
// exd5, e8=Q, O-O).
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// True if the text begins like a move in coordinate algebraic notation (CAN), such as e2e4.
bool IsInCan(std::string_view text);

// Reads a move of the side to move in either notation. The move is pseudo-legal: it may leave the
// king in check. Returns false and leaves `move` unchanged if there is no such move. A promotion
// without a piece letter is to a queen. A text that begins with O is castling. In SAN, the piece
// letter is ignored if the text contains both the file and the rank of the from-square.
bool ParseMove(std::string_view text, Move& move);

// Return the text of a move. The board must be at the position before the move. WrittenMove uses
// the notation selected by engine_state.san_notation. The texts are in two static buffers, one for
// SAN and one for coordinates.
const char* WrittenSan(const Move& move);
const char* WrittenCoordinates(const Move& move);
const char* WrittenMove(const Move& move);
