// The move record, move lists, and predicates that depend only on the move.
#pragma once

#include "board/types.h"

#include <cstdint>

// A fake move (negative `from`) means that there is no move. The en_passant_* fields are defined
// only if `en_passant` is set, and the rook_* fields only if `castle` is set. The book file stores
// moves in this layout.
struct Move {
    std::int32_t from; // negative in a fake move
    std::int32_t to;   // the king's target square if castling
    Piece piece;       // piece on `from` before the move
    Piece captured;    // piece on `to` before the move; NO_PIECE in an en-passant capture
    Piece promoted;    // piece on `to` after the move, promoted or not
    std::uint8_t en_passant;
    std::uint8_t castle;
    std::int32_t en_passant_square; // square of the captured pawn
    std::int32_t en_passant_piece;
    std::int32_t rook_from;
    std::int32_t rook_to;
};
static_assert(sizeof(Move) == 32);

inline constexpr std::int32_t NO_SQUARE = -1;

// Capacity of a move list. Every position has far fewer pseudo-legal moves.
inline constexpr int MAX_MOVES = 512;

// Only the first `count` moves are valid.
struct MoveList {
    std::int32_t count = 0;
    std::int32_t prefetched = 0; // number of moves, from the first, whose hash slots are prefetched
    Move moves[MAX_MOVES];
};

inline Move* begin(MoveList& list) { return list.moves; }
inline Move* end(MoveList& list) { return list.moves + list.count; }
inline const Move* begin(const MoveList& list) { return list.moves; }
inline const Move* end(const MoveList& list) { return list.moves + list.count; }

// True if both moves have the same `from` and `to`. Promotions are ignored.
inline bool IsEqualMove(const Move& a, const Move& b) { return a.from == b.from && a.to == b.to; }

// True if both moves have the same `from` and `to` and the same promotion.
inline bool IsSameMove(const Move& a, const Move& b) {
    return IsEqualMove(a, b) && TypeOf(a.promoted) == TypeOf(b.promoted);
}

inline bool IsWhiteMove(const Move& move) {
    return (move.piece & COLOUR_BITS) == COLOUR_BIT[WHITE];
}

inline bool IsPawnPushMove(const Move& move) {
    return TypeOf(move.piece) == PAWN && FileOf(move.from) == FileOf(move.to);
}

inline bool IsCaptureMove(const Move& move) {
    return move.captured != NO_PIECE || move.en_passant != 0;
}

// True if a pawn moves to its seventh or eighth rank: rank 7 or 8 for white, rank 2 or 1 for black.
// The colour need not be tested, because a pawn never moves to its own first or second rank.
inline bool IsPawnToSeventhMove(const Move& move) {
    const int rank = RankOf(move.to);
    return TypeOf(move.piece) == PAWN && (rank <= RANK_2 || rank >= RANK_7);
}

inline bool IsPromotion(const Move& move) { return TypeOf(move.piece) != TypeOf(move.promoted); }

inline bool IsTwoRankMove(const Move& move) {
    const int ranks = RankOf(move.to) - RankOf(move.from);
    return ranks == 2 || ranks == -2;
}

inline bool IsFakeMove(const Move& move) { return move.from < 0; }
