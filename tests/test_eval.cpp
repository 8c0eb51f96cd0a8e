// The evaluation: what pieces and pawns are worth where, the same for both colours and both wings.
#include "cases.h"
#include "support.h"

#include "eval/evaluate.h"
#include "play/newgame.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

namespace {

constexpr std::size_t RANK_STEP = 9; // from a rank of a placement to the next, without digits

std::int32_t ScoreOf(const std::string& placement, const char* side) {
    EXPECT_TRUE(SetBoardFen(placement + " " + side + " - - 0 1")) << placement;
    return Evaluate();
}

// The placement with a digit 1 for every empty square.
std::string Spread(const char* placement) {
    std::string board;
    for (; *placement; ++placement) {
        const bool is_digit = *placement >= '1' && *placement <= '8';
        board += is_digit ? std::string(static_cast<std::size_t>(*placement - '0'), '1')
                          : std::string(1, *placement);
    }
    return board;
}

// The wings exchanged.
std::string Mirrored(std::string board) {
    for (auto rank = board.begin(); rank < board.end(); rank += RANK_STEP) {
        std::reverse(rank, rank + 8);
    }
    return board;
}

// The colours exchanged.
std::string Turned(std::string board) {
    std::ranges::reverse(board);
    for (char& c : board) {
        c = static_cast<char>(std::isupper(c) ? std::tolower(c) : std::toupper(c));
    }
    return Mirrored(board);
}

// The score for white, which is to move, from what the pieces, pawns and kings add one by one.
struct Score {
    const char* name;
    const char* placement;
    std::int32_t score;
};

const Score SCORES[] = {
    {"Start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 0},
    {"PassedIsolatedPawn", "4k3/8/8/8/4P3/8/8/4K3", 100 + 16 + 24 - 15},
    {"PawnBeforeARook", "r3k3/8/8/8/4P3/8/8/4K3", (100 + 16 + 24 - 33) - (500 - 3)},
    {"PawnShieldedFromARook", "r3k3/4p3/8/8/4P3/8/8/4K3",
     (100 + 16 - 15) - (100 + 0 - 15) - (500 - 3)},
    {"PawnsThatStopEachOther", "4k3/8/3p4/8/4P3/8/8/4K3", (100 + 16 - 15) - (100 + 10 - 15)},
    {"PawnsSideBySide", "4k3/8/8/3pP3/8/8/8/4K3", (100 + 24 + 24 - 15) - (100 + 16 + 24 - 15)},
    {"ProtectedAndBackwardPawns", "4k3/8/8/4P3/3P4/8/8/4K3",
     (100 + 24 + 32) + (100 + 16 + 24 - 12)},
    {"BackwardPawnBeforeARook", "r3k3/8/8/4P3/3P4/8/8/4K3",
     (100 + 24 + 32) + (100 + 16 + 24 - 12 - 15) - (500 - 3)},
    {"BackwardPawnOnTheEdge", "4k3/8/8/8/8/1P6/P7/4K3", (100 + 8 + 32) + (100 + 4 + 24 - 5)},
    {"DoubledPawns", "4k3/8/8/8/4P3/4P3/8/4K3",
     (100 + 16 + 24 - 12 - 15) + (100 + 10 + 24 - 12 - 15)},
    {"BishopPair", "4k3/8/8/8/8/8/8/2B1KB2", 2 * (300 + 14) + 8},
    {"ThreeBishops", "4k3/8/8/8/8/4B3/8/2B1KB2", 2 * (300 + 14) + (300 + 24)},
    // nine pieces: two pawns beside the king, one before them, a piece in front of either king
    {"KingsInDanger", "rn1qk2r/2R5/8/8/8/6bP/5PP1/3Q2K1",
     (3 * 100 + 4 + 4 + 6 + 24 + 24 + 32) + 900 + (500 + 6) + (2 * 12 + 5 - 12) -
         (2 * (500 - 3) + (300 + 4) + 900 + (300 + 19) - 20 - 12)},
    {"EightPieces", "rn1qk3/2R5/8/8/8/6bP/5PP1/3Q2K1",
     (3 * 100 + 4 + 4 + 6 + 24 + 24 + 32) + 900 + (500 + 6) + 6 -
         ((500 - 3) + (300 + 4) + 900 + (300 + 19) + 18)},
    {"FourPieces", "BB6/8/8/8/8/8/3k4/6K1", 2 * (300 + 14) + 8 + 6 - 24},
    {"ThreePieces", "B7/8/8/8/8/8/3k4/6K1", (300 + 14) + 6 - 48},
};

void CheckScore(const Score& test) {
    EXPECT_EQ(ScoreOf(test.placement, "w"), test.score);
    EXPECT_EQ(ScoreOf(test.placement, "b"), -test.score);
    EXPECT_EQ(ScoreOf(Turned(Spread(test.placement)), "b"), test.score);
    EXPECT_EQ(ScoreOf(Mirrored(Spread(test.placement)), "w"), test.score);
}

const bool ARE_SCORES_REGISTERED = RegisterCases<Score>("Eval/Scores", SCORES, CheckScore);

// A white piece on a square of a board with kings in the corners h1 and h8, and with white pieces
// on rank 7 as in the phase: many, some, none.
std::string BoardWith(int phase, char piece, int file, int rank) {
    const char* const ranks[] = {"1111111k/RRNNBBQQ", "1111111k/RRNN1111", "1111111k/11111111"};
    std::string board = ranks[phase] + Spread("/8/8/8/8/8/7K");
    if (piece == 'K') board.back() = '1';
    board[static_cast<std::size_t>(7 - rank) * RANK_STEP + static_cast<std::size_t>(file)] = piece;
    return board;
}

// Every piece on every square, as far as the position is a legal one with black to move.
TEST(Eval, IsTheSameForBothColoursAndWings) {
    for (int i = 0; i < 3 * 6 * 64; ++i) {
        const int phase = i / 64 / 6, file = i % 8, rank = i / 8 % 8;
        const char piece = "PNBRQK"[i / 64 % 6];
        const std::string board = BoardWith(phase, piece, file, rank);
        if (std::ranges::count(board, 'K') != 1 || !SetBoardFen(board + " b - - 0 1")) continue;
        const std::int32_t score = Evaluate();
        ASSERT_EQ(ScoreOf(Turned(board), "w"), score) << board;
        // With many pieces left, the king stands a little better on c1 than on f1.
        if (piece == 'K' && phase == 0 && rank == 0 && (file == 2 || file == 5)) continue;
        ASSERT_EQ(ScoreOf(Mirrored(board), "b"), score) << board;
    }
}

// Squares from the best to the worst for a white piece.
struct Taste {
    const char* name;
    int phase;
    char piece;
    std::string squares;
};

const Taste TASTES[] = {
    {"PawnsInTheMiddle", 2, 'P', "e6 e5 e4 e3 b3 a3 c2 f3 e2"},
    {"PawnsAhead", 2, 'P', "d6 c6 b6 a6 a5 a4 a2"},
    {"KnightsInTheMiddle", 2, 'N', "d4 d3 c3 b4 b3 a4 b2 b1 a1"},
    {"BishopsOffTheEdge", 2, 'B', "e4 d2 c1"},
    {"BishopsOnTheLongDiagonal", 2, 'B', "b2 b3 a3"},
    {"RooksOnTheSeventh", 2, 'R', "e7 e8 e5 a1"},
    {"KingsHiddenFromManyPieces", 0, 'K', "g1 c1 f1 e1 d2 d3 d4"},
    {"KingsInTheMiddleOfFewPieces", 1, 'K', "d4 d3 d2 d1 c1 b1 a1"},
    {"KingsAheadAtTheEnd", 2, 'K', "d7 d6 d5 d3 d2 d1 c1 b1 a1"},
};

void CheckTaste(const Taste& test) {
    const auto score_of = [&](const std::string& square) {
        return -ScoreOf(BoardWith(test.phase, test.piece, square[0] - 'a', square[1] - '1'), "b");
    };
    for (std::size_t i = 3; i < test.squares.size(); i += 3) {
        const std::string better = test.squares.substr(i - 3, 2), worse = test.squares.substr(i, 2);
        EXPECT_GT(score_of(better), score_of(worse)) << better << " and " << worse;
    }
}

const bool ARE_TASTES_REGISTERED = RegisterCases<Taste>("Eval/Prefers", TASTES, CheckTaste);

} // namespace
