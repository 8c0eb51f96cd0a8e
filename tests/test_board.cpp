// Tables, bit operations, random numbers, attacks and evaluation: values that are known by sight.
#include "support.h"

#include "board/utility.h"
#include "diag/dump.h"
#include "eval/evaltables.h"
#include "eval/evaluate.h"
#include "moves/attacks.h"

#include <gtest/gtest.h>

namespace {

constexpr int A1 = 0, B1 = 1, C1 = 2, E1 = 4, F1 = 5, H1 = 7, A2 = 8, E2 = 12, A4 = 24, E4 = 28,
              A8 = 56, H8 = 63;

// The set of squares named, blanks between.
Bitboard Set(const std::string& names) {
    Bitboard set = 0;
    for (std::size_t i = 0; i + 1 < names.size(); i += 3) {
        set |= Bitboard{1} << SquareOf(names[i] - 'a', names[i + 1] - '1');
    }
    return set;
}

TEST(Board, BitOperations) {
    EXPECT_EQ(FirstBitNumber(Bitboard{1} << 32), 32);
    EXPECT_EQ(LastBitNumber((Bitboard{1} << 31) | 1), 31);
    EXPECT_EQ(LastBitNumber(Bitboard{1} << 63), 63);
    EXPECT_EQ(PopCount(~Bitboard{0}), 64);
    EXPECT_EQ(POP_COUNT[0xFFFF], 16u);
    EXPECT_EQ(POP_COUNT[0], 0u);
}

TEST(Board, RotatedOrders) {
    EXPECT_EQ(BIT_FILE[B1], Bitboard{1} << 8);
    EXPECT_EQ(BIT_FILE[A2], Bitboard{1} << 1);
    EXPECT_EQ(BIT_A1H8[H8], Bitboard{1} << 63);
    EXPECT_EQ(BIT_A8H1[H1], Bitboard{1} << 63);
    EXPECT_EQ(BIT_A8H1[A1], Bitboard{1} << 35);
    EXPECT_EQ(DIAG_SHIFT_A1H8[E4], 28u);
    EXPECT_EQ(DIAG_MASK_A1H8[E4], 255u);
    EXPECT_EQ(DIAG_SHIFT_A8H1[E4], 36u);
    EXPECT_EQ(DIAG_MASK_A8H1[E4], 127u);
}

TEST(Board, MaskTables) {
    EXPECT_EQ(MOVES_RANK[LineIndex(E1, 0x91)], Set("a1 b1 c1 d1 f1 g1 h1"));
    EXPECT_EQ(MOVES_RANK[LineIndex(E1, 0x08)], Set("d1 f1 g1 h1"));
    EXPECT_EQ(MOVES_A1H8[LineIndex(A1, 1)], 0u);
    EXPECT_EQ(PLUS_9[A1], Set("b2 c3 d4 e5 f6 g7 h8"));
    EXPECT_EQ(PLUS_9[H1], 0u);
    EXPECT_EQ(MINUS_7[A4], Set("b3 c2 d1"));
    EXPECT_EQ(ATTACKS_PAWN[WHITE][A2], Set("b3"));
    EXPECT_EQ(ATTACKS_PAWN[BLACK][A8], Set("b7"));
    EXPECT_EQ(ATTACKS_PAWN[WHITE][A8], 0u);
    EXPECT_EQ(ATTACKS_ENPASSANT[E4], Set("d4 f4"));
    EXPECT_EQ(ATTACKS_ENPASSANT[A4], Set("b4"));
    EXPECT_EQ(ATTACKS_ENPASSANT[E2], 0u);
    EXPECT_EQ(PAWN_PASSED[WHITE][E2], Set("d3 e3 f3 d4 e4 f4 d5 e5 f5 d6 e6 f6 d7 e7 f7"));
    EXPECT_EQ(PAWN_BACKWARD_B[WHITE][E2], Set("d2 f2"));
    EXPECT_EQ(PAWN_BACKWARD_B[BLACK][E2], PAWN_ISOLATED[E2]);
    EXPECT_EQ(PAWN_DOUBLED[E2], Set("e3 e4 e5 e6 e7"));
    EXPECT_EQ(PAWN_ISOLATED[A8], 0u);
    EXPECT_EQ(SQUARES_BORDER[2][A1], Set("c1 c2 c3 b3 a3"));
    EXPECT_EQ(SQUARES_AROUND[1][A1], Set("b1 b2 a2"));
    EXPECT_EQ(SQUARES_FRONT[BLACK][E2], Set("e1"));
}

// The generator of the documented constants, computed by hand for the seed 1.
TEST(Board, RandomNumbers) {
    SeedRandom(1);
    EXPECT_EQ(RandomU15(), 41u);
    EXPECT_EQ(RandomU15(), 18467u);
    EXPECT_EQ(RandomU15(), 6334u);
    SeedRandom(1);
    EXPECT_EQ(RandomU32(), (41u << 15) ^ 18467u);
    SeedRandom(1);
    std::uint64_t expected = 0;
    for (const std::uint64_t draw : {41u, 18467u, 6334u, 26500u, 19169u}) {
        expected = (expected << 15) ^ draw;
    }
    EXPECT_EQ(RandomU64(), expected);
}

TEST(Board, InitialPosition) {
    StartAt(INITIAL_FEN);
    const std::uint64_t fen_key = zobrist_key;
    NewRepresentation();
    NewEvaluation();
    EXPECT_EQ(zobrist_key, fen_key);
    EXPECT_EQ(zobrist_keys[0], zobrist_key);
    EXPECT_EQ(position[E1], 0x43);
    EXPECT_EQ(position[60], 0x83);
    for (const Colour colour : {WHITE, BLACK}) {
        EXPECT_EQ(piece_weight_eval[colour], 3900);
        EXPECT_EQ(piece_square_eval[colour], 54);
        EXPECT_EQ(pieces_on_board[colour], 8);
    }
    EXPECT_EQ(RookAttacks(A1), Set("a2 b1"));
    EXPECT_EQ(BishopAttacks(C1), Set("b2 d2"));
    EXPECT_EQ(HaveKingCaptures(), 0);
}

TEST(Board, CastlingSquares) {
    StartAt("4k3/8/b7/8/8/8/8/4K2R w K - 0 1");
    EXPECT_EQ(PreventedCastle(F1), 1);
    EXPECT_EQ(PreventedCastle(E1), 0);
    StartAt("r3k3/8/8/6B1/8/8/8/4K3 b q - 0 1");
    EXPECT_EQ(PreventedCastle(59), 1); // d8, from g5
    EXPECT_EQ(PreventedCastle(58), 0);
}

TEST(Board, EvaluationTerms) {
    struct Case {
        const char* fen;
        std::int32_t score;
    };
    // Kings face each other, so that their own terms cancel; what remains is counted by hand.
    const Case cases[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 0},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1", 0},
        // passed and isolated pawn: 100 + 24 + 24 - 15; with an enemy rook in play -33, rook 500
        {"8/8/8/k2PK3/8/8/8/8 w - - 0 1", 100 + 24 + 24 - 15 + 36 - 18},
        {"k7/8/8/3P4/8/8/8/K6r w - - 0 1", 100 + 24 + 24 - 33 - 500 - 3},
        // protected passed e5 (24 + 32), backward passed d4 (16 + 24 - 12)
        {"k7/8/8/4P3/3P4/8/8/K7 w - - 0 1", 200 + 24 + 32 + 16 + 24 - 12},
        // doubled pawns pay each
        {"k7/8/8/3P4/3P4/8/8/K7 w - - 0 1", 200 + 24 + 16 + 2 * (24 - 12 - 15)},
        // a pair of bishops, not three: squares 14 + 14, 14 + 14 + 24
        {"k7/8/8/8/8/8/8/K1B2B2 w - - 0 1", 600 + 28 + 8},
        {"k7/8/8/8/8/8/1B6/K1B2B2 w - - 0 1", 900 + 28 + 24},
    };
    for (const Case& test : cases) {
        StartAt(test.fen);
        EXPECT_EQ(Evaluate(), test.score) << test.fen;
    }
}

