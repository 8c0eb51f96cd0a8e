// Recomputes the records that each move updates, to check them in tests and fuzz harnesses.
#pragma once

#include "board/position.h"

// True if the position's bitboards, counts, sums and hash key agree with its squares and with the
// moves of the game.
bool IsConsistentPosition();
