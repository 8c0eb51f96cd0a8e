// Making and unmaking moves on the position, in strict last-in first-out order, and legality.
#pragma once

#include "board/move.h"

#include <cstdint>

// Plays a pseudo-legal move of the side to move; its legality is not tested.
void MakeMove(const Move& move);

// Takes back the move that was made last, given the same record.
void UnMakeMove(const Move& move);

// 1 when the move, pseudo-legal in the position, does not leave the mover's king to be taken.
std::uint8_t IsLegalMove(const Move& move);

// The legal moves of the side to move, in generation order; `moves` has room for MAX_MOVES.
void GenerateAllLegalMoves(Move* moves, std::int32_t& count, const Move* last_move);
