// Declares `board`, the program's only position, and the history of its hash keys. The search makes
// and unmakes its moves on `board`.
#pragma once

#include "board/bitboard.h"
#include "board/types.h"

#include <cstdint>

// Random numbers for Zobrist hashing. Castling keys are indexed by CastleIndex, and en-passant keys
// by the square that the pawn passed over. ZOBRIST_KEY_SIDE_SWITCH is part of the hash key if black
// is to move.
extern std::uint64_t ZOBRIST_KEY_GLOBAL[PIECE_INDICES * SQUARES];
extern std::uint64_t ZOBRIST_KEY_CASTLE[COLOURS * CASTLE_SIDES];
extern std::uint64_t ZOBRIST_KEY_ENPASSANT[SQUARES];
extern std::uint64_t ZOBRIST_KEY_SIDE_SWITCH;

constexpr int CastleIndex(Colour colour, CastleSide side) { return colour * CASTLE_SIDES + side; }

inline std::uint64_t PieceKey(Colour colour, int type, int square) {
    return ZOBRIST_KEY_GLOBAL[PieceSquareIndex(colour, type, square)];
}

// Draws all keys from the random generator. Call before other random numbers are drawn, so that
// every run has the same keys.
void InitializeZobristKeys();

// The bitboards always agree with the array `position`. Each colour has exactly one king.
struct Position {
    alignas(64) Piece position[SQUARES]; // NO_PIECE on empty squares
    alignas(64) Bitboard pieces_by_type[PIECE_INDICES];
    alignas(64) RotatedSet pieces_all[COLOURS];
    std::int32_t pieces_on_board[COLOURS]; // number of pieces, kings included, pawns excluded

    // Evaluation sums over all pieces of a colour except the king, in centipawns.
    std::int32_t piece_weight_eval[COLOURS];
    std::int32_t piece_square_eval[COLOURS];

    Colour side_to_move;
    std::int32_t zobrist_ply_number; // index of this position in zobrist_keys
    std::uint64_t zobrist_key;       // hash key of this position
    std::uint64_t zobrist_xor;       // en-passant key contained in zobrist_key; 0 if none

    bool operator==(const Position&) const = default;
};
extern Position board;

// True while a command is answered during a search. `board` is then a position of the search tree.
// Functions that need the position of the game assert that this flag is false.
extern bool is_position_withheld;

// Hash keys and en-passant keys of the positions of the game, followed by those of the current
// search line. Indexed by zobrist_ply_number.
inline constexpr int KEY_HISTORY_SIZE = 4096;
inline constexpr int MAX_PLY_NUMBER = KEY_HISTORY_SIZE - 1;
inline constexpr int MAX_LINE_PLIES = 320; // longest search line, in plies
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

// Sets up the initial position. Call NewEvaluation afterwards to compute the evaluation sums.
void NewRepresentation();
