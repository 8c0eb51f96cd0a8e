#include "search/nullmove.h"

#include "board/position.h"
#include "search/records.h"

#include <cassert>

void MakeNullMove() {
    assert(zobrist_ply_number < MAX_PLY_NUMBER);
    side_to_move = Opponent(side_to_move);
    search_info.null_move = 1;
    zobrist_key ^= zobrist_xor ^ ZOBRIST_KEY_SIDE_SWITCH;
    zobrist_xor = 0;
    ++zobrist_ply_number;
    zobrist_keys[zobrist_ply_number] = zobrist_key;
    zobrist_xors[zobrist_ply_number] = 0;
}

void UnMakeNullMove() {
    side_to_move = Opponent(side_to_move);
    --zobrist_ply_number;
    search_info.null_move = 0;
    zobrist_key = zobrist_keys[zobrist_ply_number];
    zobrist_xor = zobrist_xors[zobrist_ply_number];
}
