// Tests of the transposition tables, and of the exact results of searches.
#include "cases.h"
#include "support.h"

#include "board/score.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/portable.h"
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
constexpr std::uint64_t OTHER_KEY = KEY ^ (std::uint64_t{1} << 60); // uses KEY's table slot

// Probes the tables for a key. Returns the score and the index of the best move.
std::pair<std::int32_t, std::int32_t> Ask(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                                          std::int32_t depth) {
    std::int32_t index;
    const std::int32_t score = ProbeHashTable(key, alpha, beta, depth, index);
    return {score, index};
}

// Each test starts with empty tables, ten plies into a game.
struct Hash : testing::Test {
    void SetUp() override {
        NewHashTable();
        game_state.ply_count = 10;
    }
    void TearDown() override { game_state.ply_count = 0; }
};

TEST_F(Hash, DeeperEntryOfAnotherPositionStaysForFourPlies) {
    StoreHashTable(KEY, 50, 40, BOUND_EXACT, 7);
    StoreHashTable(KEY, 1, 8, BOUND_UPPER, 3);
    game_state.ply_count = 14;
    StoreHashTable(OTHER_KEY, 2, 8, BOUND_EXACT, 4);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (std::pair{50, 7}));
    EXPECT_EQ(Ask(OTHER_KEY, 0, 1, 8), (std::pair{2, 4}));
    game_state.ply_count = 15;
    StoreHashTable(KEY, 1, 8, BOUND_UPPER, 3); // must not replace the deeper entry of KEY
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (std::pair{50, 7}));
    StoreHashTable(OTHER_KEY, 2, 8, BOUND_EXACT, 4);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (std::pair{UNKNOWN_EVAL, -1}));
}

TEST_F(Hash, ForcedScoreIsExactInBothTables) {
    StoreHashTable(KEY, 50, 40, BOUND_LOWER, 7);
    StoreHashTable(KEY, 30, 8, BOUND_UPPER, 3);
    ForceHashTable(KEY, 0);
    EXPECT_EQ(Ask(KEY, 100, 200, 40), (std::pair{0, 7}));
    // Neither entry is deep enough for a probe at depth 41, so no score is returned. The move comes
    // from the shallower entry, which has depth 8.
    EXPECT_EQ(Ask(KEY, 100, 200, 41), (std::pair{UNKNOWN_EVAL, 3}));
    StoreHashTable(OTHER_KEY, 60, 8, BOUND_LOWER, 5);
    ForceHashTable(OTHER_KEY, 0);
    EXPECT_EQ(Ask(OTHER_KEY, 100, 200, 8), (std::pair{0, 5}));
}

TEST_F(Hash, ForcedScoreIsOfOnePositionOnly) {
    StoreHashTable(KEY, 50, 40, BOUND_EXACT, 7);
    StoreHashTable(OTHER_KEY, 60, 8, BOUND_EXACT, 5);
    ForceHashTable(KEY, 0);
    EXPECT_EQ(Ask(OTHER_KEY, 0, 1, 8), (std::pair{60, 5}));
    ForceHashTable(KEY + (std::uint64_t{1} << 61), 1);
    EXPECT_EQ(Ask(KEY, 0, 1, 40), (std::pair{0, 7}));
}

// The result of a search. `lines` contains a text line for each reported variation: depth, score,
// nodes and moves.
struct Thought {
    std::string move, reply; // in coordinate notation, or "none"
    std::int32_t score;
    std::int32_t depth = 0;  // depth of the last report, in plies
    std::uint64_t nodes = 0; // node count at the last report
    std::string lines;
};
Thought thought;

void NoteLine(const SearchLine& line) {
    thought.depth = line.plies;
    thought.nodes = search_info.nodes;
    std::ostringstream text;
    text << line.plies << ' ' << line.score << ' ' << search_info.nodes;
    std::int32_t ply = game_state.ply_count + pgn_game_info.first_ply;
    for (const Move& move : PlayablePart(line.moves)) {
        const bool is_white = ply % 2 != 0;
        if (is_white || &move == line.moves.data()) text << ' ' << WrittenMoveNumber(ply);
        text << ' ' << WrittenMove(move);
        ++ply;
    }
    thought.lines += text.str() + "\n";
}

// Searches within the limits and stores the results in `thought`.
void Think(const SearchLimits& limits, SearchHost host = {}) {
    thought = {};
    host.tell_line = NoteLine;
    const SearchHost before = std::exchange(search_host, host);
    Move move, reply;
    thought.score = FindBestMove(&move, &reply, LastMove(), limits);
    search_host = before;
    thought.move = move.from < 0 ? "none" : WrittenMove(move);
    thought.reply = reply.from < 0 ? "none" : WrittenMove(reply);
}

std::string Think(std::int32_t plies, bool is_random = false) {
    engine_state.use_random = is_random;
    Think({.depth = Plies(plies), .clock = {}});
    return thought.move;
}

void CheckReference(const Reference& test) {
    StartAt(test.fen);
    std::string text;
    while (text.size() < test.text.size()) {
        const std::string played = Think(test.plies);
        text += thought.lines + "move " + played + "\n";
        Move move;
        if (!FindLegalMove(played, move)) break;
        PlayMove(move);
    }
    EXPECT_EQ(text, test.text);
}

