#include "consistency.h"

#include "board/move.h"
#include "eval/evaltables.h"
#include "game/history.h"

#include <initializer_list>

namespace {

std::uint64_t PieceKeys(const Piece (&squares)[SQUARES]) {
    std::uint64_t keys = 0;
    for (int square = 0; square < SQUARES; ++square) {
        const int row = (squares[square] & 0x80 ? 8 : 0) + (squares[square] & 7);
        if (squares[square] != NO_PIECE) keys ^= ZOBRIST_KEY_GLOBAL[row * 64 + square];
    }
    return keys;
}

// True if the value is the XOR of a subset of the four castling keys. Every subset can occur,
// because setting up a FEN adds the key of each castling letter, even if the rook is missing.
bool IsSetOfCastlingKeys(std::uint64_t keys) {
    for (int rights = 0; rights < 16; ++rights) {
        std::uint64_t rest = keys;
        for (int right = 0; right < 4; ++right) {
            if (rights >> right & 1) rest ^= ZOBRIST_KEY_CASTLE[right];
        }
        if (rest == 0) return true;
    }
    return false;
}

// Returns the castling part of the hash key of the game's first position: an XOR of castling keys.
std::uint64_t FirstCastlingKeys() {
    const bool is_black = (board.side_to_move == BLACK) != (state_history.count % 2 != 0);
    return zobrist_keys[0] ^ zobrist_xors[0] ^ PieceKeys(state_history.positions[0]) ^
           (is_black ? ZOBRIST_KEY_SIDE_SWITCH : 0);
}

// Returns the castling part of the current hash key. `keys` is the castling part at the start of
// the game. The first move of a king toggles the key of each rook's home square that holds an
// unmoved piece before the move. The first move of a rook toggles a castling key if the home square
// of the king holds an unmoved piece before the move: the king-side key if the rook leaves the
// king-side home square, otherwise the queen-side key. The unmoved piece may be of any type. The
// capture of a rook toggles no key.
std::uint64_t CastlingKeys(std::uint64_t keys) {
    for (std::int32_t i = 1; i <= state_history.count; ++i) {
        const Move& move = state_history.moves[i];
        if (IsMoved(move.piece)) continue;
        const auto is_unmoved = [&](int square) {
            const Piece piece = state_history.positions[i - 1][square];
            return piece != NO_PIECE && !IsMoved(piece);
        };
        const int king = move.piece & 0x80 ? 60 : 4;
        const int right = move.piece & 0x80 ? 2 : 0; // index of the mover's king-side key
        if (TypeOf(move.piece) == KING) {
            if (is_unmoved(king + 3)) keys ^= ZOBRIST_KEY_CASTLE[right];
            if (is_unmoved(king - 4)) keys ^= ZOBRIST_KEY_CASTLE[right + 1];
        } else if (TypeOf(move.piece) == ROOK && is_unmoved(king)) {
            keys ^= ZOBRIST_KEY_CASTLE[move.from == king + 3 ? right : right + 1];
        }
    }
    return keys;
}

// Computes all fields of `board` again from the pieces on the squares. Copies three fields that the
// squares do not determine: the ply, the side to move and the en-passant key.
Position ComputePosition(std::uint64_t castling_keys) {
    Position now{};
    now.side_to_move = board.side_to_move;
    now.zobrist_ply_number = board.zobrist_ply_number;
    now.zobrist_xor = board.zobrist_xor;
    now.zobrist_key = castling_keys ^ board.zobrist_xor ^ PieceKeys(board.position);
    if (board.side_to_move == BLACK) now.zobrist_key ^= ZOBRIST_KEY_SIDE_SWITCH;
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = board.position[square];
        now.position[square] = piece;
        if (piece == NO_PIECE) continue;
        const int colour = piece & 0x80 ? 1 : 0;
        const int type = piece & 7;
        const int row = colour * 8 + type;
        now.pieces_by_type[row] |= BIT_RANK[square];
        now.pieces_all[colour].rank |= BIT_RANK[square];
        now.pieces_all[colour].file |= BITS[square].file;
        now.pieces_all[colour].a1h8 |= BITS[square].a1h8;
        now.pieces_all[colour].a8h1 |= BITS[square].a8h1;
        now.pieces_on_board[colour] += type != PAWN;
        now.piece_weight_eval[colour] += type == KING ? 0 : PIECE_WEIGHT[type];
        now.piece_square_eval[colour] += PIECE_SQUARE_EVAL[row * 64 + square];
    }
    return now;
}

} // namespace

bool IsConsistentPosition() {
    const std::uint64_t first_keys = FirstCastlingKeys();
    return IsSetOfCastlingKeys(first_keys) && board == ComputePosition(CastlingKeys(first_keys));
}
