// The evaluation: what pieces and pawns are worth where, the same for both colours and both wings.
#include "cases.h"
#include "support.h"

#include "board/position.h"
#include "eval/evaluate.h"
#include "play/newgame.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <sstream>

namespace {

constexpr std::size_t RANK_STEP = 9; // from a rank of a placement to the next, without digits

std::int32_t Score() { return board.side_to_move == WHITE ? Evaluate<WHITE>() : Evaluate<BLACK>(); }

std::int32_t ScoreOf(const std::string& placement, const char* side) {
    EXPECT_TRUE(SetBoardFen(placement + " " + side + " - - 0 1")) << placement;
    return Score();
}

// The placement with a digit 1 for every empty square.
std::string Spread(const char* placement) {
    std::string squares;
    for (; *placement; ++placement) {
        const bool is_digit = *placement >= '1' && *placement <= '8';
        squares += is_digit ? std::string(static_cast<std::size_t>(*placement - '0'), '1')
                            : std::string(1, *placement);
    }
    return squares;
}

// The wings exchanged.
std::string Mirrored(std::string squares) {
    for (auto rank = squares.begin(); rank < squares.end(); rank += RANK_STEP) {
        std::reverse(rank, rank + 8);
    }
    return squares;
}

// The colours exchanged.
std::string Turned(std::string squares) {
    std::ranges::reverse(squares);
    for (char& c : squares) {
        c = static_cast<char>(std::isupper(c) ? std::tolower(c) : std::toupper(c));
    }
    return Mirrored(squares);
}

void CheckScore(const TextCase& test) {
    const std::string& placement = test.fields[0];
    std::istringstream terms(test.fields[1]);
    const std::int32_t score = std::accumulate(std::istream_iterator<std::int32_t>(terms), {}, 0);
    EXPECT_EQ(ScoreOf(placement, "w"), score);
    EXPECT_EQ(ScoreOf(placement, "b"), -score);
    EXPECT_EQ(ScoreOf(Turned(Spread(placement.c_str())), "b"), score);
    EXPECT_EQ(ScoreOf(Mirrored(Spread(placement.c_str())), "w"), score);
}

const bool ARE_SCORES_REGISTERED = RegisterFile("Eval/Scores", "scores.txt", CheckScore);

// A white piece on a square of a board with kings in the corners h1 and h8, and with white pieces
// on rank 7 as in the phase: many, some, none.
std::string BoardWith(int phase, char piece, int file, int rank) {
    const char* const ranks[] = {"1111111k/RRNNBBQQ", "1111111k/RRNN1111", "1111111k/11111111"};
    std::string squares = ranks[phase] + Spread("/8/8/8/8/8/7K");
    if (piece == 'K') squares.back() = '1';
    squares[static_cast<std::size_t>(7 - rank) * RANK_STEP + static_cast<std::size_t>(file)] =
        piece;
    return squares;
}

// Every piece on every square, as far as the position is a legal one with black to move.
TEST(Eval, IsTheSameForBothColoursAndWings) {
    for (int i = 0; i < 3 * 6 * 64; ++i) {
        const int phase = i / 64 / 6, file = i % 8, rank = i / 8 % 8;
        const char piece = "PNBRQK"[i / 64 % 6];
        const std::string squares = BoardWith(phase, piece, file, rank);
        if (std::ranges::count(squares, 'K') != 1 || !SetBoardFen(squares + " b - - 0 1")) continue;
        const std::int32_t score = Score();
        ASSERT_EQ(ScoreOf(Turned(squares), "w"), score) << squares;
        // With many pieces left, the king stands a little better on c1 than on f1.
        if (piece == 'K' && phase == 0 && rank == 0 && (file == 2 || file == 5)) continue;
        ASSERT_EQ(ScoreOf(Mirrored(squares), "b"), score) << squares;
    }
}

void CheckTaste(const TextCase& test) {
    const std::string& squares = test.fields[2];
    const auto score_of = [&](const std::string& square) {
        return -ScoreOf(BoardWith(std::stoi(test.fields[0]), test.fields[1][0], square[0] - 'a',
                                  square[1] - '1'),
                        "b");
    };
    for (std::size_t i = 3; i < squares.size(); i += 3) {
        const std::string better = squares.substr(i - 3, 2), worse = squares.substr(i, 2);
        EXPECT_GT(score_of(better), score_of(worse)) << better << " and " << worse;
    }
}

const bool ARE_TASTES_REGISTERED = RegisterFile("Eval/Prefers", "tastes.txt", CheckTaste);

} // namespace
