#include "moves/generate.h"

#include "board/move.h"
#include "moves/attacks.h"

#include <cassert>
#include <initializer_list>

namespace {

// Types of captured pieces in generation order. Captures of a king are generated separately.
constexpr PieceType PIECES_TO_CAPTURE[] = {QUEEN, ROOK, BISHOP, KNIGHT, PAWN};

constexpr PieceType PROMOTION_TYPES[] = {QUEEN, ROOK, BISHOP, KNIGHT};

constexpr bool IsOnBackRank(int square) { return (BACK_RANKS >> square) & 1; }

// The Add functions write the first move to slot `next` and return the slot after the last move.

Move* AddMove(Move* next, int from, int to, Piece piece, Piece captured, Piece promoted) {
    next->from = from;
    next->to = to;
    next->piece = piece;
    next->captured = captured;
    next->promoted = promoted;
    next->en_passant = 0;
    next->castle = 0;
    return next + 1;
}

Move* AddPlain(Move* next, int from, int to, Piece captured) {
    const Piece piece = board.position[from];
    return AddMove(next, from, to, piece, captured, piece | MOVED_FLAG);
}

Move* AddPromotions(Move* next, int from, int to, Piece captured) {
    const Piece piece = board.position[from];
    for (const PieceType type : PROMOTION_TYPES) {
        next = AddMove(next, from, to, piece, captured,
                       static_cast<Piece>((piece & COLOUR_BITS) | MOVED_FLAG | type));
    }
    return next;
}

Move* AddCapturesBy(Move* next, Bitboard attackers, int victim, Piece captured) {
    while (attackers) {
        next = AddPlain(next, PopFirstBit(attackers), victim, captured);
    }
    return next;
}

// Adds all captures of the enemy piece on the square. `victims` supplies the squares that sliders
// attack.
template <Colour US>
Move* AddCapturesOf(Move* next, int square, const Victims& victims) {
    const Piece captured = board.position[square];
    Bitboard pawns = ATTACKS_PAWN[Opponent(US)][square] & PiecesOf(US, PAWN);
    if (pawns && IsOnBackRank(square)) {
        while (pawns) {
            next = AddPromotions(next, PopFirstBit(pawns), square, captured);
        }
    } else {
        next = AddCapturesBy(next, pawns, square, captured);
    }
    next = AddCapturesBy(next, ATTACKS_KNIGHT[square] & PiecesOf(US, KNIGHT), square, captured);
    const Bitboard diagonal = victims.diagonal & BIT_RANK[square] ? BishopAttacks(square) : 0;
    const Bitboard straight = victims.straight & BIT_RANK[square] ? RookAttacks(square) : 0;
    next = AddCapturesBy(next, diagonal & PiecesOf(US, BISHOP), square, captured);
    next = AddCapturesBy(next, straight & PiecesOf(US, ROOK), square, captured);
    next = AddCapturesBy(next, (diagonal | straight) & PiecesOf(US, QUEEN), square, captured);
    return AddCapturesBy(next, ATTACKS_KING[square] & PiecesOf(US, KING), square, captured);
}

template <Colour US>
Move* AddEnPassant(Move* next, const Move& last_move) {
    if (TypeOf(last_move.promoted) != PAWN || !IsTwoRankMove(last_move)) return next;
    Bitboard pawns = ATTACKS_ENPASSANT[last_move.to] & PiecesOf(US, PAWN);
    while (pawns) {
        const int from = PopFirstBit(pawns);
        const Piece pawn = board.position[from];
        next->en_passant_square = last_move.to;
        next->en_passant_piece = board.position[last_move.to];
        next = AddMove(next, from, last_move.to + PAWN_STEP[US], pawn, NO_PIECE, pawn);
        next[-1].en_passant = 1;
    }
    return next;
}

// Returns the enemy pieces that US attacks. To save time, the generator looks for the attackers of
// these pieces only.
template <Colour US>
Victims FindVictims() {
    const Bitboard pawns = PiecesOf(US, PAWN);
    const Bitboard left = pawns & ~FILE_A_SQUARES;
    const Bitboard right = pawns & ~FILE_H_SQUARES;
    Bitboard attacked = US == WHITE ? (left << 7) | (right << 9) : (left >> 9) | (right >> 7);
    attacked |= ATTACKS_KING[KingSquare(US)];
    for (Bitboard knights = PiecesOf(US, KNIGHT); knights;) {
        attacked |= ATTACKS_KNIGHT[PopFirstBit(knights)];
    }
    Bitboard diagonal = 0;
    for (Bitboard movers = PiecesOf(US, BISHOP) | PiecesOf(US, QUEEN); movers;) {
        diagonal |= BishopAttacks(PopFirstBit(movers));
    }
    Bitboard straight = 0;
    for (Bitboard movers = PiecesOf(US, ROOK) | PiecesOf(US, QUEEN); movers;) {
        straight |= RookAttacks(PopFirstBit(movers));
    }
    attacked |= diagonal | straight;
    return {board.pieces_all[Opponent(US)].rank & attacked, diagonal, straight};
}

// Castling to one side. All values are offsets from the king's home square.
struct CastlingWay {
    int rook_to, king_to;
    int empty[3]; // squares between king and rook; 0 marks an unused element
};
constexpr CastlingWay CASTLING_WAYS[CASTLE_SIDES] = {{1, 2, {1, 2, 0}}, {-1, -2, {-1, -2, -3}}};

// True if the squares between king and rook are empty, the rook is unmoved, and the king does not
// start on, cross or reach an attacked square.
bool IsCastlingPossible(int king, int rook_home, const CastlingWay& way) {
    for (const int step : way.empty) {
        if (step != 0 && board.position[king + step] != NO_PIECE) return false;
    }
    const Piece rook = board.position[rook_home];
    return TypeOf(rook) == ROOK && !IsMoved(rook) && !PreventedCastle(king) &&
           !PreventedCastle(king + way.rook_to) && !PreventedCastle(king + way.king_to);
}

template <Colour US>
Move* AddCastling(Move* next) {
    constexpr int HOME = KING_HOME[US];
    const Piece king = board.position[HOME];
    if (TypeOf(king) != KING || IsMoved(king)) return next;
    for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
        const CastlingWay& way = CASTLING_WAYS[side];
        if (!IsCastlingPossible(HOME, ROOK_HOME[US][side], way)) continue;
        next->rook_from = ROOK_HOME[US][side];
        next->rook_to = HOME + way.rook_to;
        next = AddPlain(next, HOME, HOME + way.king_to, NO_PIECE);
        next[-1].castle = 1;
    }
    return next;
}

