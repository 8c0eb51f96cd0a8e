// FEN, move notation, the end of the game, history.
#include "snapshot.h"
#include "support.h"

#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/notation.h"
#include "notation/pgninfo.h"
#include "notation/setboard.h"
#include "play/newgame.h"
#include "play/turns.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

// What the game says at its end: the line sent to the front end, or nothing.
std::string EndLine() {
    testing::internal::CaptureStdout();
    CheckEndOfGame(LastMove());
    return testing::internal::GetCapturedStdout();
}

// The text of the move that a token names, or "none".
std::string Read(const char* token) {
    Move move;
    return ParseMove(token, move) ? WrittenMove(move) : "none";
}

TEST(Fen, FieldsAndCounters) {
    struct Case {
        const char* fen;
        const char* written;
        int first_ply;
    };
    const Case cases[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 1},
        {"8/5k2/8/8/8/8/5K2/8 b - - 17 1", "8/5k2/8/8/8/8/5K2/8 b - - 17 1", 2},
        {"8/5k2/8/8/8/8/5K2/8 w - -", "8/5k2/8/8/8/8/5K2/8 w - - 0 1", 1},
        {"8/5k2/8/8/8/8/5K2/8 w - - 3 30", "8/5k2/8/8/8/8/5K2/8 w - - 3 30", 59},
        {"4k3/8/8/8/4P3/8/8/4K3 b - e3 0 9", "4k3/8/8/8/4P3/8/8/4K3 b - e3 0 9", 18},
        {"r3k2r/8/8/8/8/8/8/R3K3 w KQkq - 0 1", "r3k2r/8/8/8/8/8/8/R3K3 w Qkq - 0 1", 1},
    };
    for (const Case& test : cases) {
        StartAt(test.fen);
        EXPECT_STREQ(GetBoardFen(), test.written);
        EXPECT_EQ(pgn_game_info.first_ply, test.first_ply);
        EXPECT_EQ(zobrist_xor, 0u);
    }
    EXPECT_EQ(game_state.no_last_move, 1);
    Play("e1f1 e8e7");
    EXPECT_STREQ(GetBoardFen(), "r6r/4k3/8/8/8/8/8/R4K2 w - - 2 2");
}

// Refused, and nothing changed.
TEST(Fen, Refusals) {
    const char* const refused[] = {
        "", "8/8/8/8/8/8/8/8 w - - 0 1", "4k3/8/8/8/8/8/8/4K3", "4k3/8/8/8/8/8/8/4K3 x - - 0 1",
        "4k3/8/8/8/8/8/8/4K3 w KX - 0 1", "4k3/8/8/8/8/8/8/4K3 w KK - 0 1",
        "4k3/8/8/8/8/8/8/4K3 w - - x 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 -1",
        "4k3/8/8/8/8/8/8/4K2 w - - 0 1", "4k3/8/8/8/8/8/8/4K4 w - - 0 1",
        "4k3/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/4K3/8 w - - 0 1",
        "4k3/9/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/4K2x w - - 0 1",
        "4kk2/8/8/8/8/8/8/4K3 w - - 0 1", "8/8/8/8/8/8/8/4K3 w - - 0 1",
        "P3k3/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/p3K3 w - - 0 1",
        "4k3/8/8/8/8/8/8/4K2R w K e6 0 1", "4k3/8/8/8/4P3/8/8/4K3 w - e3 0 1",
        "4k3/8/8/8/8/8/8/4K3 b - e3 0 1", "4k3/8/8/8/4P3/8/4P3/4K3 b - e3 0 1",
        "4k3/8/8/8/4P3/4N3/8/4K3 b - e3 0 1", "4k3/8/8/8/8/8/8/4K2r w K - 0 1",
        "R3K3/8/8/8/8/8/8/4k3 w Q - 0 1",
        "4k3/8/8/8/8/8/8/K6R w Q - 0 1", // an unmoved king stands at home
        // the side to move could take the king: by each kind of piece
        "4k3/8/8/8/8/8/8/4K2q b - - 0 1", "4k3/8/8/8/8/8/4R3/4K3 w - - 0 1",
        "4k3/8/6B1/8/8/8/8/4K3 w - - 0 1", "4k3/8/3N4/8/8/8/8/4K3 w - - 0 1",
        "4k3/3P4/8/8/8/8/8/4K3 w - - 0 1", "4k3/4K3/8/8/8/8/8/8 w - - 0 1",
        "8/8/8/8/8/4k3/3p4/4K3 b - - 0 1"};
    StartAt("r3k2r/8/8/8/4P3/8/8/R3K2R b KQkq e3 0 5");
    Play("e8g8");
    const Snapshot before = TakeSnapshot();
    const GameState game_before = game_state;
    for (const char* fen : refused) {
        EXPECT_FALSE(SetBoardFen(fen)) << fen;
        EXPECT_TRUE(TakeSnapshot() == before) << fen;
        EXPECT_EQ(std::memcmp(&game_before, &game_state, sizeof game_state), 0) << fen;
    }
}

