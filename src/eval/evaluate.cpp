#include "eval/evaluate.h"

#include "board/position.h"
#include "eval/evaltables.h"

namespace {

// Evaluation terms, in centipawns. The _OPEN terms apply to a pawn if the enemy has a rook and
// there is no enemy pawn ahead on the same file. ISOLATED_OPEN replaces ISOLATED. BACKWARD_OPEN is
// added to BACKWARD or BACKWARD_EDGE.
constexpr std::int32_t SHELTER_NEAR = 12;
constexpr std::int32_t SHELTER_FAR = 5;
constexpr std::int32_t DANGER = -12;
constexpr std::int32_t BISHOP_PAIR = 8;
constexpr std::int32_t PASSED = 24;
constexpr std::int32_t PASSED_PROTECTED = 32;
constexpr std::int32_t DOUBLED = -12;
constexpr std::int32_t ISOLATED = -15;
constexpr std::int32_t ISOLATED_OPEN = -33;
constexpr std::int32_t BACKWARD_EDGE = -5;
constexpr std::int32_t BACKWARD = -12;
constexpr std::int32_t BACKWARD_OPEN = -15;

// Returns the game phase, 0 to 2. Kings count as pieces, pawns do not.
int GamePhase() {
    const std::int32_t pieces = board.pieces_on_board[WHITE] + board.pieces_on_board[BLACK];
    if (pieces > 8) return 0;
    return pieces >= 4 ? 1 : 2;
}

// Returns the score of the king's pawn shelter and of the enemy pieces near the king.
template <Colour US>
std::int32_t KingSafety(int king) {
    constexpr Colour THEM = Opponent(US);
    const Bitboard own_pawns = PiecesOf(US, PAWN);
    const Bitboard enemy_pieces = board.pieces_all[THEM].rank & ~PiecesOf(THEM, PAWN);
    return SHELTER_NEAR * PopCount(own_pawns & SQUARES_BORDER[1][king]) +
           SHELTER_FAR * PopCount(own_pawns & SQUARES_BORDER[2][king]) +
           DANGER * PopCount(enemy_pieces & SQUARES_AROUND[2][king]);
}

template <Colour US>
std::int32_t PawnStructure() {
    constexpr Colour THEM = Opponent(US);
    const Bitboard own = PiecesOf(US, PAWN);
    const Bitboard enemy = PiecesOf(THEM, PAWN);
    const bool enemy_has_rook = PiecesOf(THEM, ROOK) != 0;
    std::int32_t score = 0;
    for (Bitboard pawns = own; pawns;) {
        const int square = PopFirstBit(pawns);
        const auto is_open = [&] { return enemy_has_rook && !(enemy & SQUARES_FRONT[US][square]); };
        if (!(enemy & PAWN_PASSED[US][square])) {
            score += own & ATTACKS_PAWN[THEM][square] ? PASSED_PROTECTED : PASSED;
        }
        if (own & PAWN_DOUBLED[square]) score += DOUBLED;
        if (!(own & PAWN_ISOLATED[square])) {
            score += is_open() ? ISOLATED_OPEN : ISOLATED;
        } else if (!(own & PAWN_BACKWARD_B[US][square]) && (own & PAWN_BACKWARD_F[US][square])) {
            score +=
                BIT_RANK[square] & (FILE_A_SQUARES | FILE_H_SQUARES) ? BACKWARD_EDGE : BACKWARD;
            if (is_open()) score += BACKWARD_OPEN;
        }
    }
    return score;
}

// A cache of pawn-structure scores. Many positions of a search tree have the same pawns.
struct PawnEntry {
    Bitboard white; // white pawns, and bit 0 (a1) if white has a rook
    Bitboard black; // black pawns, and bit 0 if black has a rook
    std::int32_t score;
};
constexpr int PAWN_SLOT_BITS = 11;
PawnEntry pawn_entries[1 << PAWN_SLOT_BITS];

// Kept out of line, which makes cache hits faster.
[[gnu::noinline]] void Fill(PawnEntry& entry, Bitboard white, Bitboard black) {
    entry = {white, black, PawnStructure<WHITE>() - PawnStructure<BLACK>()};
}

std::int32_t PawnScore() {
    const Bitboard white = PiecesOf(WHITE, PAWN) | (PiecesOf(WHITE, ROOK) != 0);
    const Bitboard black = PiecesOf(BLACK, PAWN) | (PiecesOf(BLACK, ROOK) != 0);
    // Multiplicative hashing. The slot number is taken from the high bits of the product, because
    // the high bits depend on all bits of `white` and `black`.
    constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15;
    const std::uint64_t mixed = (white * FACTOR ^ black) * FACTOR;
    PawnEntry& entry = pawn_entries[mixed >> (64 - PAWN_SLOT_BITS)];
    if (entry.white != white || entry.black != black) Fill(entry, white, black);
    return entry.score;
}

// Returns the score of US without the pawn structure. The enemy's score is not subtracted.
template <Colour US>
std::int32_t EvaluateColour(int phase) {
    const int king = KingSquare(US);
    std::int32_t score = board.piece_weight_eval[US] + board.piece_square_eval[US];
    score += KingPieceSquareEval(US, phase, king);
    if (phase == 0) score += KingSafety<US>(king);
    if (PopCount(PiecesOf(US, BISHOP)) == 2) score += BISHOP_PAIR;
    return score;
}

} // namespace

template <Colour US>
std::int32_t Evaluate() {
    const int phase = GamePhase();
    const std::int32_t pawns = PawnScore();
    return EvaluateColour<US>(phase) - EvaluateColour<Opponent(US)>(phase) +
           (US == WHITE ? pawns : -pawns);
}

template std::int32_t Evaluate<WHITE>();
template std::int32_t Evaluate<BLACK>();
