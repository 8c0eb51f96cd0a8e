// Generates pseudo-legal moves, which may leave the mover's own king in check. The order of
// generation must not change, because the hash tables store moves as indices in this order.
#pragma once

#include "board/move.h"

#include <cstdint>

// Fills the list with all captures of the side to move, including capture promotions. Captures of
// more valuable pieces come first. Captures of the same piece are sorted by attacker, the least
// valuable first. En-passant captures come last. If the enemy king can be captured, only the
// captures of the king and en-passant captures are generated. `last_move` is the move that led to
// the position, or null. En-passant captures are generated only if `last_move` was a double step of
// a pawn.
void GenerateCaptures(MoveList& list, const Move* last_move);

// Appends castling moves, then quiet piece moves, then pawn advances (including promotions).
void GenerateNonCaptures(MoveList& list);

// Fills the list with the captures, followed by the other moves.
void GenerateAllMoves(MoveList& list, const Move* last_move);

// Faster variants for callers that know the side to move at compile time. US is the side to move.
template <Colour US>
void GenerateCaptures(MoveList& list, const Move* last_move);
template <Colour US>
void GenerateNonCaptures(MoveList& list);

// Result of GenerateFirstCaptures and input of GenerateOtherCaptures.
struct Victims {
    Bitboard squares;  // attacked enemy pieces whose captures are still to be generated
    Bitboard diagonal; // squares that own bishops and queens attack along diagonals
    Bitboard straight; // squares that own rooks and queens attack along ranks and files
};

// These two functions together do the same as GenerateCaptures. A caller can use the first moves
// before the others are generated. GenerateFirstCaptures fills the list with the captures of one
// piece and returns the other attacked pieces. If the king can be captured, GenerateFirstCaptures
// returns an empty set of pieces. GenerateOtherCaptures appends the captures of the returned
// pieces, then the en-passant captures.
template <Colour US>
Victims GenerateFirstCaptures(MoveList& list);
template <Colour US>
void GenerateOtherCaptures(MoveList& list, const Victims& victims, const Move* last_move);
