// Tests of the strength levels: tactics, wins against a bare king, and the variety of the moves.
#include "cases.h"
#include "support.h"

#include "board/score.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/notation.h"
#include "play/strength.h"
#include "play/turns.h"
#include "search/hash.h"
#include "search/records.h"

#include <iterator>
#include <set>
#include <sstream>

namespace {

std::vector<std::int32_t> ToLevels(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::int32_t>(words), {}};
}

std::string MoveOfLevel(std::int32_t elo) {
    Move move, reply;
    FindMoveOfLevel(elo, move, reply, {.depth = Plies(20), .clock = {}});
    return WrittenMove(move);
}

void CheckSight(const TextCase& test) {
    constexpr int TRIES = 25;
    for (const std::int32_t elo : ToLevels(test.fields[1])) {
        StartAt(test.fields[0]);
        SeedRandom(static_cast<std::uint32_t>(elo));
        for (int i = 0; i < TRIES; ++i) {
            const std::string move = MoveOfLevel(elo);
            EXPECT_NE((" " + test.fields[2] + " ").find(" " + move + " "), std::string::npos)
                << elo << ": " << move;
        }
    }
}

// Fields: a FEN; levels. For each level, plays both sides at this level. The game must end in mate.
void CheckWin(const TextCase& test) {
    for (const std::int32_t elo : ToLevels(test.fields[1])) {
        StartAt(test.fields[0]);
        while (HasLegalMove(LastMove()) && !IsThreefoldRepetition() && !IsFiftyMoveRule()) {
            Move move;
            ASSERT_TRUE(FindLegalMove(MoveOfLevel(elo), move));
            PlayMove(move);
        }
        EXPECT_TRUE(IsMate(LastMove())) << elo << " after " << game_state.ply_count << " plies";
    }
}

const bool HAS_STRENGTH_CASES[] = {RegisterFile("Strength/Sees", "strength.txt", CheckSight),
                                   RegisterFile("Strength/Wins", "strength.txt", CheckWin)};

TEST(Strength, StrongLevelsLeaveNothingToChance) {
    std::uint64_t last_nodes = 0;
    for (const std::int32_t elo : {1800, 1850, 1900}) {
        std::string moves[2];
        for (std::string& move : moves) {
            StartAt(INITIAL_FEN);
            Play("e2e4 e7e5");
            engine_state.use_random = 0;
            move = MoveOfLevel(elo);
        }
        EXPECT_EQ(moves[0], moves[1]) << elo;
        EXPECT_GT(search_info.nodes, last_nodes);
        last_nodes = search_info.nodes;
    }
    engine_state.use_random = 1;
}

TEST(Strength, WeakLevelsKnowLittleOfTheBook) {
    EXPECT_EQ(BookPliesOfLevel(1000), 4);
    EXPECT_EQ(BookPliesOfLevel(1599), 9);
    EXPECT_GT(BookPliesOfLevel(1600), 100);
}

TEST(Strength, WeakLevelsVary) {
    std::set<std::string> moves;
    StartAt(INITIAL_FEN);
    SeedRandom(1);
    for (int i = 0; i < 40; ++i) {
        moves.insert(MoveOfLevel(1000));
    }
    EXPECT_GT(moves.size(), 3u);
}

} // namespace