// Adds the moves of the piece on `from` to all `targets`, which are empty squares. Squares nearer
// to the enemy's back rank come first.
template <Colour US>
Move* AddQuiet(Move* next, int from, Bitboard targets) {
    while (targets) {
        const int to = US == WHITE ? LastBitNumber(targets) : FirstBitNumber(targets);
        targets ^= BIT_RANK[to];
        next = AddPlain(next, from, to, NO_PIECE);
    }
    return next;
}

template <Colour US, typename Attacks>
Move* AddQuietBy(Move* next, PieceType type, Bitboard empty, Attacks attacks) {
    Bitboard movers = PiecesOf(US, type);
    while (movers) {
        const int from = PopFirstBit(movers);
        next = AddQuiet<US>(next, from, attacks(from) & empty);
    }
    return next;
}

template <Colour US>
Move* AddPawnAdvances(Move* next) {
    Bitboard pawns = PiecesOf(US, PAWN);
    while (pawns) {
        const int from = PopFirstBit(pawns);
        int to = from;
        for (int steps = IsMoved(board.position[from]) ? 1 : 2; steps > 0; --steps) {
            to += PAWN_STEP[US];
            if (board.position[to] != NO_PIECE) break;
            if (IsOnBackRank(to)) {
                next = AddPromotions(next, from, to, NO_PIECE);
            } else {
                next = AddPlain(next, from, to, NO_PIECE);
            }
        }
    }
    return next;
}

void EndListAt(MoveList& list, const Move* end) {
    list.count = static_cast<std::int32_t>(end - list.moves);
    assert(list.count <= MAX_MOVES);
}

