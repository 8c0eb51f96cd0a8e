// Moves typed by a user.
#pragma once

#include "board/move.h"

#include <string>
#include <string_view>
#include <vector>

// Returns all legal moves that match the text; more than one if the text is ambiguous. Accepts SAN,
// coordinates, 0 for O in castling, and a leading move number. In SAN, the marks for capture,
// promotion and check are optional, and so is any part of the from-square. If no move matches
// exactly, ignores case. A promotion without a piece letter is to a queen.
std::vector<Move> FindTypedMoves(std::string_view text);

// Returns an error message for an illegal move, such as "Illegal move: Rd2 (the rook on e2 is
// pinned)". Returns an empty text if the input does not look like a move.
std::string WrittenRefusal(std::string_view text);
