// Transposition tables, the searches, and the tree's exact shape.
#include "cases.h"
#include "support.h"

#include "board/score.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "play/turns.h"
#include "search/hash.h"
#include "search/records.h"
#include "search/rootsearch.h"

#include <iterator>
#include <set>
#include <sstream>
#include <utility>

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

// The widest values that a search stores, in each direction.
TEST_F(Hash, KeepsExtremeValues) {
    constexpr std::int32_t SCORE = 997'999, DEPTH = 2000, INDEX = 511, PLIES = 4095;
    game_state.ply_count = PLIES;
    StoreHashTable(KEY, SCORE, DEPTH, BOUND_LOWER, INDEX);
    StoreHashTable(KEY + 1, -SCORE, 0, BOUND_UPPER, NO_MOVE_INDEX);
    StoreHashTable(KEY + 2, -SCORE, 1, BOUND_EXACT, NO_MOVE_INDEX);
    EXPECT_EQ(Ask(KEY, -1, SCORE, DEPTH), (Probe{SCORE, INDEX}));
    EXPECT_EQ(Ask(KEY, -1, SCORE, DEPTH + 1), (Probe{UNKNOWN_EVAL, INDEX}));
    EXPECT_EQ(Ask(KEY + 1, -SCORE, 0, 0), (Probe{-SCORE, -1}));
    EXPECT_EQ(Ask(KEY + 2, 0, 1, 1), (Probe{-SCORE, -1}));
    StoreHashTable(OTHER_KEY, 1, 8, BOUND_EXACT, 0); // the deeper entry is of this ply
    EXPECT_EQ(Ask(KEY, -1, SCORE, DEPTH), (Probe{SCORE, INDEX}));
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
    engine_state.depth_limit = Plies(plies);
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

// Searches with another host, without output and randomness. Returns the score.
std::int32_t SearchWith(const SearchHost& host, const SearchLimits& limits, Move& move) {
    const SearchHost before = std::exchange(search_host, host);
    engine_state.use_random = 0;
    const std::int32_t score = FindBestMove(&move, nullptr, LastMove(), limits);
    search_host = before;
    return score;
}

std::string LastLine(const Thought& thought) {
    std::istringstream lines(thought.lines);
    std::string last;
    for (std::string line; std::getline(lines, line);) {
        last = line;
    }
    return last;
}

void CheckReference(const Reference& test) {
    StartAt(test.fen);
    std::string text;
    while (text.size() < test.text.size()) {
        const Thought thought = Think(test.plies);
        text += thought.lines + "move " + thought.move + "\n";
        Move move;
        if (!FindLegalMove(thought.move, move)) break;
        PlayMove(move);
    }
    EXPECT_EQ(text, test.text);
}

const std::vector<Reference> REFERENCES = ReadReferences();
const bool ARE_REFERENCES_REGISTERED =
    RegisterCases<Reference>("Search/Lines", REFERENCES, CheckReference);

// A position, a game, the move that draws, and whether it is the best one.
void CheckDraw(const TextCase& test) {
    StartAt(test.fields[0]);
    Play(test.fields[1]);
    const bool is_best = test.fields[3] == "best";
    const Thought thought = Think(4);
    EXPECT_EQ(thought.move == test.fields[2], is_best) << thought.move;
    EXPECT_EQ(thought.score == 0, is_best) << thought.score;
}

const bool ARE_DRAWS_REGISTERED = RegisterFile("Search/Draws", "draws.txt", CheckDraw);

void CheckChoice(const TextCase& test) {
    const std::int32_t plies_before = std::stoi(test.fields[3]);
    std::set<std::string> seen;
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        StartAt(test.fields[0]);
        if (plies_before > 0) Think(plies_before);
        SeedRandom(seed * 997);
        seen.insert(Think(3, true).move);
    }
    std::istringstream moves(test.fields[1]);
    EXPECT_EQ(seen, std::set<std::string>(std::istream_iterator<std::string>(moves), {}));
    EXPECT_EQ(Think(3).move, test.fields[2]);
}

const bool ARE_CHOICES_REGISTERED = RegisterFile("Search/Chooses", "choices.txt", CheckChoice);

TEST(Search, EndsWhenEveryOtherMoveIsMated) {
    StartAt("2rk4/8/3K4/1Q6/8/4p3/8/8 b - - 0 1");
    const Thought thought = Think(8);
    EXPECT_EQ(thought.move, "c8c7");
    EXPECT_EQ(thought.lines.find("\n4 "), std::string::npos);
}

// Two searches whose nodes were counted when they were known to do what is said.
TEST(Search, LeavesMatedMovesAlone) {
    StartAt("1k6/pp6/1P6/8/8/8/r4P2/3R2K1 b - - 0 1");
    EXPECT_EQ(LastLine(Think(5)), "5 79 18306 1... a7b6 2. d1c1 b8a7 3. f2f4 a7a6");
}

