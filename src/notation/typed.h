// Moves as a person types them.
#pragma once

#include "board/move.h"

#include <string_view>
#include <vector>

// The legal moves that a word can mean: standard algebraic notation with or without marks, with
// more or less of the square that the piece leaves than needed, coordinates, O or 0 for castling. A
// promotion that names no piece is to a queen. None: the word is no legal move; several: it is
// ambiguous.
std::vector<Move> FindTypedMoves(std::string_view word);
