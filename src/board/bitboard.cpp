#include "board/bitboard.h"

#include <algorithm>
#include <cstdlib>
#include <span>

Bitboard BIT_RANK[SQUARES];
RotatedSet BITS[SQUARES];
std::uint64_t DIAG_SHIFT_A1H8[SQUARES];
std::uint64_t DIAG_MASK_A1H8[SQUARES];
std::uint64_t DIAG_SHIFT_A8H1[SQUARES];
std::uint64_t DIAG_MASK_A8H1[SQUARES];
Bitboard MOVES_RANK[SQUARES * OCCUPANCIES];
Bitboard MOVES_FILE[SQUARES * OCCUPANCIES];
Bitboard MOVES_A1H8[SQUARES * OCCUPANCIES];
Bitboard MOVES_A8H1[SQUARES * OCCUPANCIES];
Bitboard ATTACKS_KNIGHT[SQUARES];
Bitboard ATTACKS_KING[SQUARES];
Bitboard ATTACKS_PAWN[COLOURS][SQUARES];
Bitboard ATTACKS_ENPASSANT[SQUARES];
Bitboard SQUARES_FRONT[COLOURS][SQUARES];
Bitboard SQUARES_AROUND[KING_DISTANCES][SQUARES];
Bitboard SQUARES_BORDER[KING_DISTANCES][SQUARES];
Bitboard PAWN_PASSED[COLOURS][SQUARES];
Bitboard PAWN_BACKWARD_F[COLOURS][SQUARES];
Bitboard PAWN_BACKWARD_B[COLOURS][SQUARES];
Bitboard PAWN_ISOLATED[SQUARES];
Bitboard PAWN_DOUBLED[SQUARES];
Bitboard NEW_PIECES_BY_TYPE[PIECE_INDICES];
RotatedSet NEW_PIECES_ALL[COLOURS];

namespace {

constexpr int DIAGONALS = 15;

// Piece codes of unmoved pieces. Each name is W or B for the colour and the FEN letter of the type.
constexpr Piece WP = UnmovedPiece(WHITE, PAWN), WN = UnmovedPiece(WHITE, KNIGHT);
constexpr Piece WB = UnmovedPiece(WHITE, BISHOP), WR = UnmovedPiece(WHITE, ROOK);
constexpr Piece WQ = UnmovedPiece(WHITE, QUEEN), WK = UnmovedPiece(WHITE, KING);
constexpr Piece BP = UnmovedPiece(BLACK, PAWN), BN = UnmovedPiece(BLACK, KNIGHT);
constexpr Piece BB = UnmovedPiece(BLACK, BISHOP), BR = UnmovedPiece(BLACK, ROOK);
constexpr Piece BQ = UnmovedPiece(BLACK, QUEEN), BK = UnmovedPiece(BLACK, KING);

constexpr int RankStep(Colour colour) { return PAWN_STEP[colour] / BOARD_SIDE; }

constexpr Bitboard Bit(int number) { return Bitboard{1} << number; }

// Returns the bit of the square, or 0 if the square is off the board.
constexpr Bitboard BitAt(int file, int rank) {
    return IsOnBoard(file, rank) ? Bit(SquareOf(file, rank)) : 0;
}

// All diagonals of one direction. `first_bit` is the bit number of the first square of each
// diagonal in the diagonal order.
struct DiagonalSet {
    int length[DIAGONALS];
    int first_bit[DIAGONALS];
    int squares[DIAGONALS][BOARD_SIDE];
};

void FillPlainAndFileOrders() {
    for (int square = 0; square < SQUARES; ++square) {
        BIT_RANK[square] = BITS[square].rank = Bit(square);
        BITS[square].file = Bit(FileOf(square) * BOARD_SIDE + RankOf(square));
    }
}

// Assigns bit numbers to the squares, one diagonal after another. The a1h8 order begins a1, b1, a2,
// c1, b2, a3 and ends with h8. The a8h1 order begins a8, b8, a7, c8, b7, a6 and ends with h1.
DiagonalSet FillDiagonalOrder(bool is_a1h8) {
    DiagonalSet set{};
    int next_bit = 0;
    for (int diagonal = 0; diagonal < DIAGONALS; ++diagonal) {
        set.first_bit[diagonal] = next_bit;
        for (int step = 0; step < BOARD_SIDE; ++step) {
            const int rank = is_a1h8 ? step : RANK_8 - step;
            const int file = is_a1h8 ? diagonal - rank : diagonal - RANK_8 + rank;
            if (!IsOnBoard(file, rank)) continue;
            const int square = SquareOf(file, rank);
            set.squares[diagonal][set.length[diagonal]++] = square;
            (is_a1h8 ? BITS[square].a1h8 : BITS[square].a8h1) = Bit(next_bit++);
        }
    }
    return set;
}

void FillInitialBitboards() {
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = NEW_POSITION[square];
        if (piece == NO_PIECE) continue;
        const Colour colour = ColourOf(piece);
        Toggle(NEW_PIECES_ALL[colour], BITS[square]);
        NEW_PIECES_BY_TYPE[PieceIndex(piece)] |= BIT_RANK[square];
    }
}

void FillLeaperAttacks() {
    for (int square = 0; square < SQUARES; ++square) {
        const int file = FileOf(square);
        const int rank = RankOf(square);
        for (int i = 0; i < 8; ++i) {
            ATTACKS_KING[square] |= BitAt(file + KING_X[i], rank + KING_Y[i]);
            ATTACKS_KNIGHT[square] |= BitAt(file + KNIGHT_X[i], rank + KNIGHT_Y[i]);
        }
        for (const Colour colour : {WHITE, BLACK}) {
            const int ahead = rank + RankStep(colour);
            ATTACKS_PAWN[colour][square] = BitAt(file - 1, ahead) | BitAt(file + 1, ahead);
        }
        if (rank == 3 || rank == 4) {
            ATTACKS_ENPASSANT[square] = BitAt(file - 1, rank) | BitAt(file + 1, rank);
        }
    }
}

