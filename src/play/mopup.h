// Elementary endings: what wins against the bare king, for levels whose search does not see so far.
#pragma once

#include "board/move.h"

#include <cstdint>

// The opponent has the bare king, and the side to move a queen or a rook.
bool IsElementaryWin();

// Finds a move that drives the king to the edge and mates, and returns its score. Only in such an
// ending; it searches five plies at most, for some hundredths of a second.
std::int32_t FindMopUpMove(Move& move);
