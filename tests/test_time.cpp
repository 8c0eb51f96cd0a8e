// Tests of the rules that allot time to a search, and of searches that must obey these rules. No
// test depends on the speed of the machine.
#include "cases.h"
#include "support.h"

#include "board/score.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "platform/system.h"
#include "protocol/interpreter.h"
#include "search/fsearch.h"
#include "search/records.h"
#include "search/rootsearch.h"
#include "search/timecontrol.h"

#include <chrono>
#include <sstream>

namespace {

std::uint64_t ToNumber(const std::string& text) { return std::stoull(text); }

void CheckLimit(const TextCase& test) {
    EXPECT_EQ(TimeLimit(ToNumber(test.fields[0])), ToNumber(test.fields[1]));
}

void CheckIteration(const TextCase& test) {
    std::istringstream words(test.fields[0] + " " + test.fields[1]);
    TimeLeft left;
    std::uint64_t used = 0, iteration_time = 0;
    words >> left.clock >> left.increment >> used >> iteration_time;
    EXPECT_EQ(IsTimeForIteration(left, used, iteration_time), test.fields[2] == "fits");
}

const bool ARE_RULES_REGISTERED[] = {RegisterFile("Time/Limit", "time.txt", CheckLimit),
                                     RegisterFile("Time/Iteration", "time.txt", CheckIteration)};

// Runs a search that polls the clock at its first node. Its start time is 0, so the time used is
// the value of the system clock, which exceeds every limit except UNKNOWN_CLOCK.
std::int32_t SearchPastItsTime(std::uint64_t time_limit) {
    StartAt(INITIAL_FEN);
    Play("e2e4");
    search_info = {};
    search_info.max_ply = 100;
    search_info.time_limit = time_limit;
    return FullSearch(-500, 500, 8, 4, LastMove(), nullptr, 0);
}

// SystemTime must read the steady clock, so that setting the machine's clock has no effect on
// searches.
TEST(Time, IsThatOfTheSteadyClock) {
    const auto now = [] {
        using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
        const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<Ticks>(since_start).count();
    };
    const std::uint64_t before = now(), time = SystemTime(), after = now();
    EXPECT_TRUE(before <= time && time <= after) << before << ' ' << time << ' ' << after;
}

TEST(Time, StopsASearch) {
    EXPECT_EQ(SearchPastItsTime(0), STOPPED_EVAL);
    EXPECT_TRUE(search_info.stop);
    SearchPastItsTime(UNKNOWN_CLOCK);
    EXPECT_FALSE(search_info.stop);
}

TEST(Time, IsPolledAgainAndAgain) {
    StartAt(INITIAL_FEN);
    Play("e2e4");
    search_info = {};
    search_info.max_ply = 100;
    search_info.next_poll = NODE_CHECK_INTERVAL;
    // The time limit is 0, so the first poll of the clock, after 10,000 nodes, stops the search.
    FullSearch(-500, 500, 24, 4, LastMove(), nullptr, 0);
    EXPECT_TRUE(search_info.stop);
    EXPECT_GE(search_info.nodes, 10'000u);
    EXPECT_LT(search_info.nodes, 11'000u);
}

// With no time on the clock, pondering and analysis still search to the depth limit.
TEST(Time, DoesNotStopPonderingAndAnalysis) {
    for (std::uint8_t* const mode : {&engine_state.pondering, &engine_state.analyze_mode}) {
        StartAt(INITIAL_FEN);
        game_state.engine_time = 0;
        engine_state.depth_limit = Plies(5);
        *mode = 1;
        FindBestMove(nullptr, nullptr, nullptr);
        *mode = 0;
        EXPECT_EQ(analyze_info.depth, 5);
    }
}

TEST(Time, LimitsASearchByTheClock) {
    StartAt(INITIAL_FEN);
    game_state.engine_time = 5'999;
    engine_state.depth_limit = Plies(3);
    FindBestMove(nullptr, nullptr, nullptr);
    EXPECT_EQ(search_info.time_limit, 399u);
}

// With less than half a second left, the search ends after its first iteration, which has depth 3.
// Without a clock, the search goes deeper.
TEST(Time, KeepsTheLastHalfSecond) {
    for (const std::uint64_t clock : {std::uint64_t{49}, UNKNOWN_CLOCK}) {
        StartAt("8/8/8/8/8/1k6/8/K6B w - - 0 1");
        game_state.engine_time = clock;
        FindBestMove(nullptr, nullptr, nullptr);
        EXPECT_EQ(analyze_info.depth > 3, clock > 49) << clock;
    }
}

void CheckClock(const TextCase& test) {
    StartAt(INITIAL_FEN);
    ParseCommand(test.fields[0].c_str());
    EXPECT_EQ(std::to_string(game_state.engine_time) + " " +
                  std::to_string(game_state.opponent_time) + " " +
                  std::to_string(game_state.time_increment),
              test.fields[1]);
}

const bool ARE_CLOCKS_REGISTERED = RegisterFile("Protocol/Clock", "clocks.txt", CheckClock);

} // namespace
