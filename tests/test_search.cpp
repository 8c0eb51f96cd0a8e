// Transposition tables, the searches, and the tree's exact shape.
#include "support.h"

#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "search/fsearch.h"
#include "search/hash.h"
#include "search/records.h"
#include "search/rootsearch.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr std::uint64_t KEY = 0x123456789ABCDEF0;

struct Probe {
    std::int32_t score;
    std::int32_t move_index;
    bool operator==(const Probe&) const = default;
};

void PrintTo(const Probe& probe, std::ostream* out) {
    *out << "score " << probe.score << " index " << probe.move_index;
}

Probe Ask(std::uint64_t key, std::int32_t alpha, std::int32_t beta, std::int32_t depth) {
    Probe probe;
    probe.score = ProbeHashTable(key, alpha, beta, depth, probe.move_index);
    return probe;
}

TEST(Hash, Replacement) {
    const std::uint64_t other = KEY ^ (std::uint64_t{1} << 60); // the same slot
    NewHashTable();
    game_state.ply_count = 10;
    StoreHashTable(KEY, 50, 40, BOUND_EXACT, 7);
    StoreHashTable(KEY, 1, 8, BOUND_UPPER, 3); // shallower: the deeper one stays beside it
    EXPECT_EQ(Ask(KEY, 0, 1, 41), (Probe{UNKNOWN_EVAL, 7}));
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{50, 7}));
    game_state.ply_count = 14; // four plies later another position does not replace it
    StoreHashTable(other, 2, 8, BOUND_EXACT, 4);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{50, 7}));
    EXPECT_EQ(Ask(other, 0, 1, 8), (Probe{2, 4}));
    game_state.ply_count = 15;
    StoreHashTable(other, 2, 8, BOUND_EXACT, 4);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{UNKNOWN_EVAL, -1}));
    game_state.ply_count = 0;
}

