// Helpers of the tests: positions and moves as text.
#pragma once

#include "notation/fen.h"

#include <cstdint>
#include <string>
#include <vector>

// Starts a game from the position, or from the initial one if it is "startpos". The test fails if
// the position is refused.
void StartAt(const std::string& fen);

// Plays moves in either notation, separated by blanks. The test fails at an illegal one.
void Play(const std::string& moves);

// A search, or a game of the engine against itself, with the lines that other programs print.
struct Reference {
    std::string name, fen, text;
    std::int32_t plies = 0;
};
std::vector<Reference> ReadReferences();
