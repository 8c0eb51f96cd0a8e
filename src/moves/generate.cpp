#include "moves/generate.h"

#include "moves/attacks.h"
#include "moves/predicates.h"

#include <cassert>

namespace {

// Victims in the order in which their captures are generated.
constexpr PieceType PIECES_TO_CAPTURE[] = {KING, QUEEN, ROOK, BISHOP, KNIGHT, PAWN};

constexpr PieceType PROMOTION_TYPES[] = {QUEEN, ROOK, BISHOP, KNIGHT};

constexpr Bitboard BACK_RANKS = 0xFF000000000000FF;
constexpr Bitboard FILE_A_SQUARES = 0x0101010101010101;
constexpr Bitboard FILE_H_SQUARES = 0x8080808080808080;

constexpr bool IsOnBackRank(int square) { return (BACK_RANKS >> square) & 1; }

// Writes moves one behind the other.
struct MoveWriter {
    Move* next;
};

Move& AddMove(MoveWriter& writer, int from, int to, Piece piece, Piece captured, Piece promoted) {
    Move& move = *writer.next++;
    move.from = from;
    move.to = to;
    move.piece = piece;
    move.captured = captured;
    move.promoted = promoted;
    move.en_passant = 0;
    move.castle = 0;
    return move;
}

Move& AddPlain(MoveWriter& writer, int from, int to, Piece captured) {
    const Piece piece = position[from];
    return AddMove(writer, from, to, piece, captured, piece | MOVED_FLAG);
}

void AddPromotions(MoveWriter& writer, int from, int to, Piece captured) {
    const Piece piece = position[from];
    for (const PieceType type : PROMOTION_TYPES) {
        AddMove(writer, from, to, piece, captured,
                static_cast<Piece>((piece & COLOUR_BITS) | MOVED_FLAG | type));
    }
}

void AddCapturesBy(MoveWriter& writer, Bitboard attackers, int victim, Piece captured) {
    while (attackers) {
        AddPlain(writer, PopFirstBit(attackers), victim, captured);
    }
}

template <Colour US>
void AddCapturesOf(MoveWriter& writer, int victim) {
    const Piece captured = position[victim];
    Bitboard pawns = ATTACKS_PAWN[Opponent(US)][victim] & PiecesOf(US, PAWN);
    if (pawns && IsOnBackRank(victim)) {
        while (pawns) {
            AddPromotions(writer, PopFirstBit(pawns), victim, captured);
        }
    } else {
        AddCapturesBy(writer, pawns, victim, captured);
    }
    AddCapturesBy(writer, ATTACKS_KNIGHT[victim] & PiecesOf(US, KNIGHT), victim, captured);
    const Bitboard diagonal = BishopAttacks(victim);
    const Bitboard straight = RookAttacks(victim);
    AddCapturesBy(writer, diagonal & PiecesOf(US, BISHOP), victim, captured);
    AddCapturesBy(writer, straight & PiecesOf(US, ROOK), victim, captured);
    AddCapturesBy(writer, (diagonal | straight) & PiecesOf(US, QUEEN), victim, captured);
    AddCapturesBy(writer, ATTACKS_KING[victim] & PiecesOf(US, KING), victim, captured);
}

template <Colour US>
void AddEnPassant(MoveWriter& writer, const Move& last_move) {
    if (TypeOf(last_move.promoted) != PAWN || !IsTwoRankMove(last_move)) return;
    Bitboard pawns = ATTACKS_ENPASSANT[last_move.to] & PiecesOf(US, PAWN);
    while (pawns) {
        const int from = PopFirstBit(pawns);
        const Piece pawn = position[from];
        Move& move = AddMove(writer, from, last_move.to + PAWN_STEP[US], pawn, NO_PIECE, pawn);
        move.en_passant = 1;
        move.en_passant_square = last_move.to;
        move.en_passant_piece = position[last_move.to];
    }
}

// All squares that the colour's pieces attack.
template <Colour US>
Bitboard AttackedSquares() {
    const Bitboard pawns = PiecesOf(US, PAWN);
    const Bitboard left = pawns & ~FILE_A_SQUARES;
    const Bitboard right = pawns & ~FILE_H_SQUARES;
    Bitboard attacked = US == WHITE ? (left << 7) | (right << 9) : (left >> 9) | (right >> 7);
    attacked |= ATTACKS_KING[KingSquare(US)];
    for (Bitboard knights = PiecesOf(US, KNIGHT); knights;) {
        attacked |= ATTACKS_KNIGHT[PopFirstBit(knights)];
    }
    for (Bitboard movers = PiecesOf(US, BISHOP) | PiecesOf(US, QUEEN); movers;) {
        attacked |= BishopAttacks(PopFirstBit(movers));
    }
    for (Bitboard movers = PiecesOf(US, ROOK) | PiecesOf(US, QUEEN); movers;) {
        attacked |= RookAttacks(PopFirstBit(movers));
    }
    return attacked;
}

template <Colour US>
Move* WriteCaptures(Move* moves, const Move* last_move) {
    MoveWriter writer{moves};
    // Most victims are not attacked at all. To know which ones are saves looking for attackers.
    const Bitboard attacked = AttackedSquares<US>();
    for (const PieceType type : PIECES_TO_CAPTURE) {
        Bitboard victims = PiecesOf(Opponent(US), type) & attacked;
        while (victims) {
            AddCapturesOf<US>(writer, PopFirstBit(victims));
        }
        if (type == KING && writer.next != moves) break;
    }
    if (last_move) AddEnPassant<US>(writer, *last_move);
    return writer.next;
}

// The king's and the rook's way by the side of castling, as steps from the king's home.
struct CastlingWay {
    int rook_from, rook_to, king_to;
    int empty[3]; // squares between king and rook; 0 in a place that is not needed
};
constexpr CastlingWay CASTLING_WAYS[] = {{3, 1, 2, {1, 2, 0}}, {-4, -1, -2, {-1, -2, -3}}};

// The squares between are empty, the rook is unmoved, and the king crosses no attacked square.
bool IsCastlingPossible(int king, const CastlingWay& way) {
    for (const int step : way.empty) {
        if (step != 0 && position[king + step] != NO_PIECE) return false;
    }
    const Piece rook = position[king + way.rook_from];
    return TypeOf(rook) == ROOK && !IsMoved(rook) && !PreventedCastle(king) &&
           !PreventedCastle(king + way.rook_to) && !PreventedCastle(king + way.king_to);
}

template <Colour US>
void AddCastling(MoveWriter& writer) {
    constexpr int HOME = KING_HOME[US];
    const Piece king = position[HOME];
    if (TypeOf(king) != KING || IsMoved(king)) return;
    for (const CastlingWay& way : CASTLING_WAYS) {
        if (!IsCastlingPossible(HOME, way)) continue;
        Move& move = AddPlain(writer, HOME, HOME + way.king_to, NO_PIECE);
        move.castle = 1;
        move.rook_from = HOME + way.rook_from;
        move.rook_to = HOME + way.rook_to;
    }
}

// Targets are walked so that forward moves come first for either side.
template <Colour US>
void AddQuiet(MoveWriter& writer, int from, Bitboard targets) {
    while (targets) {
        const int to = US == WHITE ? LastBitNumber(targets) : FirstBitNumber(targets);
        targets ^= BIT_RANK[to];
        AddPlain(writer, from, to, NO_PIECE);
    }
}

template <Colour US, typename Attacks>
void AddQuietBy(MoveWriter& writer, PieceType type, Bitboard empty, Attacks attacks) {
    Bitboard movers = PiecesOf(US, type);
    while (movers) {
        const int from = PopFirstBit(movers);
        AddQuiet<US>(writer, from, attacks(from) & empty);
    }
}

template <Colour US>
void AddPawnAdvances(MoveWriter& writer) {
    Bitboard pawns = PiecesOf(US, PAWN);
    while (pawns) {
        const int from = PopFirstBit(pawns);
        int to = from;
        for (int steps = IsMoved(position[from]) ? 1 : 2; steps > 0; --steps) {
            to += PAWN_STEP[US];
            if (position[to] != NO_PIECE) break;
            if (IsOnBackRank(to)) {
                AddPromotions(writer, from, to, NO_PIECE);
            } else {
                AddPlain(writer, from, to, NO_PIECE);
            }
        }
    }
}

template <Colour US>
Move* WriteNonCaptures(Move* moves) {
    MoveWriter writer{moves};
    const Bitboard empty = ~(pieces_all_rank[WHITE] | pieces_all_rank[BLACK]);
    AddCastling<US>(writer);
    AddQuietBy<US>(writer, KNIGHT, empty, [](int from) { return ATTACKS_KNIGHT[from]; });
    AddQuietBy<US>(writer, BISHOP, empty, BishopAttacks);
    AddQuietBy<US>(writer, ROOK, empty, RookAttacks);
    AddQuietBy<US>(writer, QUEEN, empty, QueenAttacks);
    AddQuietBy<US>(writer, KING, empty, [](int from) { return ATTACKS_KING[from]; });
    AddPawnAdvances<US>(writer);
    return writer.next;
}

} // namespace

void GenerateCaptures(MoveList& list, const Move* last_move) {
    assert(!is_position_withheld);
    const Move* end = side_to_move == WHITE ? WriteCaptures<WHITE>(list.moves, last_move)
                                            : WriteCaptures<BLACK>(list.moves, last_move);
    list.count = static_cast<std::int32_t>(end - list.moves);
    assert(list.count <= MAX_MOVES);
}

void GenerateNonCaptures(MoveList& list) {
    assert(!is_position_withheld);
    Move* const start = list.moves + list.count;
    const Move* end =
        side_to_move == WHITE ? WriteNonCaptures<WHITE>(start) : WriteNonCaptures<BLACK>(start);
    list.count = static_cast<std::int32_t>(end - list.moves);
    assert(list.count <= MAX_MOVES);
}

void GenerateAllMoves(MoveList& list, const Move* last_move) {
    GenerateCaptures(list, last_move);
    GenerateNonCaptures(list);
}
