// The move record, lists of moves, and predicates that read only the record.
#pragma once

#include "board/types.h"

#include <cstdint>

// A field that depends on a flag is undefined unless the flag is set. The book file stores these 32
// bytes in this layout.
struct Move {
    std::int32_t from; // negative: a fake move, that is, no move
    std::int32_t to;   // castling: the king's target; en passant: the empty square moved to
    Piece piece;       // on `from`, before the move
    Piece captured;    // on `to`, before the move; NO_PIECE for en passant
    Piece promoted;    // on `to`, after the move
    std::uint8_t en_passant;
    std::uint8_t castle;
    std::int32_t en_passant_square; // square and code of the pawn captured en passant
    std::int32_t en_passant_piece;
    std::int32_t rook_from; // castling: the rook's squares
    std::int32_t rook_to;
};
static_assert(sizeof(Move) == 32);

inline constexpr std::int32_t NO_SQUARE = -1;

// Capacity of a move list; far above the pseudo-legal moves of any position.
inline constexpr int MAX_MOVES = 512;

// Moves in generation order; only the first `count` records are valid.
struct MoveList {
    std::int32_t count = 0;
    std::int32_t prefetched = 0; // first moves whose children the search has prefetched
    Move moves[MAX_MOVES];
};

inline Move* begin(MoveList& list) { return list.moves; }
inline Move* end(MoveList& list) { return list.moves + list.count; }
inline const Move* begin(const MoveList& list) { return list.moves; }
inline const Move* end(const MoveList& list) { return list.moves + list.count; }

// True if the squares are the same; the promotion is ignored.
inline bool IsEqualMove(const Move& a, const Move& b) { return a.from == b.from && a.to == b.to; }

// True if squares and promotion are the same.
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

// True for a move of a pawn of either colour to rank 1, 2, 7 or 8.
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
