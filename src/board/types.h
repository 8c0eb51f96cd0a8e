// Basic types of the engine: colours, piece codes, squares and bitboards.
#pragma once

#include <cstdint>

enum Colour : std::int32_t { WHITE = 0, BLACK = 1 };
inline constexpr int COLOURS = 2;

constexpr Colour Opponent(Colour colour) { return static_cast<Colour>(colour ^ 1); }

// Bit 2 marks the sliders. Types 5 and 7 move along diagonals, and types 6 and 7 along ranks and
// files.
enum PieceType : std::uint8_t {
    NO_PIECE_TYPE = 0,
    PAWN = 1,
    KNIGHT = 2,
    KING = 3,
    BISHOP = 5,
    ROOK = 6,
    QUEEN = 7
};
inline constexpr int PIECE_TYPES = 8;

// A piece code: the type in bits 0 to 2, the moved flag in bit 3, white in bit 6, black in bit 7.
// An empty square is 0. Castling and the pawn's double step require a clear moved flag.
using Piece = std::uint8_t;
inline constexpr Piece NO_PIECE = 0;
inline constexpr Piece TYPE_BITS = 0x07;
inline constexpr Piece MOVED_FLAG = 0x08;
inline constexpr Piece COLOUR_BITS = 0xC0;
inline constexpr Piece COLOUR_BIT[COLOURS] = {0x40, 0x80};

constexpr PieceType TypeOf(Piece piece) { return static_cast<PieceType>(piece & TYPE_BITS); }
constexpr Colour ColourOf(Piece piece) { return static_cast<Colour>(piece >> 7); }
constexpr Piece UnmovedPiece(Colour colour, PieceType type) {
    return static_cast<Piece>(COLOUR_BIT[colour] | type);
}
constexpr bool IsMoved(Piece piece) { return (piece & MOVED_FLAG) != 0; }

// Indices into tables by colour and type, 0 to 15.
inline constexpr int PIECE_INDICES = COLOURS * PIECE_TYPES;
constexpr int PieceIndex(Colour colour, int type) { return colour * PIECE_TYPES + type; }
constexpr int PieceIndex(Piece piece) { return PieceIndex(ColourOf(piece), TypeOf(piece)); }

// Squares are numbered rank by rank: a1 = 0, b1 = 1, h8 = 63.
inline constexpr int SQUARES = 64;
inline constexpr int BOARD_SIDE = 8;
inline constexpr int RANK_1 = 0;
inline constexpr int RANK_2 = 1;
inline constexpr int RANK_7 = 6;
inline constexpr int RANK_8 = 7;
inline constexpr int FILE_A = 0;
inline constexpr int FILE_C = 2;
inline constexpr int FILE_E = 4;
inline constexpr int FILE_G = 6;
inline constexpr int FILE_H = 7;

constexpr int FileOf(int square) { return square & 7; }
constexpr int RankOf(int square) { return square >> 3; }
constexpr int SquareOf(int file, int rank) { return rank * BOARD_SIDE + file; }
constexpr bool IsSquare(int square) { return square >= 0 && square < SQUARES; }
constexpr bool IsOnBoard(int file, int rank) {
    return file >= 0 && file < BOARD_SIDE && rank >= 0 && rank < BOARD_SIDE;
}

// Index into tables by colour, type and square. The signed `type` and the unsigned result avoid
// conversion instructions in hot code.
constexpr std::uint32_t PieceSquareIndex(Colour colour, int type, int square) {
    return static_cast<std::uint32_t>(PieceIndex(colour, type) * SQUARES + square);
}

// Offset from a pawn's square to the square ahead.
inline constexpr int PAWN_STEP[COLOURS] = {BOARD_SIDE, -BOARD_SIDE};

enum CastleSide : std::int32_t { KING_SIDE = 0, QUEEN_SIDE = 1 };
inline constexpr int CASTLE_SIDES = 2;

// Initial squares of kings and rooks, from which they castle.
inline constexpr int KING_HOME[COLOURS] = {SquareOf(FILE_E, RANK_1), SquareOf(FILE_E, RANK_8)};
inline constexpr int ROOK_HOME[COLOURS][CASTLE_SIDES] = {
    {SquareOf(FILE_H, RANK_1), SquareOf(FILE_A, RANK_1)},
    {SquareOf(FILE_H, RANK_8), SquareOf(FILE_A, RANK_8)}};

// A set of squares. In the plain order, bit n is square n.
using Bitboard = std::uint64_t;
