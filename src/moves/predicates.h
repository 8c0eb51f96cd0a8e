// Predicates on a move record; they read nothing else.
#pragma once

#include "board/move.h"

#include <cstdint>

// The same squares; promotions to different pieces are equal.
inline bool IsEqualMove(const Move& a, const Move& b) { return a.from == b.from && a.to == b.to; }

// Equal, and to the same piece.
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

// A pawn move to rank 1, 2, 7 or 8, of either colour.
inline bool IsPawnToSeventhMove(const Move& move) {
    const int rank = RankOf(move.to);
    return TypeOf(move.piece) == PAWN && (rank <= RANK_2 || rank >= RANK_7);
}

inline bool IsPromotion(const Move& move) { return TypeOf(move.piece) != TypeOf(move.promoted); }

// From and to two ranks apart.
inline bool IsTwoRankMove(const Move& move) {
    const int ranks = RankOf(move.to) - RankOf(move.from);
    return ranks == 2 || ranks == -2;
}

inline bool IsFakeMove(const Move& move) { return move.from < 0; }
