#include "moves/attacks.h"

#include "board/move.h"

bool PreventedCastle(int square) {
    return board.side_to_move == WHITE ? IsAttackedBy<BLACK>(square) : IsAttackedBy<WHITE>(square);
}

bool IsEnPassantEnablingMove(const Move& move) {
    if (TypeOf(move.piece) != PAWN || !IsTwoRankMove(move)) return false;
    const Colour mover = board.side_to_move;
    const Colour enemy = Opponent(mover);
    const int passed_over = (move.from + move.to) / 2;
    Bitboard candidates = ATTACKS_ENPASSANT[move.to] & PiecesOf(enemy, PAWN);
    while (candidates) {
        const int square = PopFirstBit(candidates);
        // Makes the capture only in the bitboards, because HaveKingCaptures does not read the array
        // board.position.
        TogglePieceOnBitBoard(mover, PAWN, move.to);
        TogglePieceOnBitBoard(enemy, PAWN, square);
        TogglePieceOnBitBoard(enemy, PAWN, passed_over);
        const bool is_illegal = HaveKingCaptures();
        TogglePieceOnBitBoard(enemy, PAWN, passed_over);
        TogglePieceOnBitBoard(enemy, PAWN, square);
        TogglePieceOnBitBoard(mover, PAWN, move.to);
        if (!is_illegal) return true;
    }
    return false;
}
