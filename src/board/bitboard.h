// Bitboard operations and precomputed tables: rotated bit orders, attacks and pawn-structure masks.
// The tables are filled once, at start-up.
#pragma once

#include "board/types.h"
#include "board/utility.h"

#include <bit>
#include <cassert>
#include <cstdint>

inline constexpr Bitboard FILE_A_SQUARES = 0x0101010101010101;
inline constexpr Bitboard FILE_H_SQUARES = FILE_A_SQUARES << FILE_H;
inline constexpr Bitboard BACK_RANKS = 0xFF000000000000FF; // ranks 1 and 8
inline constexpr Bitboard DARK_SQUARES = 0xAA55AA55AA55AA55;

// Return the index of the lowest set bit (FirstBitNumber) and of the highest set bit
// (LastBitNumber). The set must not be empty. std::countr_zero and std::countl_zero would be
// slower, because they also test for 0.
inline int FirstBitNumber(Bitboard set) {
    assert(set != 0);
    return __builtin_ctzll(set);
}
inline int LastBitNumber(Bitboard set) {
    assert(set != 0);
    return SQUARES - 1 - __builtin_clzll(set);
}

// Returns the number of set bits. Builds without the POPCNT instruction use a table.
inline int PopCount(Bitboard set) {
#ifdef __POPCNT__
    return std::popcount(set);
#else
    return static_cast<int>(POP_COUNT[set & 0xFFFF] + POP_COUNT[(set >> 16) & 0xFFFF] +
                            POP_COUNT[(set >> 32) & 0xFFFF] + POP_COUNT[set >> 48]);
#endif
}

// Removes the lowest square from a non-empty set and returns the square.
inline int PopFirstBit(Bitboard& set) {
    const int square = FirstBitNumber(set);
    set &= set - 1;
    return square;
}

// A set of squares in four bit orders. `rank` is the plain order: bit n is square n. `file` numbers
// the squares file by file: a1, a2, a3 and so on. `a1h8` numbers the squares by the diagonals
// parallel to a8-h1: a1, b1, a2, c1, b2, a3 and so on, to h8. `a8h1` numbers the squares by the
// diagonals parallel to a1-h8: a8, b8, a7, c8, b7, a6 and so on, to h1. The alignment lets a few
// vector instructions update all four orders.
struct alignas(4 * sizeof(Bitboard)) RotatedSet {
    Bitboard rank;
    Bitboard file;
    Bitboard a1h8;
    Bitboard a8h1;
    bool operator==(const RotatedSet&) const = default;
};

inline void Toggle(RotatedSet& set, const RotatedSet& squares) {
    set.rank ^= squares.rank;
    set.file ^= squares.file;
    set.a1h8 ^= squares.a1h8;
    set.a8h1 ^= squares.a8h1;
}

// For each square, the set that contains only this square. BIT_RANK is in the plain order, BITS in
// all four orders.
extern Bitboard BIT_RANK[SQUARES];
extern RotatedSet BITS[SQUARES];

// Shifts and masks that extract the occupancy of a square's diagonal from a bitboard in the a1h8 or
// a8h1 order: (bitboard >> shift) & mask.
extern std::uint64_t DIAG_SHIFT_A1H8[SQUARES];
extern std::uint64_t DIAG_MASK_A1H8[SQUARES];
extern std::uint64_t DIAG_SHIFT_A8H1[SQUARES];
extern std::uint64_t DIAG_MASK_A8H1[SQUARES];

// Index into the MOVES tables, for a square and the occupancy of its rank, file or diagonal.
inline constexpr int OCCUPANCIES = 256;
constexpr int LineIndex(int square, std::uint64_t occupancy) {
    return square * OCCUPANCIES + static_cast<int>(occupancy);
}

// Squares that a slider attacks along one line, including the first occupied square in each
// direction.
extern Bitboard MOVES_RANK[SQUARES * OCCUPANCIES];
extern Bitboard MOVES_FILE[SQUARES * OCCUPANCIES];
extern Bitboard MOVES_A1H8[SQUARES * OCCUPANCIES];
extern Bitboard MOVES_A8H1[SQUARES * OCCUPANCIES];

extern Bitboard ATTACKS_KNIGHT[SQUARES];
extern Bitboard ATTACKS_KING[SQUARES];
extern Bitboard ATTACKS_PAWN[COLOURS][SQUARES];
extern Bitboard ATTACKS_ENPASSANT[SQUARES]; // neighbouring squares on rank 4 or 5; 0 on other ranks

inline constexpr int KING_DISTANCES = 4;                 // distances 1 to 3; index 0 is unused
extern Bitboard SQUARES_FRONT[COLOURS][SQUARES];         // squares ahead on the same file
extern Bitboard SQUARES_AROUND[KING_DISTANCES][SQUARES]; // index d: squares at king distance 1 to d
extern Bitboard SQUARES_BORDER[KING_DISTANCES][SQUARES]; // index d: squares at king distance d

// Masks for the pawn structure. They contain only squares on ranks 2 to 7. A pawn is backward if
// there are own pawns in PAWN_BACKWARD_F (forward), but none in PAWN_BACKWARD_B (beside or behind).
extern Bitboard PAWN_PASSED[COLOURS][SQUARES];     // squares ahead on own and neighbouring files
extern Bitboard PAWN_BACKWARD_F[COLOURS][SQUARES]; // squares ahead on neighbouring files
extern Bitboard PAWN_BACKWARD_B[COLOURS][SQUARES]; // beside and behind on neighbouring files
extern Bitboard PAWN_ISOLATED[SQUARES];            // all squares of the neighbouring files
extern Bitboard PAWN_DOUBLED[SQUARES];             // the other squares of the same file

// The initial position in square order (a1 to h8), and its bitboards.
extern const Piece NEW_POSITION[SQUARES];
extern Bitboard NEW_PIECES_BY_TYPE[PIECE_INDICES];
extern RotatedSet NEW_PIECES_ALL[COLOURS];

// Moves of the knight and the king. X is the file offset, Y is the rank offset.
inline constexpr std::int32_t KNIGHT_X[] = {1, 2, 2, 1, -1, -2, -2, -1};
inline constexpr std::int32_t KNIGHT_Y[] = {-2, -1, 1, 2, 2, 1, -1, -2};
inline constexpr std::int32_t KING_X[] = {0, 1, 1, 1, 0, -1, -1, -1};
inline constexpr std::int32_t KING_Y[] = {-1, -1, 0, 1, 1, 1, 0, -1};

// Fills all tables of this header. Call once, after InitializeUtility.
void InitializeBitBoard();
