#include "eval/evaltables.h"

#include "board/position.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

// A piece-square table for white in reading order: a8 first, h1 last.
using Diagram = std::array<std::int32_t, SQUARES>;

// clang-format off
constexpr Diagram PAWN_DIAGRAM = {
      0,   0,   0,   0,   0,   0,   0,   0,
     12,  16,  24,  32,  32,  24,  16,  12,
     12,  16,  24,  32,  32,  24,  16,  12,
      8,  12,  16,  24,  24,  16,  12,   8,
      6,   8,  12,  16,  16,  12,   8,   6,
      6,   8,   2,  10,  10,   2,   8,   6,
      4,   4,   4,   0,   0,   4,   4,   4,
      0,   0,   0,   0,   0,   0,   0,   0,
};

constexpr Diagram KNIGHT_DIAGRAM = {
      0,   4,   8,  10,  10,   8,   4,   0,
      4,   8,  16,  20,  20,  16,   8,   4,
      8,  16,  24,  28,  28,  24,  16,   8,
     10,  20,  28,  32,  32,  28,  20,  10,
     10,  20,  28,  32,  32,  28,  20,  10,
      8,  16,  24,  28,  28,  24,  16,   8,
      4,   8,  16,  20,  20,  16,   8,   4,
      0,   4,   8,  10,  10,   8,   4,   0,
};

constexpr Diagram BISHOP_DIAGRAM = {
     14,  14,  14,  14,  14,  14,  14,  14,
     14,  24,  19,  19,  19,  19,  24,  14,
     14,  19,  24,  24,  24,  24,  19,  14,
     14,  19,  24,  24,  24,  24,  19,  14,
     14,  19,  24,  24,  24,  24,  19,  14,
     14,  19,  24,  24,  24,  24,  19,  14,
     14,  24,  19,  19,  19,  19,  24,  14,
     14,  14,  14,  14,  14,  14,  14,  14,
};

constexpr Diagram ROOK_DIAGRAM = {
      3,   3,   3,   3,   3,   3,   3,   3,
      6,   6,   6,   6,   6,   6,   6,   6,
      3,   3,   3,   3,   3,   3,   3,   3,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
      0,   0,   0,   0,   0,   0,   0,   0,
     -3,   0,   0,   0,   0,   0,   0,  -3,
};

constexpr Diagram KING_DIAGRAM_0 = {
      0,   0,  -8, -20, -20,  -8,   0,   0,
     -8,  -8, -20, -32, -32, -20,  -8,  -8,
    -24, -32, -40, -40, -40, -40, -32, -24,
    -32, -40, -48, -48, -48, -48, -40, -32,
    -32, -40, -48, -48, -48, -48, -40, -32,
    -24, -32, -40, -40, -40, -40, -32, -24,
     -8,  -8, -20, -32, -32, -20,  -8,  -8,
      0,   0, -10, -20, -20, -12,   0,   0,
};

constexpr Diagram KING_DIAGRAM_1 = {
      0,   6,  12,  18,  18,  12,   6,   0,
      6,  12,  18,  24,  24,  18,  12,   6,
     12,  18,  24,  30,  30,  24,  18,  12,
     18,  24,  30,  36,  36,  30,  24,  18,
     18,  24,  30,  36,  36,  30,  24,  18,
     12,  18,  24,  30,  30,  24,  18,  12,
      6,  12,  18,  24,  24,  18,  12,   6,
      0,   6,  12,  18,  18,  12,   6,   0,
};

constexpr Diagram KING_DIAGRAM_2 = {
     24,  30,  36,  42,  42,  36,  30,  24,
     30,  36,  42,  48,  48,  42,  36,  30,
     24,  30,  36,  42,  42,  36,  30,  24,
     18,  24,  30,  36,  36,  30,  24,  18,
     18,  24,  30,  36,  36,  30,  24,  18,
     12,  18,  24,  30,  30,  24,  18,  12,
      6,  12,  18,  24,  24,  18,  12,   6,
      0,   6,  12,  18,  18,  12,   6,   0,
};
// clang-format on

void PlacePieceTable(PieceType type, const Diagram& diagram) {
    ReverseBoard(diagram.data(), &PIECE_SQUARE_EVAL[PieceSquareIndex(WHITE, type, 0)]);
}

void PlaceKingTable(std::ptrdiff_t phase, const Diagram& diagram) {
    ReverseBoard(diagram.data(), &KING_PIECE_SQUARE_EVAL[phase * SQUARES]);
}

} // namespace

std::int32_t PIECE_SQUARE_EVAL[PIECE_INDICES * SQUARES];
std::int32_t KING_PIECE_SQUARE_EVAL[COLOURS * GAME_PHASES * SQUARES];

void ReverseBoard(const std::int32_t* source, std::int32_t* destination) {
    for (int rank = RANK_1; rank <= RANK_8; ++rank) {
        std::copy_n(source + SquareOf(FILE_A, rank), BOARD_SIDE,
                    destination + SquareOf(FILE_A, RANK_8 - rank));
    }
}

void InitializeEvaluate() {
    PlacePieceTable(PAWN, PAWN_DIAGRAM);
    PlacePieceTable(KNIGHT, KNIGHT_DIAGRAM);
    PlacePieceTable(BISHOP, BISHOP_DIAGRAM);
    PlacePieceTable(ROOK, ROOK_DIAGRAM);
    PlaceKingTable(0, KING_DIAGRAM_0);
    PlaceKingTable(1, KING_DIAGRAM_1);
    PlaceKingTable(2, KING_DIAGRAM_2);
    for (std::ptrdiff_t row = 0; row < PIECE_TYPES; ++row) {
        ReverseBoard(&PIECE_SQUARE_EVAL[row * SQUARES],
                     &PIECE_SQUARE_EVAL[(PIECE_TYPES + row) * SQUARES]);
    }
    for (std::ptrdiff_t phase = 0; phase < GAME_PHASES; ++phase) {
        ReverseBoard(&KING_PIECE_SQUARE_EVAL[phase * SQUARES],
                     &KING_PIECE_SQUARE_EVAL[(GAME_PHASES + phase) * SQUARES]);
    }
}

void NewEvaluation() {
    std::ranges::fill(board.piece_weight_eval, 0);
    std::ranges::fill(board.piece_square_eval, 0);
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = board.position[square];
        if (piece == NO_PIECE || TypeOf(piece) == KING) continue;
        const Colour colour = ColourOf(piece);
        board.piece_weight_eval[colour] += PIECE_WEIGHT[TypeOf(piece)];
        board.piece_square_eval[colour] += PieceSquareEval(colour, TypeOf(piece), square);
    }
}
