#include "moves/attacks.h"

#include "moves/predicates.h"

#include <cassert>

namespace {

constexpr std::uint8_t DIAGONAL_MOVERS = 1;
constexpr std::uint8_t STRAIGHT_MOVERS = 2;

// The nearest piece on a ray is an enemy slider of the kind that moves along it.
bool IsAttackedAlong(Bitboard ray, bool runs_up, std::uint8_t movers) {
    const Bitboard blockers = ray & (pieces_all_rank[WHITE] | pieces_all_rank[BLACK]);
    if (!blockers) return false;
    const Piece piece = position[runs_up ? FirstBitNumber(blockers) : LastBitNumber(blockers)];
    if (ColourOf(piece) == side_to_move) return false;
    const PieceType type = TypeOf(piece);
    return type == QUEEN || type == (movers == DIAGONAL_MOVERS ? BISHOP : ROOK);
}

} // namespace

std::uint8_t PreventedCastle(int square) {
    assert(RankOf(square) == RANK_1 || RankOf(square) == RANK_8);
    const Colour enemy = Opponent(side_to_move);
    if (RankOf(square) != RANK_1) {
        if (IsAttackedAlong(MINUS_9[square], false, DIAGONAL_MOVERS) ||
            IsAttackedAlong(MINUS_8[square], false, STRAIGHT_MOVERS) ||
            IsAttackedAlong(MINUS_7[square], false, DIAGONAL_MOVERS)) {
            return 1;
        }
    } else if (IsAttackedAlong(PLUS_7[square], true, DIAGONAL_MOVERS) ||
               IsAttackedAlong(PLUS_8[square], true, STRAIGHT_MOVERS) ||
               IsAttackedAlong(PLUS_9[square], true, DIAGONAL_MOVERS)) {
        return 1;
    }
    return (ATTACKS_KNIGHT[square] & PiecesOf(enemy, KNIGHT)) ||
           (ATTACKS_PAWN[side_to_move][square] & PiecesOf(enemy, PAWN)) ||
           (ATTACKS_KING[square] & PiecesOf(enemy, KING)) ||
           IsAttackedAlong(MINUS_1[square], false, STRAIGHT_MOVERS) ||
           IsAttackedAlong(PLUS_1[square], true, STRAIGHT_MOVERS);
}

std::uint8_t IsEnPassantEnablingMove(const Move& move) {
    if (TypeOf(move.piece) != PAWN || !IsTwoRankMove(move)) return 0;
    const Colour mover = side_to_move;
    const Colour enemy = Opponent(mover);
    const int passed_over = (move.from + move.to) / 2;
    Bitboard candidates = ATTACKS_ENPASSANT[move.to] & PiecesOf(enemy, PAWN);
    while (candidates) {
        const int square = PopFirstBit(candidates);
        // The capture, tried on the bitboards alone and taken back.
        TogglePieceOnBitBoard(mover, PAWN, move.to);
        TogglePieceOnBitBoard(enemy, PAWN, square);
        TogglePieceOnBitBoard(enemy, PAWN, passed_over);
        const bool is_illegal = HaveKingCaptures();
        TogglePieceOnBitBoard(enemy, PAWN, passed_over);
        TogglePieceOnBitBoard(enemy, PAWN, square);
        TogglePieceOnBitBoard(mover, PAWN, move.to);
        if (!is_illegal) return 1;
    }
    return 0;
}
