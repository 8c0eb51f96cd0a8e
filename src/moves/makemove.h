// Making and unmaking moves on the position, in strict last-in first-out order, and legality.
#pragma once

#include "board/move.h"
#include "board/position.h"

#include <cstdint>

// Plays a pseudo-legal move of the side to move; its legality is not tested.
void MakeMove(const Move& move);

// Takes back the move that was made last, given the same record.
void UnMakeMove(const Move& move);

// The same where the mover's colour is known: `US` made or makes the move.
template <Colour US>
void MakeMove(const Move& move);
template <Colour US>
void UnMakeMove(const Move& move);

// The move, pseudo-legal in the position, does not leave the mover's king to be taken.
bool IsLegalMove(const Move& move);

// Fills the list with the legal moves of the side to move, in generation order.
void GenerateAllLegalMoves(MoveList& list, const Move* last_move);

// The null move: the side to move passes, and an en-passant right is gone. Taken back like a move.
void MakeNullMove();
void UnMakeNullMove();

// The key that the position will have after a null move.
inline std::uint64_t KeyAfterNullMove() {
    return board.zobrist_key ^ board.zobrist_xor ^ ZOBRIST_KEY_SIDE_SWITCH;
}

// The key that the position will most likely have after the move: castling and en passant are left
// out of account. For prefetching only.
template <Colour US>
std::uint64_t LikelyKeyAfter(const Move& move) {
    std::uint64_t key = KeyAfterNullMove() ^ PieceKey(US, TypeOf(move.piece), move.from) ^
                        PieceKey(US, TypeOf(move.promoted), move.to);
    if (move.captured) key ^= PieceKey(Opponent(US), TypeOf(move.captured), move.to);
    return key;
}
