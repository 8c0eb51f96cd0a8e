// Functions that print positions, moves and bitboards on standard error, for debugging.
#pragma once

#include "board/move.h"
#include "board/types.h"

#include <cstdint>
#include <span>

void DumpMessage(const char* text);
void DumpPiece(int square, Piece piece);
void DumpPosition();
void DumpU64(std::uint64_t value);
void DumpZobristKey(std::uint64_t key);
void DumpBitBoard(Bitboard set);

// DumpMove and DumpMoveList read the moving pieces from the board. Call them before a move is made.
void DumpMove(const Move& move);
void DumpMoveList(std::span<const Move> moves);
