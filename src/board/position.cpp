#include "board/position.h"

#include <algorithm>

alignas(64) Piece position[SQUARES];
alignas(64) Bitboard pieces_by_type[PIECE_INDICES];
alignas(64) RotatedSet pieces_all[COLOURS];
Colour side_to_move;
bool is_position_withheld = false;
std::int32_t pieces_on_board[COLOURS];
std::int32_t piece_weight_eval[COLOURS];
std::int32_t piece_square_eval[COLOURS];
std::uint64_t zobrist_key;
std::uint64_t zobrist_xor;
std::int32_t zobrist_ply_number;
std::uint64_t zobrist_keys[KEY_HISTORY_SIZE];
std::uint64_t zobrist_xors[KEY_HISTORY_SIZE];

void NewRepresentation() {
    zobrist_key = 0;
    zobrist_xor = 0;
    pieces_on_board[WHITE] = pieces_on_board[BLACK] = 8;
    side_to_move = WHITE;
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = NEW_POSITION[square];
        position[square] = piece;
        if (piece != NO_PIECE) zobrist_key ^= PieceKey(ColourOf(piece), TypeOf(piece), square);
    }
    std::ranges::copy(NEW_PIECES_ALL, pieces_all);
    std::ranges::copy(NEW_PIECES_BY_TYPE, pieces_by_type);
    for (const std::uint64_t key : ZOBRIST_KEY_CASTLE) {
        zobrist_key ^= key;
    }
    zobrist_ply_number = 0;
    zobrist_keys[0] = zobrist_key;
    zobrist_xors[0] = zobrist_xor;
}
