// Tests of making and unmaking moves, and of the hash key.
#include "consistency.h"
#include "support.h"

#include "board/utility.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/fen.h"
#include "notation/notation.h"

#include <gtest/gtest.h>
#include <iterator>
#include <vector>

namespace {

TEST(Moves, EnPassantThatUncoversTheKingIsNotInTheKey) {
    StartAt("8/8/8/8/R2p3k/8/4P3/4K3 w - - 0 1");
    Play("e2e4");
    EXPECT_EQ(board.zobrist_xor, 0u);
}

TEST(Moves, EnPassantIsOverAfterANullMove) {
    StartAt("4k3/8/8/8/3p4/8/4P3/4K3 w - - 0 1");
    Play("e2e4");
    EXPECT_EQ(board.zobrist_xor, ZOBRIST_KEY_ENPASSANT[20]);
    MakeNullMove();
    EXPECT_EQ(board.zobrist_xor, 0u);
    UnMakeNullMove();
    EXPECT_EQ(board.zobrist_xor, ZOBRIST_KEY_ENPASSANT[20]);
}

// The first move of a rook toggles a castling key if there is an unmoved piece on the king's home
// square (e1) before the move. In this test, the unmoved piece on e1 is the rook itself.
TEST(Moves, UnmovedRookOnTheKingsSquareChangesACastlingKey) {
    StartAt("3k4/8/8/8/8/8/8/4R1KR w K - 0 1");
    const std::uint64_t key = board.zobrist_key;
    Play("e1e2");
    EXPECT_EQ(board.zobrist_key ^ key, ZOBRIST_KEY_CASTLE[CastleIndex(WHITE, QUEEN_SIDE)] ^
                                           ZOBRIST_KEY_SIDE_SWITCH ^ PieceKey(WHITE, ROOK, 4) ^
                                           PieceKey(WHITE, ROOK, 12));
}

// Plays random games from several positions. After every move, recomputes the bitboards, counts,
// sums and hash key. Then undoes the game and compares each position. Also sets up the last
// position from its FEN.
TEST(Moves, RandomGames) {
    const char* const starts[] = {
        INITIAL_FEN,
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
        "4k3/2p1p1p1/8/1P1P1P1P/p1p1p1p1/8/1P1P1P1P/4K3 w - - 0 1",
        "q3k2q/pppppppp/8/8/8/8/PPPPPPPP/Q3K2Q w KQkq - 0 1", // queens on the rooks' squares
        "r3r1k1/8/8/8/8/8/8/4R1KR w Kq - 0 1",                // rooks on the kings' squares
    };
    SeedRandom(20);
    for (int game = 0; game < 75; ++game) {
        StartAt(starts[static_cast<std::size_t>(game) % std::size(starts)]);
        std::vector<Position> line;
        for (int ply = 0; ply < 150; ++ply) {
            MoveList list;
            GenerateAllLegalMoves(list, LastMove());
            ASSERT_TRUE(IsConsistentPosition()) << GetBoardFen();
            if (list.count == 0) break;
            const Move move = list.moves[RandomU32() % static_cast<std::uint32_t>(list.count)];
            line.push_back(board);
            Play(WrittenMove(move));
        }
        const std::string fen = GetBoardFen();
        for (; !line.empty(); line.pop_back()) {
            UndoMove();
            ASSERT_TRUE(board == line.back()) << fen;
        }
        StartAt(fen);
        EXPECT_EQ(GetBoardFen(), fen);
    }
}

} // namespace
