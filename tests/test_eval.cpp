// Tests of the evaluation: exact scores, and equal scores for mirrored positions.
#include "cases.h"

#include "board/position.h"
#include "eval/evaluate.h"
#include "play/newgame.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <numeric>
#include <sstream>

namespace {

std::int32_t ScoreOf(const std::string& placement, const char* side) {
    EXPECT_TRUE(SetBoardFen(placement + " " + side + " - - 0 1")) << placement;
    return board.side_to_move == WHITE ? Evaluate<WHITE>() : Evaluate<BLACK>();
}

// Exchanges left and right: the a-file becomes the h-file.
std::string Mirrored(std::string placement) {
    for (auto rank = placement.begin(), end = rank; end != placement.end(); rank = end + 1) {
        end = std::find(rank, placement.end(), '/');
        std::reverse(rank, end);
    }
    return placement;
}

// Exchanges White and Black: reverses the order of the ranks and the colours of the pieces.
std::string Turned(std::string placement) {
    std::ranges::reverse(placement);
    for (char& c : placement) {
        c = static_cast<char>(std::isupper(c) ? std::tolower(c) : std::toupper(c));
    }
    return Mirrored(placement);
}

void CheckScore(const TextCase& test) {
    const std::string& placement = test.fields[0];
    std::istringstream terms(test.fields[1]);
    const std::int32_t score = std::accumulate(std::istream_iterator<std::int32_t>(terms), {}, 0);
    EXPECT_EQ(ScoreOf(placement, "w"), score);
    EXPECT_EQ(ScoreOf(placement, "b"), -score);
    EXPECT_EQ(ScoreOf(Turned(placement), "b"), score);
    EXPECT_EQ(ScoreOf(Mirrored(placement), "w"), score);
}

const bool HAS_SCORES = RegisterFile("Eval/Scores", "scores.txt", CheckScore);

// Puts one white piece of each type on each square, with kings on h1 and h8, and with eight, four
// or no other white pieces on rank 7. Skips positions that are illegal with black to move.
TEST(Eval, IsTheSameForBothColoursAndWings) {
    for (const std::string seventh : {"RRNNBBQQ", "RRNN1111", "11111111"}) {
        for (std::size_t i = 0; i < 6 * 64; ++i) {
            const char piece = "PNBRQK"[i / 64];
            const std::size_t rank = i / 8 % 8, file = i % 8;
            std::string squares = "1111111k/" + seventh;
            for (int empty = 0; empty < 5; ++empty) {
                squares += "/11111111";
            }
            squares += piece == 'K' ? "/11111111" : "/1111111K";
            squares[(7 - rank) * 9 + file] = piece;
            if (std::ranges::count(squares, 'K') != 1 || !SetBoardFen(squares + " b - - 0 1")) {
                continue;
            }
            const std::int32_t score = ScoreOf(squares, "b");
            ASSERT_EQ(ScoreOf(Turned(squares), "w"), score) << squares;
            // With many pieces on the board, a king on c1 scores slightly higher than a king on f1,
            // so the scores of the mirrored positions differ.
            const bool is_exception = piece == 'K' && seventh == "RRNNBBQQ" && rank == 0;
            if (is_exception && (file == 2 || file == 5)) continue;
            ASSERT_EQ(ScoreOf(Mirrored(squares), "b"), score) << squares;
        }
    }
}

} // namespace
