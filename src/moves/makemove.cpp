#include "moves/makemove.h"

#include "board/move.h"
#include "board/position.h"
#include "eval/evaltables.h"
#include "moves/attacks.h"
#include "moves/generate.h"

#include <cassert>
#include <initializer_list>

namespace {

bool IsUnmovedPiece(Piece piece) { return piece != NO_PIECE && !IsMoved(piece); }

// Returns the XOR of the castling keys that the first move of a king or rook changes. A king's move
// changes the key of each side that has an unmoved rook. A rook's move changes the key of its side
// if the king is unmoved. An unmoved rook on the king's home square, which a FEN can contain, is
// treated as an unmoved king. Call after the move is on the board and before a castling rook moves.
template <Colour US>
std::uint64_t ChangedCastlingKeys(const Move& move) {
    std::uint64_t keys = 0;
    if (TypeOf(move.piece) == KING) {
        assert(move.from == KING_HOME[US]);
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            if (!IsUnmovedPiece(board.position[ROOK_HOME[US][side]])) continue;
            keys ^= ZOBRIST_KEY_CASTLE[CastleIndex(US, side)];
        }
    } else if (TypeOf(move.piece) == ROOK) {
        assert(RankOf(move.from) == RankOf(KING_HOME[US]));
        const CastleSide side = move.from & 1 ? KING_SIDE : QUEEN_SIDE;
        const int king = KING_HOME[US];
        if (IsUnmovedPiece(king == move.from ? move.piece : board.position[king])) {
            keys ^= ZOBRIST_KEY_CASTLE[CastleIndex(US, side)];
        }
    }
    return keys;
}

// Moves the piece in the bitboards and updates piece_square_eval. `step` is 1 to make the move and
// -1 to unmake it.
template <Colour US>
[[gnu::always_inline]] inline void ToggleMover(int from, int to, int type, int promoted, int step) {
    Toggle(board.pieces_all[US], BITS[from]);
    Toggle(board.pieces_all[US], BITS[to]);
    board.pieces_by_type[PieceIndex(US, type)] ^= BIT_RANK[from];
    board.pieces_by_type[PieceIndex(US, promoted)] ^= BIT_RANK[to];
    board.piece_square_eval[US] +=
        step * (PieceSquareEval(US, promoted, to) - PieceSquareEval(US, type, from));
}

// Restores (`step` 1) or removes (`step` -1) the captured piece in the bitboards, evaluation sums
// and piece counts. The caller updates board.position.
template <Colour THEM>
[[gnu::always_inline]] inline void ToggleVictim(int type, int square, int step) {
    TogglePieceOnBitBoard(THEM, type, square);
    board.piece_weight_eval[THEM] += step * PIECE_WEIGHT[type];
    board.piece_square_eval[THEM] += step * PieceSquareEval(THEM, type, square);
    board.pieces_on_board[THEM] += step * (type != PAWN);
}

// Updates pieces_on_board and piece_weight_eval for a promotion. `step` is 1 to make the move, -1
// to unmake it.
template <Colour US>
void CountPromotion(int promoted, int step) {
    board.pieces_on_board[US] += step;
    board.piece_weight_eval[US] += step * (PIECE_WEIGHT[promoted] - PIECE_WEIGHT[PAWN]);
}

// Moves the castling rook and flips its moved flag. Returns the XOR of the rook's hash keys on
// `from` and `to`.
template <Colour US>
std::uint64_t MoveCastlingRook(int from, int to) {
    TogglePieceOnBitBoard(US, ROOK, from);
    TogglePieceOnBitBoard(US, ROOK, to);
    board.position[to] = board.position[from] ^ MOVED_FLAG;
    board.position[from] = NO_PIECE;
    board.piece_square_eval[US] += PieceSquareEval(US, ROOK, to) - PieceSquareEval(US, ROOK, from);
    return PieceKey(US, ROOK, from) ^ PieceKey(US, ROOK, to);
}

// Makes the rare parts of a move: castling, lost castling rights, en passant, promotion. Kept out
// of line, which makes MakeMove faster.
template <Colour US>
[[gnu::noinline]] void MakeSpecial(const Move& move) {
    constexpr Colour THEM = Opponent(US);
    std::uint64_t& key = zobrist_keys[board.zobrist_ply_number];
    if (!IsMoved(move.piece)) key ^= ChangedCastlingKeys<US>(move);
    if (IsPromotion(move)) CountPromotion<US>(TypeOf(move.promoted), 1);
    if (move.castle) {
        key ^= MoveCastlingRook<US>(move.rook_from, move.rook_to);
    } else if (move.en_passant) {
        ToggleVictim<THEM>(PAWN, move.en_passant_square, -1);
        key ^= PieceKey(THEM, PAWN, move.en_passant_square);
        board.position[move.en_passant_square] = NO_PIECE;
    } else if (IsTwoRankMove(move) && IsEnPassantEnablingMove(move)) {
        board.zobrist_xor = ZOBRIST_KEY_ENPASSANT[(move.from + move.to) / 2];
        key ^= board.zobrist_xor;
    }
    board.zobrist_key = key;
    zobrist_xors[board.zobrist_ply_number] = board.zobrist_xor;
}

