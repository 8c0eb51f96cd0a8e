// Time: the rules, and that a search keeps to them. Nothing here depends on how long anything
// takes.
#include "cases.h"
#include "support.h"

#include "game/enginestate.h"
#include "game/gamestate.h"
#include "protocol/interpreter.h"
#include "search/fsearch.h"
#include "search/records.h"
#include "search/rootsearch.h"
#include "search/timecontrol.h"

namespace {

struct LimitCase {
    const char* name;
    std::uint64_t clock, limit;
};
const LimitCase LIMITS[] = {{"OfAnHour", 360'000, 36'000},
                            {"OfAMinute", 6'000, 600},
                            {"BelowAMinute", 5'999, 399},
                            {"OfNothing", 0, 0},
                            {"WithoutAClock", UNKNOWN_CLOCK, UNKNOWN_CLOCK / 10}};
const bool ARE_LIMITS_REGISTERED =
    RegisterCases<LimitCase>("Time/Limit", LIMITS, [](const LimitCase& test) {
        EXPECT_EQ(TimeLimit(test.clock), test.limit);
    });

// Each case is the last that still fits, or the first that does not.
struct IterationCase {
    const char* name;
    TimeLeft left;
    std::uint64_t used, iteration_time;
    bool fits;
};
const IterationCase ITERATIONS[] = {
    {"FitsIntoTheClock", {1'200, 0}, 0, 10, true},
    {"DoesNotFitIntoTheClock", {1'200, 0}, 0, 11, false},
    {"FitsIntoWhatIsLeft", {1'200, 0}, 240, 8, true},
    {"DoesNotFitIntoWhatIsLeft", {1'200, 0}, 241, 8, false},
    {"MayBeLongerWithIncrement", {900, 1}, 0, 10, true},
    {"MayNotBeMuchLongerWithIncrement", {900, 1}, 1, 10, false},
    {"MaySpendIncrementsOfALongClock", {6'000, 300}, 0, 183, true},
    {"MayNotSpendMore", {6'000, 300}, 0, 184, false},
    {"MayNotSpendTheIncrementsOfAShortClock", {5'999, 299}, 0, 150, false},
    {"MayNotSpendIncrementsThatOutweighTheClock", {6'000, 301}, 0, 150, false},
    {"FitsAfterTheFirstOfALongClock", {6'000, 301}, 0, 66, true},
    {"FitsIntoHalfASecond", {50, 0}, 0, 0, true},
    {"LeavesTheLastHalfSecond", {49, 1'000}, 0, 0, false},
};
const bool ARE_ITERATIONS_REGISTERED =
    RegisterCases<IterationCase>("Time/Iteration", ITERATIONS, [](const IterationCase& test) {
        EXPECT_EQ(IsTimeForIteration(test.left, test.used, test.iteration_time), test.fits);
    });

// Searches without a word.
struct Time : testing::Test {
    void SetUp() override { engine_state.post_thinking = 0; }
    void TearDown() override { engine_state.post_thinking = 1; }
};

// A search that began long ago looks at the clock at its first node.
std::int32_t SearchPastItsTime(std::uint64_t time_limit) {
    StartAt(INITIAL_FEN);
    Play("e2e4");
    search_info = {};
    search_info.max_ply = 100;
    search_info.time_limit = time_limit;
    return FullSearch(-500, 500, 8, 4, LastMove(), nullptr, 0);
}

TEST_F(Time, StopsASearch) {
    EXPECT_EQ(SearchPastItsTime(0), STOPPED_EVAL);
    EXPECT_TRUE(search_info.stop);
    SearchPastItsTime(UNKNOWN_CLOCK);
    EXPECT_FALSE(search_info.stop);
}

TEST_F(Time, IsLookedAtAgainAndAgain) {
    StartAt(INITIAL_FEN);
    Play("e2e4");
    search_info = {};
    search_info.max_ply = 100;
    search_info.counted_from = search_info.node_counter = NODE_CHECK_INTERVAL;
    FullSearch(-500, 500, 24, 4, LastMove(), nullptr, 0); // the limit is 0, the clock is not
    EXPECT_TRUE(search_info.stop);
    EXPECT_GE(search_info.nodes, 10'000u);
    EXPECT_LT(search_info.nodes, 11'000u);
}

// Pondering and analysis have no clock, between iterations neither.
TEST_F(Time, DoesNotStopPonderingAndAnalysis) {
    for (std::uint8_t* const mode : {&engine_state.pondering, &engine_state.analyze_mode}) {
        StartAt(INITIAL_FEN);
        game_state.engine_time = 0;
        engine_state.depth_limit = 5 * QUARTER_PLIES;
        *mode = 1;
        FindBestMove(nullptr, nullptr, nullptr);
        *mode = 0;
        EXPECT_EQ(analyze_info.depth, 5);
    }
}

TEST_F(Time, LimitsASearchByTheClock) {
    StartAt(INITIAL_FEN);
    game_state.engine_time = 5'999;
    engine_state.depth_limit = 3 * QUARTER_PLIES;
    FindBestMove(nullptr, nullptr, nullptr);
    EXPECT_EQ(search_info.time_limit, 399u);
}

// With half a second or more the second iteration of so small a position fits into any clock.
TEST_F(Time, KeepsTheLastHalfSecond) {
    for (const std::uint64_t clock : {49, 100'000}) {
        StartAt("8/8/8/8/8/1k6/8/K6B w - - 0 1");
        game_state.engine_time = clock;
        FindBestMove(nullptr, nullptr, nullptr);
        EXPECT_EQ(analyze_info.depth > 3, clock > 49) << clock;
    }
}

struct ClockCase {
    const char* name;
    const char* line;
    std::uint64_t engine, opponent, increment;
};
const ClockCase CLOCKS[] = {
    {"Time", "time 30000", 30'000, UNKNOWN_CLOCK, 0},
    {"Otim", "otim 2999", UNKNOWN_CLOCK, 2'999, 0},
    {"Overdrawn", "time -1", ~std::uint64_t{0}, UNKNOWN_CLOCK, 0},
    {"Increment", "level 0 2:30 12", UNKNOWN_CLOCK, UNKNOWN_CLOCK, 1'200},
    {"NoIncrement", "level 40 5 0", UNKNOWN_CLOCK, UNKNOWN_CLOCK, 0},
    {"NegativeIncrement", "level 40 5 -3", UNKNOWN_CLOCK, UNKNOWN_CLOCK, 0},
    {"HugeIncrement", "level 40 5 2000000000", UNKNOWN_CLOCK, UNKNOWN_CLOCK, 1'000'000'000},
};
const bool ARE_CLOCKS_REGISTERED =
    RegisterCases<ClockCase>("Protocol/Clock", CLOCKS, [](const ClockCase& test) {
        StartAt(INITIAL_FEN);
        ParseCommand(test.line);
        EXPECT_EQ(game_state.engine_time, test.engine);
        EXPECT_EQ(game_state.opponent_time, test.opponent);
        EXPECT_EQ(game_state.time_increment, test.increment);
    });

} // namespace
