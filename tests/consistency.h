// A second computation of the position's records, for the tests and the fuzz harnesses.
#pragma once

#include "board/position.h"

// Returns true if all records are what the squares and the moves of the game give.
bool IsConsistentPosition();