// Returns the victims of the most valuable type. There must be a victim other than the king.
template <Colour US>
Bitboard MostValuable(Bitboard victims) {
    const PieceType* type = PIECES_TO_CAPTURE;
    while (!(PiecesOf(Opponent(US), *type) & victims)) {
        ++type;
    }
    return PiecesOf(Opponent(US), *type) & victims;
}

} // namespace

template <Colour US>
Victims GenerateFirstCaptures(MoveList& list) {
    assert(!is_position_withheld && board.side_to_move == US);
    list.count = 0;
    Victims victims = FindVictims<US>();
    if (!victims.squares) return victims;
    const Bitboard king = PiecesOf(Opponent(US), KING) & victims.squares;
    const int square = FirstBitNumber(king ? king : MostValuable<US>(victims.squares));
    EndListAt(list, AddCapturesOf<US>(list.moves, square, victims));
    victims.squares = king ? 0 : victims.squares ^ BIT_RANK[square];
    return victims;
}

template <Colour US>
void GenerateOtherCaptures(MoveList& list, const Victims& victims, const Move* last_move) {
    Move* next = list.moves + list.count;
    Bitboard left = victims.squares;
    for (const PieceType type : PIECES_TO_CAPTURE) {
        if (!left) break;
        Bitboard of_type = PiecesOf(Opponent(US), type) & left;
        left ^= of_type;
        while (of_type) {
            next = AddCapturesOf<US>(next, PopFirstBit(of_type), victims);
        }
    }
    if (last_move) next = AddEnPassant<US>(next, *last_move);
    EndListAt(list, next);
}

template <Colour US>
void GenerateCaptures(MoveList& list, const Move* last_move) {
    const Victims others = GenerateFirstCaptures<US>(list);
    GenerateOtherCaptures<US>(list, others, last_move);
}

template <Colour US>
void GenerateNonCaptures(MoveList& list) {
    assert(!is_position_withheld && board.side_to_move == US);
    const Bitboard empty = ~(board.pieces_all[WHITE].rank | board.pieces_all[BLACK].rank);
    Move* next = AddCastling<US>(list.moves + list.count);
    next = AddQuietBy<US>(next, KNIGHT, empty, [](int from) { return ATTACKS_KNIGHT[from]; });
    next = AddQuietBy<US>(next, BISHOP, empty, BishopAttacks);
    next = AddQuietBy<US>(next, ROOK, empty, RookAttacks);
    next = AddQuietBy<US>(next, QUEEN, empty, QueenAttacks);
    next = AddQuietBy<US>(next, KING, empty, [](int from) { return ATTACKS_KING[from]; });
    EndListAt(list, AddPawnAdvances<US>(next));
}

template Victims GenerateFirstCaptures<WHITE>(MoveList& list);
template Victims GenerateFirstCaptures<BLACK>(MoveList& list);
template void GenerateOtherCaptures<WHITE>(MoveList& list, const Victims& victims,
                                           const Move* last_move);
template void GenerateOtherCaptures<BLACK>(MoveList& list, const Victims& victims,
                                           const Move* last_move);
template void GenerateCaptures<WHITE>(MoveList& list, const Move* last_move);
template void GenerateCaptures<BLACK>(MoveList& list, const Move* last_move);
template void GenerateNonCaptures<WHITE>(MoveList& list);
template void GenerateNonCaptures<BLACK>(MoveList& list);

void GenerateCaptures(MoveList& list, const Move* last_move) {
    if (board.side_to_move == WHITE) {
        GenerateCaptures<WHITE>(list, last_move);
    } else {
        GenerateCaptures<BLACK>(list, last_move);
    }
}

void GenerateNonCaptures(MoveList& list) {
    if (board.side_to_move == WHITE) {
        GenerateNonCaptures<WHITE>(list);
    } else {
        GenerateNonCaptures<BLACK>(list);
    }
}

void GenerateAllMoves(MoveList& list, const Move* last_move) {
    GenerateCaptures(list, last_move);
    GenerateNonCaptures(list);
}
