// Making and unmaking moves on the position, in strict last-in first-out order, and legality.
#pragma once

#include "board/move.h"
#include "board/position.h"

#include <cstdint>

// Makes a pseudo-legal move of the side to move; does not test its legality.
void MakeMove(const Move& move);

// Unmakes the last move made; `move` must be the same record.
void UnMakeMove(const Move& move);

// The same for a known mover US.
template <Colour US>
void MakeMove(const Move& move);
template <Colour US>
void UnMakeMove(const Move& move);

// True if the pseudo-legal move does not leave the mover's king in check.
bool IsLegalMove(const Move& move);

// Fills the list with the legal moves of the side to move, in generation order.
void GenerateAllLegalMoves(MoveList& list, const Move* last_move);

// The null move: the side to move passes, which ends an en-passant right.
void MakeNullMove();
void UnMakeNullMove();

// The key after a null move.
inline std::uint64_t KeyAfterNullMove() {
    return board.zobrist_key ^ board.zobrist_xor ^ ZOBRIST_KEY_SIDE_SWITCH;
}

// The likely key after the move: ignores castling and en passant. For prefetching only.
template <Colour US>
std::uint64_t LikelyKeyAfter(const Move& move) {
    std::uint64_t key = KeyAfterNullMove() ^ PieceKey(US, TypeOf(move.piece), move.from) ^
                        PieceKey(US, TypeOf(move.promoted), move.to);
    if (move.captured) key ^= PieceKey(Opponent(US), TypeOf(move.captured), move.to);
    return key;
}
