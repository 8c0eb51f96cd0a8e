// Zobrist keys: the random numbers that make up a position's hash key.
#pragma once

#include "board/types.h"

#include <cstdint>

extern std::uint64_t ZOBRIST_KEY_GLOBAL[PIECE_INDICES * SQUARES];
extern std::uint64_t ZOBRIST_KEY_CASTLE[COLOURS * CASTLE_SIDES]; // by CastleIndex
extern std::uint64_t ZOBRIST_KEY_ENPASSANT[SQUARES]; // the square that a double step passed over
extern std::uint64_t ZOBRIST_KEY_SIDE_SWITCH;        // in the key while black is to move

constexpr int CastleIndex(Colour colour, CastleSide side) { return colour * CASTLE_SIDES + side; }

// The key of a piece on a square; the moved flag plays no part in it.
inline std::uint64_t PieceKey(Colour colour, int type, int square) {
    return ZOBRIST_KEY_GLOBAL[PieceSquareIndex(colour, type, square)];
}

// Draws all keys. They are the same in every run, so nothing may draw a random number between the
// seeding and this.
void InitializeZobristKeys();
