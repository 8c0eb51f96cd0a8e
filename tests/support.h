// Helpers for the tests: set up positions, play moves, and read recorded searches.
#pragma once

#include "notation/fen.h"

#include <cstdint>
#include <string>
#include <vector>

// Starts a game from the FEN; "startpos" is the initial position. The test fails if the FEN is
// refused.
void StartAt(const std::string& fen);

// Plays moves in coordinate notation or SAN, separated by blanks. The test fails at an illegal
// move.
void Play(const std::string& moves);

// A block of tests/cases/thinking.txt: a search, or several searches that form a game, with the
// expected thinking lines and moves.
struct Reference {
    std::string name, fen, text;
    std::int32_t plies = 0;
};
std::vector<Reference> ReadReferences();
