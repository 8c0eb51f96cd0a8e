// The position's records at one moment, for the tests and the fuzz harnesses.
#pragma once

#include "board/position.h"

#include <cstdint>

// Everything that making and unmaking a move must restore.
struct Snapshot {
    Piece board[SQUARES];
    Bitboard by_type[PIECE_INDICES];
    Bitboard all[4][COLOURS];
    std::int32_t numbers[3][COLOURS];
    Colour side;
    std::int32_t ply;
    std::uint64_t key, en_passant_key;
    bool operator==(const Snapshot&) const = default;
};
Snapshot TakeSnapshot();

// All records are what counting afresh from the board and the moves of the game gives.
bool IsConsistentPosition();
