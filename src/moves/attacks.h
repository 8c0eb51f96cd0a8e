// Sliding attacks by rotated bitboards, tests for attacked squares and kings, and the attack tests
// for castling and en passant.
#pragma once

#include "board/move.h"
#include "board/position.h"

#include <cstdint>

// Squares attacked by a rook, bishop or queen on the given square. The first piece in each
// direction is included, own or enemy.
inline Bitboard RookAttacks(int square) {
    const Bitboard by_rank = board.pieces_all[WHITE].rank | board.pieces_all[BLACK].rank;
    const Bitboard by_file = board.pieces_all[WHITE].file | board.pieces_all[BLACK].file;
    return MOVES_RANK[LineIndex(square, (by_rank >> (square & 56)) & 255)] |
           MOVES_FILE[LineIndex(square, (by_file >> (FileOf(square) * BOARD_SIDE)) & 255)];
}

inline Bitboard BishopAttacks(int square) {
    const Bitboard by_a1h8 = board.pieces_all[WHITE].a1h8 | board.pieces_all[BLACK].a1h8;
    const Bitboard by_a8h1 = board.pieces_all[WHITE].a8h1 | board.pieces_all[BLACK].a8h1;
    return MOVES_A1H8[LineIndex(square,
                                (by_a1h8 >> DIAG_SHIFT_A1H8[square]) & DIAG_MASK_A1H8[square])] |
           MOVES_A8H1[LineIndex(square,
                                (by_a8h1 >> DIAG_SHIFT_A8H1[square]) & DIAG_MASK_A8H1[square])];
}

inline Bitboard QueenAttacks(int square) { return BishopAttacks(square) | RookAttacks(square); }

// Squares that a rook or bishop on the given square would attack on an empty board.
inline Bitboard RookLines(int square) {
    return MOVES_RANK[LineIndex(square, 0)] | MOVES_FILE[LineIndex(square, 0)];
}

inline Bitboard BishopLines(int square) {
    return MOVES_A1H8[LineIndex(square, 0)] | MOVES_A8H1[LineIndex(square, 0)];
}

// True if US attacks the square.
template <Colour US>
bool IsAttackedBy(int square) {
    const Bitboard queens = PiecesOf(US, QUEEN);
    const Bitboard straight = (PiecesOf(US, ROOK) | queens) & RookLines(square);
    const Bitboard diagonal = (PiecesOf(US, BISHOP) | queens) & BishopLines(square);
    // Skips the slow RookAttacks and BishopAttacks if no slider would reach the square on an empty
    // board.
    return (straight && (RookAttacks(square) & straight)) ||
           (diagonal && (BishopAttacks(square) & diagonal)) ||
           (ATTACKS_KNIGHT[square] & PiecesOf(US, KNIGHT)) ||
           (ATTACKS_PAWN[Opponent(US)][square] & PiecesOf(US, PAWN)) ||
           (ATTACKS_KING[square] & PiecesOf(US, KING));
}

// True if US could capture the enemy king.
template <Colour US>
bool IsKingCapturableBy() {
    return IsAttackedBy<US>(KingSquare(Opponent(US)));
}

// Returns the from-squares of moves that may be illegal. In check, this is the whole board.
// Otherwise the set contains the king and every piece that may be pinned. A pseudo-legal move from
// any other square is legal, unless it is an en-passant capture. Every en-passant capture may be
// illegal, because it removes two pawns that may together shield the king.
template <Colour US>
Bitboard MaybeIllegalFrom() {
    constexpr Colour THEM = Opponent(US);
    if (IsKingCapturableBy<THEM>()) return ~Bitboard{0};
    const int king = KingSquare(US);
    const Bitboard queens = PiecesOf(THEM, QUEEN);
    Bitboard squares = BIT_RANK[king];
    if ((PiecesOf(THEM, ROOK) | queens) & RookLines(king)) squares |= RookAttacks(king);
    if ((PiecesOf(THEM, BISHOP) | queens) & BishopLines(king)) squares |= BishopAttacks(king);
    return squares;
}

inline bool IsMaybeIllegal(const Move& move, Bitboard from_squares) {
    return (BIT_RANK[move.from] & from_squares) || move.en_passant;
}

// True if the side to move could capture the enemy king. The last move was then illegal.
inline bool HaveKingCaptures() {
    return board.side_to_move == WHITE ? IsKingCapturableBy<WHITE>() : IsKingCapturableBy<BLACK>();
}

// True if the opponent of the side to move attacks the square. Castling is illegal if the king
// starts on, crosses or reaches an attacked square.
bool PreventedCastle(int square);

// True if the move is a double step that an enemy pawn can legally capture en passant. Call after
// the pawn has moved on the board and before side_to_move changes.
bool IsEnPassantEnablingMove(const Move& move);
