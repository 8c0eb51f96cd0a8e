// Transposition tables, the searches, and the tree's exact shape.
#include "cases.h"
#include "support.h"

#include "board/utility.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "search/hash.h"
#include "search/records.h"
#include "search/rootsearch.h"

#include <set>
#include <sstream>

namespace {

constexpr std::uint64_t KEY = 0x123456789ABCDEF0;
constexpr std::uint64_t OTHER_KEY = KEY ^ (std::uint64_t{1} << 60); // the same slot

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

// Empty tables, and a game of ten plies.
struct Hash : testing::Test {
    void SetUp() override {
        NewHashTable();
        game_state.ply_count = 10;
    }
    void TearDown() override { game_state.ply_count = 0; }
};

TEST_F(Hash, DeeperEntryStaysBesideAShallowerOne) {
    StoreHashTable(KEY, 50, 40, BOUND_EXACT, 7);
    StoreHashTable(KEY, 1, 8, BOUND_UPPER, 3);
    EXPECT_EQ(Ask(KEY, 0, 1, 41), (Probe{UNKNOWN_EVAL, 7}));
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{50, 7}));
}

TEST_F(Hash, DeeperEntryOfAnotherPositionStaysForFourPlies) {
    StoreHashTable(KEY, 50, 40, BOUND_EXACT, 7);
    StoreHashTable(KEY, 1, 8, BOUND_UPPER, 3);
    game_state.ply_count = 14;
    StoreHashTable(OTHER_KEY, 2, 8, BOUND_EXACT, 4);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{50, 7}));
    EXPECT_EQ(Ask(OTHER_KEY, 0, 1, 8), (Probe{2, 4}));
    game_state.ply_count = 15;
    StoreHashTable(OTHER_KEY, 2, 8, BOUND_EXACT, 4);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{UNKNOWN_EVAL, -1}));
}

TEST_F(Hash, ForcedScoreIsExactInBothTables) {
    StoreHashTable(KEY, 50, 40, BOUND_LOWER, 7);
    StoreHashTable(KEY, 30, 8, BOUND_UPPER, 3);
    ForceHashTable(KEY, 0);
    EXPECT_EQ(Ask(KEY, 100, 200, 40), (Probe{0, 7}));
    EXPECT_EQ(Ask(KEY, 100, 200, 41), (Probe{UNKNOWN_EVAL, 3})); // its move is from the other table
    StoreHashTable(OTHER_KEY, 60, 8, BOUND_LOWER, 5);
    ForceHashTable(OTHER_KEY, 0);
    EXPECT_EQ(Ask(OTHER_KEY, 100, 200, 8), (Probe{0, 5}));
}

TEST_F(Hash, ForcedScoreIsOfOnePositionOnly) {
    StoreHashTable(KEY, 50, 40, BOUND_EXACT, 7);
    StoreHashTable(OTHER_KEY, 60, 8, BOUND_EXACT, 5);
    ForceHashTable(KEY, 0);
    EXPECT_EQ(Ask(OTHER_KEY, 0, 1, 8), (Probe{60, 5}));
    ForceHashTable(KEY + (std::uint64_t{1} << 61), 1);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (Probe{0, 7}));
}

