// Readable dumps on standard error, for debugging; nothing calls them in play.
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

// Call before the move is made, because it reads the board.
void DumpMove(const Move& move);
void DumpMoveList(std::span<const Move> moves);
