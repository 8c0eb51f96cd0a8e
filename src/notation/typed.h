// Moves as people type them.
#pragma once

#include "board/move.h"

#include <string>
#include <string_view>
#include <vector>

// Returns the legal moves that a text can mean: none if it is not a legal move, several if it is
// ambiguous. Accepts SAN with or without marks, with more or less of the from-square than needed,
// coordinates, O or 0 for castling, a leading move number, and any case if only one piece fits. A
// promotion without a piece is to a queen.
std::vector<Move> FindTypedMoves(std::string_view text);

// Returns the error message for an illegal move: "Illegal move: Rd2 (the rook on e2 is pinned)".
// Empty if the text does not look like a move.
std::string WrittenRefusal(std::string_view text);
