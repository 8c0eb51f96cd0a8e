// Generation of pseudo-legal moves: moves by the pieces' rules that may leave the own king to be
// taken. Their order is part of the contract: the search remembers moves by their index in it.
#pragma once

#include "board/move.h"

#include <cstdint>

// Captures, capture promotions and en-passant captures of the side to move, most valuable victim
// first and for each victim the least valuable attacker first; king captures come first and, when
// there are any, alone but for en-passant captures. `last_move`, the move that led here or null,
// decides en passant. `moves` has room for MAX_MOVES; `count` gets their number.
void GenerateCaptures(Move* moves, std::int32_t& count, const Move* last_move);

// Castling, quiet piece moves and pawn advances with promotions, in that order.
void GenerateNonCaptures(Move* moves, std::int32_t& count);

// Captures, and behind them the rest.
void GenerateAllMoves(Move* moves, std::int32_t& count, const Move* last_move);