TEST(Search, SeesNoRepetitionBelowANullMove) {
    StartAt("5rk1/ppp2ppp/2n5/3p4/3P4/2N1N3/PPP2PPP/5RK1 w - - 0 1");
    Play("Rd1 Re8 Rf1 Rd8 Rd1 Re8 Rf1 Rd8 Re1 Rf8 Rf1 Rd8 Re1 Rf8 Rf1 Rd8 Rd1 Rf8 Re1 Rd8 Rf1 Rf8");
    EXPECT_EQ(LastLine(Think(6)),
              "6 351 118648 12. c3b5 f8d8 13. b5c7 c6d4 14. f1d1 d4e2 15. g1f1");
}

// At three plies two moves score 127, but the second score is only a bound. At four plies the first
// move scores 0, and the search ends before the second.
TEST(Search, TakesFiftyCentipawnsOffABound) {
    StartAt("8/4k3/2P5/8/8/2K5/8/8 w - - 0 1");
    const SearchHost host = {.may_go_on = [](const Move&) {
        return analyze_info.depth < 4 || analyze_info.moves_left == analyze_info.moves_total - 1;
    }};
    Move move;
    EXPECT_EQ(SearchWith(host, {.depth = Plies(4), .clock = {}}, move), 127 - 50);
    EXPECT_STREQ(WrittenMove(move), "c3b4");
}

// A quiescence search often passes the limit at the end of a root move.
TEST(Search, BeginsNoRootMoveAtItsLimitOfNodes) {
    static std::int32_t begun_too_late;
    begun_too_late = 0;
    const SearchHost host = {.may_go_on = [](const Move&) {
        begun_too_late += search_info.nodes >= search_info.node_limit;
        return true;
    }};
    StartAt("startpos");
    Move move;
    for (std::uint64_t limit = 1; limit <= 200; ++limit) {
        SearchWith(host, {.depth = Plies(3), .clock = {}, .nodes = limit}, move);
    }
    EXPECT_EQ(begun_too_late, 0);
}

TEST(Search, StopsNearItsLimitOfNodes) {
    StartAt("startpos");
    Move move;
    FindBestMove(&move, nullptr, LastMove(), {.depth = 200, .clock = {}, .nodes = 100'000});
    EXPECT_GE(search_info.nodes, 100'000u);
    EXPECT_LE(search_info.nodes, 110'000u);
}

// After a stop within the window of the first root move one leaf is still searched. The nodes of
// the next search depend on what its quiescence search leaves in the tables.
TEST(Search, FinishesAQuiescenceSearchUnlessItsLimitsAreStrict) {
    const std::int32_t size = engine_state.hash_size;
    static int polls;
    ResizeHashTable(1);
    std::string nodes;
    for (const bool is_strict : {false, true}) {
        StartAt("1r1q1bn1/2p3p1/1Pk2p1r/R2pp2p/1BP2P1P/1P2PN2/4KQb1/1N5R w - - 0 24");
        polls = 0;
        Move move;
        SearchWith({.must_stop = [] { return ++polls == 2; }},
                   {.depth = Plies(7), .clock = {}, .is_strict = is_strict}, move);
        Play(WrittenMove(move));
        nodes += Think(3).lines;
    }
    ResizeHashTable(size);
    EXPECT_EQ(nodes,
              "3 -218 2336 24... f8b4 25. a5d5 d8e7\n3 -218 2388 24... f8b4 25. a5d5 d8e7\n");
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

TEST(Search, ExpectsTheLastMoveOfItsLine) {
    StartAt("7K/8/8/8/3k4/3P4/8/8 w - - 0 1");
    EXPECT_EQ(Think(3).reply, "d4d3"); // takes the last pawn
}

TEST(Search, HasNothingToChooseInStalemate) {
    StartAt("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    const Thought thought = Think(8);
    EXPECT_EQ(thought.move, "none");
    EXPECT_EQ(thought.score, UNSEARCHED_EVAL);
}

// Of promotions that come to the same any may be chosen. The reply takes what stands there then.
TEST(Search, ExpectsAReplyToWhatItPromotesTo) {
    StartAt("6k1/8/8/8/8/6P1/1p3PK1/N2Q4 b - - 0 1");
    engine_state.use_random = true;
    Move moves[2], move, reply;
    ASSERT_TRUE(ParseMove("b2a1r", moves[0]) && ParseMove("b2a1q", moves[1]));
    SearchLimits limits{.depth = Plies(3), .clock = {}, .moves = std::span(moves).first(1)};
    FindBestMove(nullptr, nullptr, LastMove(), limits); // its score is in the tables now
    limits.moves = moves;
    bool is_rook = false;
    for (std::uint32_t seed = 1; !is_rook && seed <= 20; ++seed) {
        SeedRandom(seed);
        FindBestMove(&move, &reply, LastMove(), limits);
        is_rook = move.promoted == moves[0].promoted;
    }
    ASSERT_TRUE(is_rook);
    MakeMove(move);
    EXPECT_STREQ(WrittenMove(reply), "d1a1");
    EXPECT_EQ(reply.captured, board.position[reply.to]);
}

} // namespace
