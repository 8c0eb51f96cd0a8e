// For tests and fuzz harnesses: checks the position's records, which each move updates, by
// computing them again.
#pragma once

#include "board/position.h"

// True if the position's bitboards, counts, sums and hash key agree with its squares and with the
// moves of the game.
bool IsConsistentPosition();