TEST_F(Hash, MateIsALowerBoundAtEveryDepth) {
    StoreHashTable(KEY, 999'990, 8, BOUND_EXACT, 1);
    EXPECT_EQ(Ask(KEY, 0, 998'000, 1999), (Probe{998'000, 1}));
    EXPECT_EQ(Ask(KEY, 0, 998'001, 8), (Probe{UNKNOWN_EVAL, 1}));
}

TEST_F(Hash, MateThatIsNoneForSureIsNotStored) {
    StoreHashTable(KEY, 999'990, 8, BOUND_UPPER, 1);
    EXPECT_EQ(Ask(KEY, 0, 1, 0), (Probe{UNKNOWN_EVAL, -1}));
    StoreHashTable(KEY + 1, -999'990, 8, BOUND_LOWER, 1);
    EXPECT_EQ(Ask(KEY + 1, 0, 1, 0), (Probe{UNKNOWN_EVAL, -1}));
}

TEST_F(Hash, MateOfTheQuiescenceSearchIsAnUpperBound) {
    StoreQuiescenceHashTable(KEY, -999'990, BOUND_EXACT, 1);
    std::int32_t index = 0;
    EXPECT_EQ(ProbeQuiescenceHashTable(KEY, 0, 1, index), -998'000);
    EXPECT_EQ(index, -1);
}

// What a search prints, a line each of depth, score, nodes, moves; and what it chooses.
struct Thought {
    std::string lines;
    std::string move;
    std::string reply; // or "none"
    std::int32_t score;
};

Thought Think(std::int32_t plies, bool is_random = false) {
    engine_state.depth_limit = plies * QUARTER_PLIES;
    engine_state.use_random = is_random;
    engine_state.post_thinking = 1;
    Move best, reply;
    testing::internal::CaptureStdout();
    const std::int32_t result = FindBestMove(&best, &reply, LastMove());
    std::istringstream lines(testing::internal::GetCapturedStdout());
    const auto text = [](const Move& move) { return move.from < 0 ? "none" : WrittenMove(move); };
    Thought thought{"", text(best), text(reply), result};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string depth, score, time, nodes, rest;
        words >> depth >> score >> time >> nodes >> std::ws;
        std::getline(words, rest);
        thought.lines += depth + " " + score + " " + nodes + " " + rest + "\n";
    }
    return thought;
}

// Lines that separate programs print for the same searches: any change of the tree shows here.
struct Reference {
    const char* name;
    const char* fen;
    std::int32_t plies;
    const char* lines;
    const char* move;
};

const Reference REFERENCES[] = {
    {"Opening", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 6,
     "3 20 242 1. b1c3 b8c6 2. g1f3\n4 0 2184 1. b1c3 b8c6 2. g1f3 g8f6\n"
     "5 4 7650 1. b1c3 b8c6 2. g1f3 g8f6 3. d2d4\n"
     "6 0 53698 1. b1c3 b8c6 2. g1f3 g8f6 3. d2d4 d7d5\n",
     "b1c3"},
    {"MiddleGame", "r2q1rk1/1b2bppp/p1n1pn2/1p6/3P4/1BN2N2/PP2QPPP/R1BR2K1 b - - 3 13", 4,
     "3 -201 3756 13... c6d4 14. f3d4 e7d6\n3 36 7052 13... c6b4 14. c1f4 b4d5\n"
     "3 47 8678 13... c6a5 14. b3c2 a5c4\n4 39 20625 13... c6a5 14. b3c2 a5c4 15. f3e5\n",
     "c6a5"},
    {"Mating", "3r2k1/pp3ppp/2p5/8/2P1n3/1P2P3/P3BPPP/3R2K1 w - - 0 24", 9,
     "3 999992 45 24. d1d8\n", "d1d8"},
    {"Mated", "k7/8/1K6/8/8/2p5/8/2R5 b - - 0 1", 8,
     "3 -530 116 1... a8b8 2. c1c3 b8a8\n4 -999980 831 1... a8b8 2. c1c3 b8a8 3. c3c8\n", "a8b8"},
    {"PawnEnding", "1k6/8/8/8/1P6/8/8/7K b - - 0 1", 8,
     "3 -111 58 1... b8a7 2. h1g2 a7b6\n3 -105 137 1... b8b7 2. h1g2 b7c6\n"
     "3 -99 220 1... b8c7 2. h1g2 c7d6\n4 -111 328 1... b8c7 2. h1g2 c7d6 3. g2f3\n"
     "5 -105 652 1... b8c7 2. h1g2 c7d6 3. g2f3 d6d5\n"
     "6 -12 1583 1... b8c7 2. h1g2 c7b6 3. g2f3 b6b5 4. f3e4\n"
     "7 0 2296 1... b8c7 2. h1g2 c7b6 3. g2f3 b6b5 4. f3e4 b5b4\n"
     "8 0 2940 1... b8c7 2. h1g2 c7b6 3. g2f3 b6b5 4. f3e4 b5b4\n",
     "b8c7"},
    {"EnPassant", "rn2k1n1/3pbN2/4p3/4P3/p7/8/PP3P1P/R2K3R b q - 0 1", 4,
     "3 223 917 1... e8f7 2. f2f4 d7d6\n4 223 2899 1... e8f7 2. f2f4 d7d6 3. e5d6\n", "e8f7"},
};

void CheckReference(const Reference& test) {
    StartAt(test.fen);
    const Thought thought = Think(test.plies);
    EXPECT_EQ(thought.lines, test.lines);
    EXPECT_EQ(thought.move, test.move);
}

const bool ARE_REFERENCES_REGISTERED =
    RegisterCases<Reference>("Search/Lines", REFERENCES, CheckReference);

// A move that draws, after a game, and whether it is the best.
struct Draw {
    const char* name;
    const char* fen;
    const char* game;
    const char* move;
    bool is_best;
};

const char* const ROOK = "4k3/8/8/8/8/8/8/4K2R w - - 0 1";

const Draw DRAWS[] = {
    {"SavedByStalemate", "8/8/5r2/k1K5/2Q5/8/8/8 b - - 0 1", "", "f6c6", true},
    {"SavedByPromotionAndStalemate", "6k1/3p4/7K/8/1Q6/8/6p1/8 b - - 0 1", "", "g2g1q", true},
    {"NoStalematingByCapture", "k7/2r5/3Q4/8/8/8/4K3/8 w - - 0 1", "", "d6c7", false},
    {"SavedByTakingTheLastPawn", "8/8/8/8/3k4/4P3/8/6NK b - - 0 1", "", "d4e3", true},
    {"ThirdOccurrence", ROOK, "Rg1 Kd8 Rh1 Ke8 Rg1 Kd8 Rh1", "d8e8", true},
    {"SecondOccurrence", ROOK, "Rg1 Kd8 Rh1", "d8e8", false},
    {"FirstOccurrenceThirtyPliesAgo", ROOK,
     "Rh2 Kd8 Rh3 Kc8 Rh4 Kb8 Rh5 Kb7 Rg5 Kc7 Rg4 Kd7 Rg3 Ke7 Rg2 Kf7 Ra2 Kf6 Ra3 Ke6 Ra4 Kd6 "
     "Rh4 Kd7 Rh1 Ke8 Rg1 Kd8 Rh1",
     "d8e8", true},
    {"FirstOccurrenceThirtyTwoPliesAgo", ROOK,
     "Rh2 Kd8 Rh3 Kc8 Rh4 Kb8 Rh5 Kb7 Rg5 Kc7 Rg4 Kd7 Rg3 Ke7 Rg2 Kf7 Ra2 Kf6 Ra3 Ke6 Ra4 Kd6 "
     "Ra5 Kc6 Rh5 Kd7 Rh1 Ke8 Rg1 Kd8 Rh1",
     "d8e8", false},
};

void CheckDraw(const Draw& test) {
    StartAt(test.fen);
    Play(test.game);
    const Thought thought = Think(4);
    EXPECT_EQ(thought.move == test.move, test.is_best) << thought.move;
    EXPECT_EQ(thought.score == 0, test.is_best) << thought.score;
}

const bool ARE_DRAWS_REGISTERED = RegisterCases<Draw>("Search/Draws", DRAWS, CheckDraw);

// A position and the moves that the engine plays, one time or another, when it may choose; the
// best is the last. The search before, if any, leaves its scores in the tables.
struct Choice {
    const char* name;
    const char* fen;
    std::int32_t plies_before;
    std::set<std::string> moves;
    const char* best;
};

const Choice CHOICES[] = {
    // 104, 105, 108
    {"WithinThreeCentipawns", "8/2K4k/5r2/3R4/8/8/1P6/8 w - - 0 1", 0, {"d5d7", "d5d6"}, "d5d6"},
    // -116, -113, -112, -109
    {"NotFourCentipawnsBelow", "8/3K2k1/8/7R/3P4/4r3/8/8 b - - 0 1", 0, {"e3d3", "g7f6"}, "g7f6"},
    // 107 as the tables know, and d5d7
    {"KnownToTheTables", "8/8/K7/3R4/3P4/8/8/4k1r1 w - - 0 1", 4, {"d5d7", "d5d8"}, "d5d8"},
};

void CheckChoice(const Choice& test) {
    std::set<std::string> seen;
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        StartAt(test.fen);
        if (test.plies_before > 0) Think(test.plies_before);
        SeedRandom(seed * 997);
        seen.insert(Think(3, true).move);
    }
    EXPECT_EQ(seen, test.moves);
    EXPECT_EQ(Think(3).move, test.best);
}

const bool ARE_CHOICES_REGISTERED = RegisterCases<Choice>("Search/Chooses", CHOICES, CheckChoice);

TEST(Search, EndsWhenEveryOtherMoveIsMated) {
    StartAt("2rk4/8/3K4/1Q6/8/4p3/8/8 b - - 0 1");
    const Thought thought = Think(8);
    EXPECT_EQ(thought.move, "c8c7");
    EXPECT_EQ(thought.lines.find("\n4 "), std::string::npos);
}

TEST(Search, EndsWithASingleMove) {
    StartAt("7k/8/8/8/8/8/P7/6RK b - - 0 1");
    EXPECT_EQ(Think(8).lines.find("4 "), std::string::npos);
}

TEST(Search, ExpectsNoReplyToMate) {
    StartAt("6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
    const Thought thought = Think(8);
    EXPECT_EQ(thought.score, 999'992);
    EXPECT_EQ(thought.reply, "none");
}

TEST(Search, HasNothingToChooseInStalemate) {
    StartAt("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    const Thought thought = Think(8);
    EXPECT_EQ(thought.move, "none");
    EXPECT_EQ(thought.score, UNSEARCHED_EVAL);
}

} // namespace
