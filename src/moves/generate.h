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

// The list of captures takes the king: the move that led here was not legal.
inline bool HasKingCapture(const MoveList& captures) {
    return captures.count > 0 && TypeOf(captures.moves[0].captured) == KING;
}
