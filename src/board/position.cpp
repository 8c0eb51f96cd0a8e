#include "board/position.h"

#include "board/utility.h"

#include <algorithm>
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

Position board;
bool is_position_withheld = false;
std::uint64_t zobrist_keys[KEY_HISTORY_SIZE];
std::uint64_t zobrist_xors[KEY_HISTORY_SIZE];

void NewRepresentation() {
    board.zobrist_key = 0;
    board.zobrist_xor = 0;
    board.pieces_on_board[WHITE] = board.pieces_on_board[BLACK] = 8;
    board.side_to_move = WHITE;
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = NEW_POSITION[square];
        board.position[square] = piece;
        if (piece != NO_PIECE)
            board.zobrist_key ^= PieceKey(ColourOf(piece), TypeOf(piece), square);
    }
    std::ranges::copy(NEW_PIECES_ALL, board.pieces_all);
    std::ranges::copy(NEW_PIECES_BY_TYPE, board.pieces_by_type);
    for (const std::uint64_t key : ZOBRIST_KEY_CASTLE) {
        board.zobrist_key ^= key;
    }
    board.zobrist_ply_number = 0;
    zobrist_keys[0] = board.zobrist_key;
    zobrist_xors[0] = board.zobrist_xor;
}

void InitializeZobristKeys() {
    DrawKeys(ZOBRIST_KEY_GLOBAL);
    DrawKeys(ZOBRIST_KEY_CASTLE);
    DrawKeys(ZOBRIST_KEY_ENPASSANT);
    ZOBRIST_KEY_SIDE_SWITCH = RandomU64();
}
