// Elementary endings: what wins against the bare king, for levels whose search does not see so far.
#pragma once

#include "board/move.h"

// The opponent has the bare king, and the side to move a queen or a rook.
bool IsElementaryWin();

// Finds a move that drives the king to the edge and mates. Only in such an ending; it searches five
// plies at most, for some milliseconds.
void FindMopUpMove(Move& move);