template <Colour US>
[[gnu::noinline]] void UnMakeSpecial(const Move& move) {
    if (IsPromotion(move)) CountPromotion<US>(TypeOf(move.promoted), -1);
    if (move.castle) {
        MoveCastlingRook<US>(move.rook_to, move.rook_from);
    } else if (move.en_passant) {
        ToggleVictim<Opponent(US)>(PAWN, move.en_passant_square, 1);
        board.position[move.en_passant_square] = static_cast<Piece>(move.en_passant_piece);
    }
}

} // namespace

template <Colour US>
void MakeMove(const Move& move) {
    assert(IsSquare(move.from) && IsSquare(move.to) && board.position[move.from] == move.piece);
    assert(board.side_to_move == US && ColourOf(move.piece) == US &&
           board.position[move.to] == move.captured);
    assert(board.zobrist_ply_number < MAX_PLY_NUMBER && !is_position_withheld);
    constexpr Colour THEM = Opponent(US);
    const int from = move.from;
    const int to = move.to;
    const int type = TypeOf(move.piece);
    const int promoted = TypeOf(move.promoted);
    const int captured = TypeOf(move.captured);
    assert(!move.castle || !IsMoved(move.piece));
    assert(!captured || !(move.castle || move.en_passant));
    assert(type != PAWN || !IsTwoRankMove(move) || !IsMoved(move.piece));

    std::uint64_t key = KeyAfterNullMove() ^ PieceKey(US, type, from) ^ PieceKey(US, promoted, to);
    ToggleMover<US>(from, to, type, promoted, 1);
    if (captured) {
        ToggleVictim<THEM>(captured, to, -1);
        key ^= PieceKey(THEM, captured, to);
    }
    board.position[to] = move.promoted;
    board.position[from] = NO_PIECE;

    ++board.zobrist_ply_number;
    board.zobrist_key = zobrist_keys[board.zobrist_ply_number] = key;
    board.zobrist_xor = zobrist_xors[board.zobrist_ply_number] = 0;
    if (!IsMoved(move.piece) || type != promoted || move.en_passant) MakeSpecial<US>(move);
    board.side_to_move = THEM;
}

template <Colour US>
void UnMakeMove(const Move& move) {
    assert(board.position[move.to] == move.promoted && board.position[move.from] == NO_PIECE);
    assert(board.side_to_move != US && ColourOf(move.piece) == US);
    const int from = move.from;
    const int to = move.to;
    const int type = TypeOf(move.piece);
    const int promoted = TypeOf(move.promoted);
    const int captured = TypeOf(move.captured);

    board.side_to_move = US;
    ToggleMover<US>(from, to, type, promoted, -1);
    if (captured) ToggleVictim<Opponent(US)>(captured, to, 1);
    board.position[from] = move.piece;
    board.position[to] = move.captured;

    --board.zobrist_ply_number;
    board.zobrist_key = zobrist_keys[board.zobrist_ply_number];
    board.zobrist_xor = zobrist_xors[board.zobrist_ply_number];
    if (type != promoted || move.castle || move.en_passant) UnMakeSpecial<US>(move);
}

template void MakeMove<WHITE>(const Move& move);
template void MakeMove<BLACK>(const Move& move);
template void UnMakeMove<WHITE>(const Move& move);
template void UnMakeMove<BLACK>(const Move& move);

void MakeMove(const Move& move) {
    if (board.side_to_move == WHITE) {
        MakeMove<WHITE>(move);
    } else {
        MakeMove<BLACK>(move);
    }
}

void UnMakeMove(const Move& move) {
    if (board.side_to_move == BLACK) {
        UnMakeMove<WHITE>(move);
    } else {
        UnMakeMove<BLACK>(move);
    }
}

bool IsLegalMove(const Move& move) {
    MakeMove(move);
    const bool is_illegal = HaveKingCaptures();
    UnMakeMove(move);
    return !is_illegal;
}

void GenerateAllLegalMoves(MoveList& list, const Move* last_move) {
    GenerateAllMoves(list, last_move);
    const Bitboard maybe_illegal =
        board.side_to_move == WHITE ? MaybeIllegalFrom<WHITE>() : MaybeIllegalFrom<BLACK>();
    std::int32_t kept = 0;
    for (const Move& move : list) {
        if (!IsMaybeIllegal(move, maybe_illegal) || IsLegalMove(move)) list.moves[kept++] = move;
    }
    list.count = kept;
}

void MakeNullMove() {
    assert(board.zobrist_ply_number < MAX_PLY_NUMBER);
    board.side_to_move = Opponent(board.side_to_move);
    board.zobrist_key = KeyAfterNullMove();
    board.zobrist_xor = 0;
    ++board.zobrist_ply_number;
    zobrist_keys[board.zobrist_ply_number] = board.zobrist_key;
    zobrist_xors[board.zobrist_ply_number] = 0;
}

void UnMakeNullMove() {
    board.side_to_move = Opponent(board.side_to_move);
    --board.zobrist_ply_number;
    board.zobrist_key = zobrist_keys[board.zobrist_ply_number];
    board.zobrist_xor = zobrist_xors[board.zobrist_ply_number];
}