// Returns the squares that a slider at index `from` attacks along the line. The first occupied
// square in each direction is included.
Bitboard LineMoves(std::span<const int> line, int from, int occupancy) {
    Bitboard moves = 0;
    for (const int step : {-1, 1}) {
        for (int i = from + step; i >= 0 && i < static_cast<int>(line.size()); i += step) {
            moves |= Bit(line[static_cast<std::size_t>(i)]);
            if (occupancy & (1 << i)) break;
        }
    }
    return moves;
}

void FillLine(std::span<const int> line, Bitboard* moves) {
    const int length = static_cast<int>(line.size());
    for (int from = 0; from < length; ++from) {
        for (int occupancy = 0; occupancy < (1 << length); ++occupancy) {
            const int square = line[static_cast<std::size_t>(from)];
            moves[LineIndex(square, static_cast<std::uint64_t>(occupancy))] =
                LineMoves(line, from, occupancy);
        }
    }
}

void FillRankAndFileMoves() {
    for (int i = 0; i < BOARD_SIDE; ++i) {
        int rank_squares[BOARD_SIDE];
        int file_squares[BOARD_SIDE];
        for (int j = 0; j < BOARD_SIDE; ++j) {
            rank_squares[j] = SquareOf(j, i);
            file_squares[j] = SquareOf(i, j);
        }
        FillLine(rank_squares, MOVES_RANK);
        FillLine(file_squares, MOVES_FILE);
    }
}

void FillDiagonalMoves(const DiagonalSet& set, Bitboard* moves, std::uint64_t* shifts,
                       std::uint64_t* masks) {
    for (int diagonal = 0; diagonal < DIAGONALS; ++diagonal) {
        const int length = set.length[diagonal];
        const std::span<const int> line = SpanOf(set.squares[diagonal], length);
        FillLine(line, moves);
        for (const int square : line) {
            shifts[square] = static_cast<std::uint64_t>(set.first_bit[diagonal]);
            masks[square] = (std::uint64_t{1} << length) - 1;
        }
    }
}

// Returns the squares of a file from rank `first` to the last pawn rank (2 or 7) in the direction
// of `step`, which is 1 or -1. Returns 0 if the file is off the board or `first` is not a pawn
// rank.
Bitboard PawnFile(int file, int first, int step) {
    Bitboard squares = 0;
    for (int rank = first; rank >= RANK_2 && rank <= RANK_7; rank += step) {
        squares |= BitAt(file, rank);
    }
    return squares;
}

void FillPawnMasks() {
    for (int square = SquareOf(FILE_A, RANK_2); square <= SquareOf(FILE_H, RANK_7); ++square) {
        const int file = FileOf(square);
        const int rank = RankOf(square);
        for (const Colour colour : {WHITE, BLACK}) {
            const int step = RankStep(colour);
            PAWN_BACKWARD_F[colour][square] =
                PawnFile(file - 1, rank + step, step) | PawnFile(file + 1, rank + step, step);
            PAWN_BACKWARD_B[colour][square] =
                PawnFile(file - 1, rank, -step) | PawnFile(file + 1, rank, -step);
            PAWN_PASSED[colour][square] =
                PAWN_BACKWARD_F[colour][square] | PawnFile(file, rank + step, step);
        }
        PAWN_ISOLATED[square] = PawnFile(file - 1, RANK_2, 1) | PawnFile(file + 1, RANK_2, 1);
        PAWN_DOUBLED[square] = PawnFile(file, RANK_2, 1) & ~BIT_RANK[square];
    }
}

void FillNeighbourhoods() {
    for (int square = 0; square < SQUARES; ++square) {
        for (int other = 0; other < SQUARES; ++other) {
            const int distance = std::max(std::abs(FileOf(other) - FileOf(square)),
                                          std::abs(RankOf(other) - RankOf(square)));
            if (distance == 0 || distance >= KING_DISTANCES) continue;
            SQUARES_BORDER[distance][square] |= BIT_RANK[other];
            for (int d = distance; d < KING_DISTANCES; ++d) {
                SQUARES_AROUND[d][square] |= BIT_RANK[other];
            }
        }
        for (const Colour colour : {WHITE, BLACK}) {
            for (int ahead = square + PAWN_STEP[colour]; IsSquare(ahead);
                 ahead += PAWN_STEP[colour]) {
                SQUARES_FRONT[colour][square] |= BIT_RANK[ahead];
            }
        }
    }
}

} // namespace

// clang-format off
const Piece NEW_POSITION[SQUARES] = {
    WR, WN, WB, WQ, WK, WB, WN, WR,
    WP, WP, WP, WP, WP, WP, WP, WP,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
    BP, BP, BP, BP, BP, BP, BP, BP,
    BR, BN, BB, BQ, BK, BB, BN, BR,
};
// clang-format on

void InitializeBitBoard() {
    FillPlainAndFileOrders();
    const DiagonalSet a1h8 = FillDiagonalOrder(true);
    const DiagonalSet a8h1 = FillDiagonalOrder(false);
    FillInitialBitboards();
    FillLeaperAttacks();
    FillRankAndFileMoves();
    FillDiagonalMoves(a1h8, MOVES_A1H8, DIAG_SHIFT_A1H8, DIAG_MASK_A1H8);
    FillDiagonalMoves(a8h1, MOVES_A8H1, DIAG_SHIFT_A8H1, DIAG_MASK_A8H1);
    FillPawnMasks();
    FillNeighbourhoods();
}
