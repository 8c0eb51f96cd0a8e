// Piece values and piece-square tables, in centipawns.
#pragma once

#include "board/types.h"

#include <cstdint>

// Value of each piece type. The sums in `board` leave out the king's value.
inline constexpr std::int32_t PIECE_WEIGHT[PIECE_TYPES] = {0, 100, 300, 1'000'000,
                                                           0, 300, 500, 900};

inline constexpr int GAME_PHASES = 3; // phase 0 has the most pieces, phase 2 the fewest

// Indexed by PieceSquareIndex. All values of kings and queens are 0.
extern std::int32_t PIECE_SQUARE_EVAL[PIECE_INDICES * SQUARES];

// Indexed by (colour * GAME_PHASES + phase) * SQUARES + square.
extern std::int32_t KING_PIECE_SQUARE_EVAL[COLOURS * GAME_PHASES * SQUARES];

inline std::int32_t PieceSquareEval(Colour colour, int type, int square) {
    return PIECE_SQUARE_EVAL[PieceSquareIndex(colour, type, square)];
}

inline std::int32_t KingPieceSquareEval(Colour colour, int phase, int square) {
    return KING_PIECE_SQUARE_EVAL[(colour * GAME_PHASES + phase) * SQUARES + square];
}

// Copies a table of 64 values with the order of the ranks reversed.
void ReverseBoard(const std::int32_t* source, std::int32_t* destination);

// Fills both piece-square tables. The values for black mirror those for white. Call once, at
// start-up.
void InitializeEvaluate();

// Computes board.piece_weight_eval and board.piece_square_eval from the pieces on the board.
void NewEvaluation();