TEST(Notation, Reading) {
    struct Case {
        const char* fen;
        const char* token;
        const char* move;
    };
    const char* const start = INITIAL_FEN.c_str();
    const char* const promote = "8/4P3/8/8/8/8/k7/2K5 w - - 0 1";
    const char* const castle = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1";
    const char* const knights = "1n2k3/8/5n2/8/8/8/8/4K3 b - - 0 1";
    const char* const pinned = "1n1k4/8/5n2/8/7B/8/8/4K3 b - - 0 1";
    const char* const take = "4k3/8/5p2/3pP3/8/5p2/3N4/4K1N1 w - d6 0 1";
    const Case cases[] = {
        {start, "e2e4", "e2e4"},    {start, "e2e4+", "e2e4"},    {start, "e4", "e2e4"},
        {start, "e3", "e2e3"},      {start, "Nf3", "g1f3"},      {start, "Nf3!?", "g1f3"},
        {start, "Ng1f3", "g1f3"},   {start, "Nxf3", "none"},     {start, "e5", "none"},
        {start, "e2e5", "none"},    {start, "z1e4", "none"},     {start, "e9", "none"},
        {start, "N", "none"},       {start, "N3", "none"},       {start, "Nf", "none"},
        {start, "", "none"},        {start, "x", "none"},        {start, "exd", "none"},
        {start, "0-0", "none"},     {start, "O-O", "none"},      {start, "e1", "none"},
        {promote, "e7e8", "e7e8q"}, {promote, "e7e8N", "e7e8n"}, {promote, "e8=R", "e7e8r"},
        {promote, "e8=q", "e7e8q"}, {promote, "e8B", "e7e8q"},   {castle, "O-O", "e8g8"},
        {castle, "O-O#", "e8g8"},   {castle, "O-O-O+", "e8c8"},  {castle, "Kg8", "e8g8"},
        {knights, "Nbd7", "b8d7"},  {knights, "N8d7", "b8d7"},   {knights, "Nb8d7", "b8d7"},
        {knights, "N6d7", "f6d7"},  {pinned, "Nd7", "b8d7"},     {take, "exd6", "e5d6"},
        {take, "exf6", "e5f6"},     {take, "Nf3", "none"},       {take, "Ngxf3", "g1f3"},
        {take, "Ndxf3", "d2f3"},    {take, "Nxf3", "g1f3"},
    };
    for (const Case& test : cases) {
        StartAt(test.fen);
        EXPECT_EQ(Read(test.token), test.move) << test.token << " in " << test.fen;
    }
}