TEST(Board, Dumps) {
    StartAt("8/4P3/8/8/8/8/4P3/k1K5 w - - 0 1");
    Move promotion{52, 60, 0x49, NO_PIECE, 0x4F, 0, 0, 0, 0, 0, 0};
    testing::internal::CaptureStderr();
    DumpPiece(E2, position[E2]);
    DumpMove(promotion);
    DumpU64(1);
    DumpBitBoard(1);
    DumpPosition();
    DumpMoveList({&promotion, 1});
    const std::string move = "Piece at E7 is a WHITE PAWN (MF=1) which moves to E8 "
                             "(and promotes to QUEEN)\n";
    std::string board;
    for (int rank = 0; rank < 7; ++rank) {
        board += "- - - - - - - - \n";
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Piece at E2 is a WHITE PAWN (MF=0)\n" + move + std::string(63, '0') + "1\n" + board +
                  "X - - - - - - - \n\n" +
                  "DumpPosition(): BEGIN\nPiece at A1 is a BLACK KING (MF=1)\n"
                  "Piece at C1 is a WHITE KING (MF=1)\nPiece at E2 is a WHITE PAWN (MF=0)\n"
                  "Piece at E7 is a WHITE PAWN (MF=1)\nDumpPosition(): END\n" +
                  "DumpMoveList(): BEGIN\n1\n" + move + "DumpMoveList(): END\n");
}

} // namespace
