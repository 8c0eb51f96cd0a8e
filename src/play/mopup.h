// A special search for endings with a queen or a rook against a bare king. The normal search of a
// weak strength level cannot win these endings.
#pragma once

#include "board/move.h"

#include <cstdint>

// True if the opponent has only the king left and the side to move has a queen or a rook.
bool IsElementaryWin();

// Finds a move that mates the bare king or drives it to the edge. Returns the move's score.
// Requires IsElementaryWin(). Takes a few hundredths of a second.
std::int32_t FindMopUpMove(Move& move);
