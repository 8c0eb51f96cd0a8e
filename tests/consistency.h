// For tests and fuzz harnesses. Each move updates the bitboards, counts, sums and hash key of the
// position. This check recomputes them and compares.
#pragma once

#include "board/position.h"

// True if the position's bitboards, counts, sums and hash key agree with its squares and with the
// moves of the game.
bool IsConsistentPosition();
