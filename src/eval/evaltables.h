// Scoring tables of the evaluation, in centipawns, and the position's two incremental sums.
#pragma once

#include "board/types.h"

#include <cstdint>

// Value of each piece type. No sum includes the king's.
inline constexpr std::int32_t PIECE_WEIGHT[PIECE_TYPES] = {0, 100, 300, 1'000'000,
                                                           0, 300, 500, 900};

inline constexpr int GAME_PHASES = 3; // many pieces, some, few

// By (piece index) * 64 + square; the rows of kings and queens are 0.
extern std::int32_t PIECE_SQUARE_EVAL[PIECE_INDICES * SQUARES];

// By (colour * GAME_PHASES + phase) * 64 + square.
extern std::int32_t KING_PIECE_SQUARE_EVAL[COLOURS * GAME_PHASES * SQUARES];

inline std::int32_t PieceSquareEval(Colour colour, int type, int square) {
    return PIECE_SQUARE_EVAL[PieceSquareIndex(colour, type, square)];
}

inline std::int32_t KingPieceSquareEval(Colour colour, int phase, int square) {
    return KING_PIECE_SQUARE_EVAL[(colour * GAME_PHASES + phase) * SQUARES + square];
}

// Copies a table of 64 values with its ranks reversed.
void ReverseBoard(const std::int32_t* source, std::int32_t* destination);

// Fills both tables, the black halves by mirroring the white ones. Call once, at start-up.
void InitializeEvaluate();

// Computes piece_weight_eval and piece_square_eval from the board.
void NewEvaluation();
