// Generation of pseudo-legal moves: moves by the pieces' rules that may leave the own king to be
// taken. Their order is part of the contract: the search remembers moves by their index in it.
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

// Captures, and behind them the rest.
void GenerateAllMoves(MoveList& list, const Move* last_move);

// The same where the colour of the side to move is known.
template <Colour US>
void GenerateCaptures(MoveList& list, const Move* last_move);
template <Colour US>
void GenerateNonCaptures(MoveList& list);

// Enemy pieces that can be captured, and the squares that bishops and queens attack along
// diagonals, rooks and queens along ranks and files.
struct Victims {
    Bitboard squares;
    Bitboard diagonal;
    Bitboard straight;
};

// Captures in two steps, for a caller that can do something with the first moves: first all of one
// victim, then those of the other victims, which the first step returns, and en passant. There are
// no other victims behind a king.
template <Colour US>
Victims GenerateFirstCaptures(MoveList& list);
template <Colour US>
void GenerateOtherCaptures(MoveList& list, const Victims& victims, const Move* last_move);
