// Moves typed by a user.
#pragma once

#include "board/move.h"

#include <string>
#include <string_view>
#include <vector>

// Returns all legal moves that match the text. An ambiguous text matches several moves. Accepts SAN
// and coordinates, 0 for O in castling, and a move number before the move. In SAN, the marks for
// capture, promotion and check are optional. The file and the rank of the from-square are also
// optional. A promotion without a piece letter is to a queen. If no move matches exactly, ignores
// case.
std::vector<Move> FindTypedMoves(std::string_view text);

// Returns an error message for an illegal move, such as "Illegal move: Rd2 (the rook on e2 is
// pinned)". Returns an empty text if the input does not look like a move.
std::string WrittenRefusal(std::string_view text);
