// Moves as people type them.
#pragma once

#include "board/move.h"

#include <string>
#include <string_view>
#include <vector>

// The legal moves that a text can mean: standard algebraic notation with or without marks, with
// more or less of the from-square than needed, coordinates, O or 0 for castling, a move number
// before it, and any case where only one piece fits. A promotion that names no piece is to a queen.
// None: the text is not a legal move; several: it is ambiguous.
std::vector<Move> FindTypedMoves(std::string_view text);

// Answers a text that is not a legal move: "Illegal move: Rd2 (the rook on e2 is pinned)". Empty
// when the text does not look like a move.
std::string WrittenRefusal(std::string_view text);
