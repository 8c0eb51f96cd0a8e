// Generation of pseudo-legal moves: they may leave the own king in check.
// The order is part of the contract: the hash tables store moves as indices into it.
#pragma once

#include "board/move.h"

#include <cstdint>

// Fills the list with the captures, capture promotions and en-passant captures of the side to move,
// most valuable victim first and for each victim the least valuable attacker first. King captures
// come first and, when there are any, alone but for en-passant captures. `last_move`, the move that
// led here or null, decides en passant.
void GenerateCaptures(MoveList& list, const Move* last_move);

// Appends castling, quiet piece moves and pawn advances with promotions, in that order.
void GenerateNonCaptures(MoveList& list);

// Captures, then the other moves.
void GenerateAllMoves(MoveList& list, const Move* last_move);

// The same for a known side to move.
template <Colour US>
void GenerateCaptures(MoveList& list, const Move* last_move);
template <Colour US>
void GenerateNonCaptures(MoveList& list);

// What the second step of GenerateCaptures needs from the first.
struct Victims {
    Bitboard squares;  // enemy pieces that can be captured
    Bitboard diagonal; // attacked along diagonals by bishops and queens of the side to move
    Bitboard straight; // attacked along ranks and files by rooks and queens of the side to move
};

// GenerateCaptures in two steps, for a caller that can use the first moves early. The first step
// generates the captures of one victim and returns the other victims (none if the first is a king);
// the second adds their captures and en passant.
template <Colour US>
Victims GenerateFirstCaptures(MoveList& list);
template <Colour US>
void GenerateOtherCaptures(MoveList& list, const Victims& victims, const Move* last_move);