const std::vector<Reference> REFERENCES = ReadReferences();
const bool ARE_REFERENCES_REGISTERED =
    RegisterCases<Reference>("Search/Lines", REFERENCES, CheckReference);

void CheckChoice(const TextCase& test) {
    const std::int32_t plies_before = std::stoi(test.fields[3]);
    std::set<std::string> seen;
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        StartAt(test.fields[0]);
        if (plies_before > 0) Think(plies_before);
        SeedRandom(seed * 997);
        seen.insert(Think(3, true));
    }
    std::istringstream moves(test.fields[1]);
    EXPECT_EQ(seen, std::set<std::string>(std::istream_iterator<std::string>(moves), {}));
    EXPECT_EQ(Think(3), test.fields[2]);
}

// Fields: a FEN; moves; a depth in plies; names and values of results. "!2" means any value except
// 2.
void CheckResult(const TextCase& test) {
    StartAt(test.fields[0]);
    Play(test.fields[1]);
    Think(std::stoi(test.fields[2]));
    std::ostringstream results;
    results << " move " << thought.move << " reply " << thought.reply << " score " << thought.score
            << " depth " << thought.depth << " nodes " << thought.nodes << ' ';
    std::istringstream words(test.fields[3]);
    for (std::string name, value; words >> name >> value;) {
        const bool is_other = value.front() == '!';
        const std::string result = " " + name + " " + value.substr(is_other) + " ";
        EXPECT_EQ(results.str().find(result) == std::string::npos, is_other) << results.str();
    }
}

const bool HAS_SEARCH_CASES[] = {RegisterFile("Search/Draws", "draws.txt", CheckResult),
                                 RegisterFile("Search/Results", "results.txt", CheckResult),
                                 RegisterFile("Search/Chooses", "choices.txt", CheckChoice)};

// At depth 3 two moves score 127 centipawns. The second score is only a bound, so the search
// reduces it to 77. At depth 4 the first move scores 0, and the host then ends the search. The
// second move is now the best.
TEST(Search, TakesFiftyCentipawnsOffABound) {
    StartAt("8/4k3/2P5/8/8/2K5/8/8 w - - 0 1");
    const SearchHost host = {.may_go_on = [](const Move&) {
        return analyze_info.depth < 4 || analyze_info.moves_left == analyze_info.moves_total - 1;
    }};
    engine_state.use_random = 0;
    Think({.depth = Plies(4), .clock = {}}, host);
    EXPECT_EQ(thought.score, 127 - 50);
    EXPECT_EQ(thought.move, "c3b4");
}

// The search of a root move can exceed the node limit, because its last quiescence search runs to
// the end. Once the limit is reached, the search must not begin another root move.
TEST(Search, KeepsToItsLimitOfNodes) {
    static std::int32_t begun_too_late;
    begun_too_late = 0;
    const SearchHost host = {.may_go_on = [](const Move&) {
        begun_too_late += search_info.nodes >= search_info.node_limit;
        return true;
    }};
    StartAt("startpos");
    for (std::uint64_t limit = 1; limit <= 200; ++limit) {
        Think({.depth = Plies(3), .clock = {}, .nodes = limit}, host);
    }
    EXPECT_EQ(begun_too_late, 0);
    Think({.depth = 200, .clock = {}, .nodes = 100'000});
    EXPECT_GE(search_info.nodes, 100'000u);
    EXPECT_LE(search_info.nodes, 110'000u);
}

// The host stops the search in its first root move. Unless the limits are strict, the quiescence
// search of one more leaf still runs and stores table entries. These entries change the node count
// of the next search.
TEST(Search, FinishesAQuiescenceSearchUnlessItsLimitsAreStrict) {
    const std::int32_t size = engine_state.hash_size;
    static int polls;
    ResizeHashTable(1);
    std::string nodes;
    for (const bool is_strict : {false, true}) {
        StartAt("1r1q1bn1/2p3p1/1Pk2p1r/R2pp2p/1BP2P1P/1P2PN2/4KQb1/1N5R w - - 0 24");
        polls = 0;
        engine_state.use_random = 0;
        Think({.depth = Plies(7), .clock = {}, .is_strict = is_strict},
              {.must_stop = [] { return ++polls == 2; }});
        Play(thought.move);
        Think(3);
        nodes += std::to_string(thought.nodes) + " ";
    }
    ResizeHashTable(size);
    EXPECT_EQ(nodes, "2336 2388 ");
}

// The engine chooses at random between two promotions with equal scores, to a rook and to a queen.
// The reply must capture the piece that was chosen.
TEST(Search, ExpectsAReplyToWhatItPromotesTo) {
    StartAt("6k1/8/8/8/8/6P1/1p3PK1/N2Q4 b - - 0 1");
    engine_state.use_random = true;
    Move moves[2], move, reply;
    ASSERT_TRUE(ParseMove("b2a1r", moves[0]) && ParseMove("b2a1q", moves[1]));
    SearchLimits limits{.depth = Plies(3), .clock = {}, .moves = std::span(moves).first(1)};
    FindBestMove(nullptr, nullptr, LastMove(), limits); // stores the score of b2a1r in the tables
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
