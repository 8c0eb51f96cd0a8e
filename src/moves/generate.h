// Generates pseudo-legal moves, which may leave the mover's own king in check. The order of
// generation must not change, because the hash tables store moves as indices in this order.
#pragma once

#include "board/move.h"

#include <cstdint>

// Fills the list with all captures of the side to move, including capture promotions. The most
// valuable victim comes first, and for each victim the least valuable attacker. En-passant captures
// come last. If the enemy king can be captured, the only other moves are en-passant captures.
// `last_move` is the move that led to the position, or null. En passant is generated if that move
// was a double step.
void GenerateCaptures(MoveList& list, const Move* last_move);

// Appends castling, quiet piece moves, and pawn advances with promotions, in that order.
void GenerateNonCaptures(MoveList& list);

// Fills the list with the captures, followed by the other moves.
void GenerateAllMoves(MoveList& list, const Move* last_move);

// Faster variants for callers that know the side to move, US.
template <Colour US>
void GenerateCaptures(MoveList& list, const Move* last_move);
template <Colour US>
void GenerateNonCaptures(MoveList& list);

// Result of GenerateFirstCaptures and input of GenerateOtherCaptures.
struct Victims {
    Bitboard squares;  // attacked enemy pieces whose captures are not yet in the list
    Bitboard diagonal; // squares that bishops and queens attack along diagonals
    Bitboard straight; // squares that rooks and queens attack along ranks and files
};

// These functions divide GenerateCaptures into two steps, so that a caller can use the first moves
// early. The first step fills the list with the captures of one victim. It returns the other
// victims, or none if the victim is the king. The second step appends the captures of the other
// victims, then en passant.
template <Colour US>
Victims GenerateFirstCaptures(MoveList& list);
template <Colour US>
void GenerateOtherCaptures(MoveList& list, const Victims& victims, const Move* last_move);
