// What the tests share: positions and moves as text.
#pragma once

#include <string>

inline const std::string INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Starts a game from the position, or from the initial one when it is "startpos"; the test fails
// when the position is refused.
void StartAt(const std::string& fen);

// Plays moves given in either notation, blanks between; the test fails at an illegal one.
void Play(const std::string& moves);

// The legal moves, in generation order and coordinate notation, blanks between.
std::string LegalMoves();
