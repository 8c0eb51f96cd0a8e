// Tests of MakeEngineMove: its effects on the records of the game and on the transposition tables.
#include "support.h"

#include "board/position.h"
#include "board/score.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/portable.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/hash.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int32_t KEPT_DEPTH = 2000; // in quarter-plies, greater than the depth of any search
constexpr std::int32_t KEPT_EVAL = 900'000;

// White can save the game only by perpetual check.
const char* const PERPETUAL = "6k1/6p1/8/7Q/8/8/qr6/7K w - - 0 1";

// Lets the engine move, and drops the output.
void MakeMoveSilently() {
    engine_state.ponder = 0;
    engine_state.depth_limit = Plies(4);
    testing::internal::CaptureStdout();
    MakeEngineMove();
    testing::internal::GetCapturedStdout();
    engine_state.ponder = 1;
}

// Plays the moves and lets the engine move. Returns true if the tables then contain a draw score
// for the position before the opponent's last move. Only existing entries get such a score, so the
// function first stores an entry for this position, with a bound that no search can use.
bool IsDrawForcedAfter(const char* fen, const char* moves) {
    StartAt(fen);
    Play(moves);
    const std::uint64_t key = zobrist_keys[board.zobrist_ply_number - 1];
    StoreHashTable(key, KEPT_EVAL, KEPT_DEPTH, BOUND_UPPER, NO_MOVE_INDEX);
    MakeMoveSilently();
    std::int32_t index = NO_MOVE_INDEX;
    return ProbeHashTable(key, -1, 1, KEPT_DEPTH, index) == 0;
}

TEST(Turns, RepetitionIsADrawInLaterSearches) {
    EXPECT_TRUE(IsDrawForcedAfter(PERPETUAL, "h5e8 g8h7 e8h5 h7g8"));
    EXPECT_EQ(board.zobrist_ply_number, 5);
    EXPECT_FALSE(IsDrawForcedAfter(PERPETUAL, "h5e8 g8h7")); // no position has occurred twice
    // The engine's only legal move repeats the position, but scores less than 0. MakeEngineMove
    // stores a draw score only after a move with a score of at least 0.
    EXPECT_FALSE(IsDrawForcedAfter("1r6/8/8/8/8/8/8/K6k w - - 0 1", "a1a2 h1h2 a2a1 h2h1"));
}

TEST(Turns, ColourIsKnownEvenWithoutAMove) {
    StartAt("k7/8/1K6/8/8/8/8/1R6 b - - 0 1");
    pgn_game_info.engine_color = WHITE;
    Play("a8b8");
    Play("b1b2");
    MakeMoveSilently();
    EXPECT_EQ(pgn_game_info.engine_color, BLACK);
    ASSERT_TRUE(SetBoardFen("k7/2Q5/1K6/8/8/8/8/8 b - - 0 1")); // black is stalemated
    pgn_game_info.engine_color = WHITE;
    MakeMoveSilently();
    EXPECT_EQ(pgn_game_info.engine_color, BLACK);
    EXPECT_EQ(game_state.ply_count, 0);
}

} // namespace
