// Elementary endings against the bare king, for levels that do not search deep enough to win them.
#pragma once

#include "board/move.h"

#include <cstdint>

// True if the opponent has a bare king and the side to move a queen or a rook.
bool IsElementaryWin();

// Finds a move that drives the king to the edge or mates, and returns its score. Requires
// IsElementaryWin. Searches at most five plies, which takes a few hundredths of a second.
std::int32_t FindMopUpMove(Move& move);