TEST(Hash, MateScoresBecomeBounds) {
    NewHashTable();
    StoreHashTable(KEY, 999'990, 8, BOUND_UPPER, 1);
    EXPECT_EQ(Ask(KEY, 0, 1, 0), (Probe{UNKNOWN_EVAL, -1}));
    StoreHashTable(KEY, 999'990, 8, BOUND_EXACT, 1);
    EXPECT_EQ(Ask(KEY, 0, 998'000, 1999), (Probe{998'000, 1}));
    EXPECT_EQ(Ask(KEY, 0, 998'001, 8), (Probe{UNKNOWN_EVAL, 1}));
    StoreHashTable(KEY + 1, -999'990, 8, BOUND_LOWER, 1);
    EXPECT_EQ(Ask(KEY + 1, 0, 1, 0), (Probe{UNKNOWN_EVAL, -1}));
    StoreQuiescenceHashTable(KEY, -999'990, BOUND_EXACT, 1);
    std::int32_t index = 0;
    EXPECT_EQ(ProbeQuiescenceHashTable(KEY, 0, 1, index), -998'000);
    EXPECT_EQ(index, -1);
    NewHashTable();
}

TEST(Search, DrawsBelowTheRoot) {
    StartAt("4k3/8/8/8/8/8/7R/4K3 w - - 0 1");
    Play("e1d1 e8d8 d1e1 d8e8 e1d1 e8d8 d1e1 d8e8");
    search_info = {};
    search_info.time_limit = UNKNOWN_CLOCK;
    search_info.start_time = 0;
    search_info.max_ply = 100;
    EXPECT_EQ(FullSearch(-500, 900, 12, 4, LastMove(), nullptr, 0), 0); // the third time
    StartAt("4k3/8/8/8/8/8/8/3NK3 b - - 0 1");
    Play("e8e7");
    EXPECT_EQ(FullSearch(-500, 900, 12, 4, LastMove(), nullptr, 0), 0);
}

// The thinking lines of a search without their time, a line each: depth, score, nodes, line.
std::string Think(std::int32_t plies, Move& best) {
    engine_state.depth_limit = plies * QUARTER_PLIES;
    engine_state.use_random = 0;
    engine_state.post_thinking = 1;
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    FindBestMove(&best, nullptr, LastMove());
    std::fflush(stdout);
    std::istringstream lines(testing::internal::GetCapturedStdout());
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string depth, score, time, nodes, rest;
        words >> depth >> score >> time >> nodes >> std::ws;
        std::getline(words, rest);
        result += depth + " " + score + " " + nodes + " " + rest + "\n";
    }
    return result;
}

// Lines that separate programs print for the same searches: any change of the tree shows here.
TEST(Search, ReferenceLines) {
    struct Case {
        const char* fen;
        std::int32_t plies;
        const char* last_lines;
        const char* move;
    };
    const Case cases[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 6,
         "3 20 242 1. b1c3 b8c6 2. g1f3\n4 0 2184 1. b1c3 b8c6 2. g1f3 g8f6\n"
         "5 4 7650 1. b1c3 b8c6 2. g1f3 g8f6 3. d2d4\n"
         "6 0 53698 1. b1c3 b8c6 2. g1f3 g8f6 3. d2d4 d7d5\n",
         "b1c3"},
        {"r2q1rk1/1b2bppp/p1n1pn2/1p6/3P4/1BN2N2/PP2QPPP/R1BR2K1 b - - 3 13", 4,
         "3 -201 3756 13... c6d4 14. f3d4 e7d6\n3 36 7052 13... c6b4 14. c1f4 b4d5\n"
         "3 47 8678 13... c6a5 14. b3c2 a5c4\n4 39 20625 13... c6a5 14. b3c2 a5c4 15. f3e5\n",
         "c6a5"},
        {"3r2k1/pp3ppp/2p5/8/2P1n3/1P2P3/P3BPPP/3R2K1 w - - 0 24", 9, "3 999992 45 24. d1d8\n",
         "d1d8"},
        {"k7/8/1K6/8/8/2p5/8/2R5 b - - 0 1", 8,
         "3 -530 116 1... a8b8 2. c1c3 b8a8\n4 -999980 831 1... a8b8 2. c1c3 b8a8 3. c3c8\n",
         "a8b8"},
        {"1k6/8/8/8/1P6/8/8/7K b - - 0 1", 8,
         "3 -111 58 1... b8a7 2. h1g2 a7b6\n3 -105 137 1... b8b7 2. h1g2 b7c6\n"
         "3 -99 220 1... b8c7 2. h1g2 c7d6\n4 -111 328 1... b8c7 2. h1g2 c7d6 3. g2f3\n"
         "5 -105 652 1... b8c7 2. h1g2 c7d6 3. g2f3 d6d5\n"
         "6 -12 1583 1... b8c7 2. h1g2 c7b6 3. g2f3 b6b5 4. f3e4\n"
         "7 0 2296 1... b8c7 2. h1g2 c7b6 3. g2f3 b6b5 4. f3e4 b5b4\n"
         "8 0 2940 1... b8c7 2. h1g2 c7b6 3. g2f3 b6b5 4. f3e4 b5b4\n",
         "b8c7"},
        {"rn2k1n1/3pbN2/4p3/4P3/p7/8/PP3P1P/R2K3R b q - 0 1", 4,
         "3 223 917 1... e8f7 2. f2f4 d7d6\n4 223 2899 1... e8f7 2. f2f4 d7d6 3. e5d6\n", "e8f7"},
    };
    for (const Case& test : cases) {
        StartAt(test.fen);
        Move best;
        EXPECT_EQ(Think(test.plies, best), test.last_lines) << test.fen;
        EXPECT_STREQ(WrittenMove(best), test.move) << test.fen;
    }
}

TEST(Search, TimeBudget) {
    struct Case {
        std::uint64_t clock;
        std::uint64_t limit;
    };
    const Case cases[] = {{360'000, 36'000}, {6'000, 600}, {5'999, 399}, {5'000, 333}};
    for (const Case& test : cases) {
        StartAt("6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
        game_state.engine_time = test.clock;
        Move best, reply;
        testing::internal::CaptureStdout();
        EXPECT_EQ(FindBestMove(&best, &reply, nullptr), 999'992);
        EXPECT_NE(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(search_info.time_limit, test.limit);
        EXPECT_EQ(reply.from, -1); // a mating move has no answer
    }
    StartAt(INITIAL_FEN);
    game_state.engine_time = 49; // so little that the first iteration is all
    Move move;
    EXPECT_EQ(Think(20, move).find("\n4 "), std::string::npos);
    StartAt("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"); // stalemate: nothing to search
    Move best, reply;
    EXPECT_EQ(FindBestMove(&best, &reply, nullptr), UNSEARCHED_EVAL);
    EXPECT_EQ(best.from, -1);
}

} // namespace
