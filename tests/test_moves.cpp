// Generation order, making and unmaking, legality.
#include "cases.h"
#include "snapshot.h"
#include "support.h"

#include "board/utility.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/setboard.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

struct Order {
    const char* name;
    const char* fen;
    const char* moves;
};

const Order ORDERS[] = {
    {"White", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
     "b1c3 b1a3 g1h3 g1f3 a2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 f2f4 g2g3 g2g4 "
     "h2h3 h2h4"},
    {"Black", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1",
     "b8a6 b8c6 g8f6 g8h6 a7a6 a7a5 b7b6 b7b5 c7c6 c7c5 d7d6 d7d5 e7e6 e7e5 f7f6 f7f5 g7g6 g7g5 "
     "h7h6 h7h5"},
    // the capture first, queen to knight
    {"Promotions", "r7/1P6/8/8/8/8/k7/2K5 w - - 0 1",
     "b7a8q b7a8r b7a8b b7a8n c1d2 c1c2 c1d1 b7b8q b7b8r b7b8b b7b8n"},
    // most valuable victim, then least valuable attacker; en passant behind all of them
    {"Captures", "k7/8/8/2pP3q/4PN2/8/8/K7 w - c6 0 1",
     "f4h5 d5c6 f4g6 f4e6 f4h3 f4d3 f4g2 f4e2 a1b2 a1a2 a1b1 e4e5 d5d6"},
    // to both sides, the king side first; h1 may be attacked, b1 too
    {"Castling", "1r2k2r/8/8/8/8/7p/P6P/R3K2R w KQ - 0 1",
     "e1g1 e1c1 a1d1 a1c1 a1b1 h1g1 h1f1 e1f2 e1e2 e1d2 e1f1 e1d1 a2a3 a2a4"},
    {"BlackCastling", "r3k2r/8/8/8/8/8/8/4KR2 b kq - 0 1",
     "e8c8 a8a1 a8a2 a8a3 a8a4 a8a5 a8a6 a8a7 a8b8 a8c8 a8d8 h8h1 h8h2 h8h3 h8h4 h8h5 h8h6 h8h7 "
     "h8f8 h8g8 e8d7 e8e7 e8d8"},
};

void CheckOrder(const Order& test) {
    StartAt(test.fen);
    EXPECT_EQ(LegalMoves(), test.moves);
}

const bool ARE_ORDERS_REGISTERED = RegisterCases<Order>("Moves/Order", ORDERS, CheckOrder);

TEST(Moves, KingCapturesAlone) {
    StartAt("4k3/8/8/8/8/8/8/K3R2r b - - 0 1");
    side_to_move = WHITE; // as if black had left its king in check
    MoveList list;
    GenerateCaptures(list, nullptr);
    ASSERT_EQ(list.count, 1); // and not the rook
    EXPECT_EQ(TypeOf(list.moves[0].captured), KING);
}

TEST(Moves, EnPassantIsOverAfterANullMove) {
    StartAt("4k3/8/8/8/3p4/8/4P3/4K3 w - - 0 1");
    Play("e2e4");
    EXPECT_EQ(zobrist_xor, ZOBRIST_KEY_ENPASSANT[20]);
    MakeNullMove();
    EXPECT_EQ(zobrist_xor, 0u);
    UnMakeNullMove();
    EXPECT_EQ(zobrist_xor, ZOBRIST_KEY_ENPASSANT[20]);
}

TEST(Moves, EnPassantThatUncoversTheKingIsNotInTheKey) {
    StartAt("8/8/8/8/R2p3k/8/4P3/4K3 w - - 0 1");
    Play("e2e4");
    EXPECT_EQ(zobrist_xor, 0u);
}

// Random games from several starts: after every move all records agree with a recomputation, the
// position written as FEN reads as the same one, and taking back restores everything.
TEST(Moves, RandomGames) {
    const char* const starts[] = {
        INITIAL_FEN.c_str(),
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
        "4k3/2p1p1p1/8/1P1P1P1P/p1p1p1p1/8/1P1P1P1P/4K3 w - - 0 1",
    };
    SeedRandom(20);
    for (int game = 0; game < 60; ++game) {
        StartAt(starts[game % 4]);
        std::vector<Snapshot> line;
        for (int ply = 0; ply < 150; ++ply) {
            MoveList list;
            GenerateAllLegalMoves(list, LastMove());
            ASSERT_TRUE(IsConsistentPosition()) << GetBoardFen();
            if (list.count == 0) break;
            const Move move = list.moves[RandomU32() % static_cast<std::uint32_t>(list.count)];
            line.push_back(TakeSnapshot());
            Play(WrittenMove(move));
        }
        const std::string fen = GetBoardFen();
        for (; !line.empty(); line.pop_back()) {
            UndoMove();
            ASSERT_TRUE(TakeSnapshot() == line.back()) << fen;
        }
        StartAt(fen);
        EXPECT_EQ(GetBoardFen(), fen);
    }
}

} // namespace
