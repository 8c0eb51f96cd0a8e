#include "board/zobrist.h"

#include "board/utility.h"

#include <span>

std::uint64_t ZOBRIST_KEY_GLOBAL[PIECE_INDICES * SQUARES];
std::uint64_t ZOBRIST_KEY_CASTLE[COLOURS * CASTLE_SIDES];
std::uint64_t ZOBRIST_KEY_ENPASSANT[SQUARES];
std::uint64_t ZOBRIST_KEY_SIDE_SWITCH;

namespace {

void DrawKeys(std::span<std::uint64_t> keys) {
    for (std::uint64_t& key : keys) {
        key = RandomU64();
    }
}

} // namespace

void InitializeZobristKeys() {
    DrawKeys(ZOBRIST_KEY_GLOBAL);
    DrawKeys(ZOBRIST_KEY_CASTLE);
    DrawKeys(ZOBRIST_KEY_ENPASSANT);
    ZOBRIST_KEY_SIDE_SWITCH = RandomU64();
}
