// What the tests share: positions and moves as text.
#pragma once

#include "notation/fen.h"

#include <cstdint>
#include <string>
#include <vector>

// Starts a game from the position, or from the initial one when it is "startpos"; the test fails
// when the position is refused.
void StartAt(const std::string& fen);

// Plays moves given in either notation, blanks between; the test fails at an illegal one.
void Play(const std::string& moves);

// The legal moves, in generation order and coordinate notation, blanks between.
std::string LegalMoves();

// Searches of a position, or of a game that the engine plays by itself, with the lines that other
// programs print for them.
struct Reference {
    std::string name, fen, text;
    std::int32_t plies = 0;
};
std::vector<Reference> ReadReferences();
