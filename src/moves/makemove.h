// Makes and unmakes moves on `board`, and tests whether moves are legal. Moves must be unmade in
// reverse order.
#pragma once

#include "board/move.h"
#include "board/position.h"

#include <cstdint>

// Makes a pseudo-legal move of the side to move. Does not test whether the move is legal.
void MakeMove(const Move& move);

// Unmakes the last move. `move` must be unchanged since MakeMove.
void UnMakeMove(const Move& move);

// Faster variants for callers that know the mover's colour at compile time. US is the mover's
// colour.
template <Colour US>
void MakeMove(const Move& move);
template <Colour US>
void UnMakeMove(const Move& move);

// True if the pseudo-legal move does not leave the mover's king in check.
bool IsLegalMove(const Move& move);

// Fills the list with the legal moves of the side to move, in generation order. `last_move` is the
// move that led to the position, or null.
void GenerateAllLegalMoves(MoveList& list, const Move* last_move);

// Make and unmake a null move. The side to move passes, and the right to capture en passant ends.
void MakeNullMove();
void UnMakeNullMove();

inline std::uint64_t KeyAfterNullMove() {
    return board.zobrist_key ^ board.zobrist_xor ^ ZOBRIST_KEY_SIDE_SWITCH;
}

// Returns the hash key after the move. Ignores changes by castling rooks, lost castling rights and
// en passant. Use only for prefetching, where a wrong key does no harm.
template <Colour US>
std::uint64_t LikelyKeyAfter(const Move& move) {
    std::uint64_t key = KeyAfterNullMove() ^ PieceKey(US, TypeOf(move.piece), move.from) ^
                        PieceKey(US, TypeOf(move.promoted), move.to);
    if (move.captured) key ^= PieceKey(Opponent(US), TypeOf(move.captured), move.to);
    return key;
}