TEST(Notation, Writing) {
    struct Case {
        const char* fen;
        const char* move;
        const char* san;
    };
    const Case cases[] = {
        {INITIAL_FEN.c_str(), "g1f3", "Nf3"},
        {"4k3/8/8/8/8/8/8/1N1NK3 w - - 0 1", "b1c3", "Nbc3"},
        {"4k3/8/8/1N6/8/8/8/1N2K3 w - - 0 1", "b1c3", "N1c3"},
        {"8/8/8/7k/8/Q7/8/Q1Q1K3 w - - 0 1", "a1b2", "Qa1b2"},
        {"8/8/8/7k/8/Q1Q5/8/Q3K3 w - - 0 1", "a1b2", "Qa1b2"},
        {"3k4/8/4P3/3p4/8/8/8/K7 w - - 0 1", "e6e7", "e7+"},
        {"4k3/4p1pP/4P3/8/8/8/8/K7 w - - 0 1", "h7h8r", "h8=R#"},
        {"5rk1/4P3/8/8/8/8/8/K7 w - - 0 1", "e7f8n", "exf8=N"},
        {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", "O-O+"},
        {"3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1c1", "O-O-O+"},
        {"7k/8/8/3pP3/8/8/8/K7 w - d6 0 1", "e5d6", "exd6"},
    };
    for (const Case& test : cases) {
        StartAt(test.fen);
        Move move;
        ASSERT_TRUE(ParseMove(test.move, move)) << test.move;
        EXPECT_STREQ(WrittenMove(move), test.move);
        engine_state.san_notation = 1;
        EXPECT_STREQ(WrittenMove(move), test.san);
        engine_state.san_notation = 0;
    }
}

TEST(Finish, EndLines) {
    struct Case {
        const char* fen;
        const char* moves;
        const char* line;
    };
    const char* const start = INITIAL_FEN.c_str();
    const Case cases[] = {
        {start, "f3 e5 g4 Qh4", "0-1 {Black mates}\n"},
        {"6k1/5ppp/8/8/8/8/8/K2R4 w - - 0 1", "d1d8", "1-0 {White mates}\n"},
        {"k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", "c1c7", "1/2-1/2 {Stalemate}\n"},
        {start, "Nf3 Nf6 Ng1 Ng8", ""},
        {start, "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8", "1/2-1/2 {Threefold repetition}\n"},
        {"4k2r/8/8/8/8/8/8/R3K3 w - - 98 80", "a1a2", ""},
        {"4k2r/8/8/8/8/8/8/R3K3 w - - 99 80", "a1a2", "1/2-1/2 {Fifty move rule}\n"},
        {"4k3/8/8/8/8/8/8/3NK3 w - - 0 1", "", "1/2-1/2 {Insufficient material}\n"},
        {"4kb2/8/8/8/8/8/8/4K3 w - - 0 1", "", "1/2-1/2 {Insufficient material}\n"},
        {"4k3/8/8/8/8/8/8/4K2R w - - 0 1", "", ""},
        {"4k3/8/8/8/8/8/8/B1B1K3 w - - 0 1", "", "1/2-1/2 {Insufficient material}\n"},
        {"4k3/8/8/8/8/8/8/BB2K3 w - - 0 1", "", ""},
        {"4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1", "", "1/2-1/2 {Insufficient material}\n"},
        {"2b1k3/8/8/8/8/8/8/2B1K3 w - - 0 1", "", ""},
        {"4kn2/8/8/8/8/8/8/2N1K3 w - - 0 1", "", ""},
        {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "", ""},
    };
    for (const Case& test : cases) {
        StartAt(test.fen);
        Play(test.moves);
        EXPECT_EQ(EndLine(), test.line) << test.fen << " " << test.moves;
        EXPECT_EQ(game_state.game_over, test.line[0] != '\0');
    }
    for (const std::int32_t score : {MATE_EVAL_THRESHOLD, -MATE_EVAL_THRESHOLD}) {
        EXPECT_FALSE(IsMateEval(score));
        EXPECT_TRUE(IsMateEval(score + (score > 0 ? 1 : -1)));
    }
}

TEST(History, FillsAndEmpties) {
    StartAt("4k3/8/8/8/8/8/8/4K2R w - - 0 1");
    const GameState start = game_state;
    const char* const moves[] = {"e1e2", "e8e7", "e2e1", "e7e8"};
    for (int i = 0; PlayMove(moves[i % 4]); ++i) {
        game_state.engine_time = 100;
    }
    EXPECT_EQ(state_history.count + MAX_LINE_PLIES, MAX_PLY_NUMBER);
    while (game_state.ply_count > 0) {
        UndoMove();
    }
    EXPECT_STREQ(GetBoardFen(), "4k3/8/8/8/8/8/8/4K2R w - - 0 1");
    EXPECT_EQ(std::memcmp(&game_state, &start, sizeof start), 0); // the clocks too
}

} // namespace
