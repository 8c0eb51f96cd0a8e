// The one position of the program: the board, its bitboards, counts, sums and hash key, and the
// history of keys. The search walks the tree by changing it in place.
#pragma once

#include "board/bitboard.h"
#include "board/types.h"

#include <cstdint>

// Zobrist keys: the random numbers whose exclusive or is a position's hash key.
extern std::uint64_t ZOBRIST_KEY_GLOBAL[PIECE_INDICES * SQUARES];
extern std::uint64_t ZOBRIST_KEY_CASTLE[COLOURS * CASTLE_SIDES]; // by CastleIndex
extern std::uint64_t ZOBRIST_KEY_ENPASSANT[SQUARES]; // the square that a double step passed over
extern std::uint64_t ZOBRIST_KEY_SIDE_SWITCH;        // in the key while black is to move

constexpr int CastleIndex(Colour colour, CastleSide side) { return colour * CASTLE_SIDES + side; }

// The key of a piece on a square; the moved flag plays no part in it.
inline std::uint64_t PieceKey(Colour colour, int type, int square) {
    return ZOBRIST_KEY_GLOBAL[PieceSquareIndex(colour, type, square)];
}

// Sets all keys from the random numbers. Call right after the seeding, so that every run has the
// same keys.
void InitializeZobristKeys();

// Invariants: the sets agree with `position`; each colour has exactly one king.
struct Position {
    alignas(64) Piece position[SQUARES]; // the piece on each square
    alignas(64) Bitboard pieces_by_type[PIECE_INDICES];
    alignas(64) RotatedSet pieces_all[COLOURS];
    std::int32_t pieces_on_board[COLOURS]; // pieces other than pawns, kings included

    // Sums in centipawns over a colour's pieces except the king.
    std::int32_t piece_weight_eval[COLOURS];
    std::int32_t piece_square_eval[COLOURS];

    Colour side_to_move;
    std::int32_t zobrist_ply_number; // index into the key history
    std::uint64_t zobrist_key;       // the hash key
    std::uint64_t zobrist_xor;       // the en-passant key within zobrist_key; 0: none

    bool operator==(const Position&) const = default;
};
extern Position board;

// True while a command runs during a search. The board is then at some node of the tree, so
// functions that need the game's board assert that this is false.
extern bool is_position_withheld;

// The Zobrist keys of the game and of the current search line, indexed by ply number.
inline constexpr int KEY_HISTORY_SIZE = 4096;
inline constexpr int MAX_PLY_NUMBER = KEY_HISTORY_SIZE - 1;
inline constexpr int MAX_LINE_PLIES = 320; // the longest search line
extern std::uint64_t zobrist_keys[KEY_HISTORY_SIZE];
extern std::uint64_t zobrist_xors[KEY_HISTORY_SIZE];

inline Bitboard PiecesOf(Colour colour, int type) {
    return board.pieces_by_type[PieceIndex(colour, type)];
}

inline int KingSquare(Colour colour) { return FirstBitNumber(PiecesOf(colour, KING)); }

// Adds or removes a piece in the bitboards only.
inline void TogglePieceOnBitBoard(Colour colour, int type, int square) {
    Toggle(board.pieces_all[colour], BITS[square]);
    board.pieces_by_type[PieceIndex(colour, type)] ^= BIT_RANK[square];
}

// Sets up the initial position, except the evaluation sums; see NewEvaluation.
void NewRepresentation();
