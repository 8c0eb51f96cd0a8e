// Tests of FEN, move notation, the end of the game, and the history.
#include "cases.h"
#include "consistency.h"
#include "support.h"

#include "board/score.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/fen.h"
#include "notation/notation.h"
#include "notation/typed.h"
#include "play/newgame.h"
#include "play/turns.h"

namespace {

// Fields: a FEN; moves; the FEN after the moves.
void CheckFen(const TextCase& test) {
    StartAt(test.fields[0]);
    Play(test.fields[1]);
    EXPECT_EQ(GetBoardFen(), test.fields[2]);
}

// Fields: a bad FEN; the reason for its refusal. The position must not change.
void CheckRefusal(const TextCase& test) {
    StartAt("r3k2r/8/8/8/4P3/8/8/R3K2R b KQkq e3 0 5");
    Play("e8g8 e1e2");
    const std::string fen = GetBoardFen();
    const Position before = board;
    EXPECT_STREQ(FindFenFault(test.fields[0]), test.fields[1].c_str());
    EXPECT_FALSE(SetBoardFen(test.fields[0]));
    EXPECT_EQ(GetBoardFen(), fen);
    EXPECT_TRUE(board == before);
}

// Fields: a FEN; a move as text; the move in coordinate notation, or "none".
void CheckToken(const TextCase& test) {
    StartAt(test.fields[0]);
    Move move;
    EXPECT_EQ(ParseMove(test.fields[1], move) ? WrittenMove(move) : std::string("none"),
              test.fields[2]);
}

void CheckTyped(const TextCase& test) {
    StartAt(test.fields[0]);
    std::string meant;
    for (const Move& move : FindTypedMoves(test.fields[1])) {
        meant += std::string(meant.empty() ? "" : " ") + WrittenMove(move);
    }
    EXPECT_EQ(meant, test.fields[2]);
}

void CheckRefused(const TextCase& test) {
    StartAt(test.fields[0]);
    EXPECT_TRUE(FindTypedMoves(test.fields[1]).empty());
    EXPECT_EQ(WrittenRefusal(test.fields[1]), test.fields[2]);
}

// Fields: a FEN; a move in coordinate notation; the same move in SAN.
void CheckWritten(const TextCase& test) {
    StartAt(test.fields[0]);
    Move move;
    ASSERT_TRUE(ParseMove(test.fields[1], move));
    EXPECT_EQ(WrittenCoordinates(move), test.fields[1]);
    EXPECT_EQ(WrittenSan(move), test.fields[2]);
}

// Fields: a FEN; moves; the line that is printed if the moves end the game, otherwise nothing.
void CheckEnding(const TextCase& test) {
    StartAt(test.fields[0]);
    Play(test.fields[1]);
    testing::internal::CaptureStdout();
    CheckEndOfGame(LastMove());
    const std::string& wanted = test.fields[2];
    EXPECT_EQ(testing::internal::GetCapturedStdout(), wanted.empty() ? "" : wanted + "\n");
    EXPECT_EQ(game_state.game_over, !wanted.empty());
}

// Fields: a FEN in which black can only move the king; the number of the first move at which white
// has 30 seconds left; the number of the move at which black must resign, or 0 if black must not
// resign. The engine plays black. It resigns only if white has at least 30 seconds left.
void CheckResignation(const TextCase& test) {
    StartAt(test.fields[0]);
    engine_state.depth_limit = Plies(3);
    engine_state.ponder = engine_state.use_random = 0;
    int resigned_at = 0;
    for (int move = 1; move <= 8 && resigned_at == 0; ++move) {
        game_state.opponent_time = move < std::stoi(test.fields[1]) ? 2999 : 3000;
        testing::internal::CaptureStdout();
        MakeEngineMove();
        const std::string output = testing::internal::GetCapturedStdout();
        if (output.find("resign") != std::string::npos) resigned_at = move;
        Play(move < 8 ? "K" + std::string(1, static_cast<char>('a' + move)) + "1" : "Kg1");
    }
    EXPECT_EQ(resigned_at, std::stoi(test.fields[2]));
}

const bool HAS_GAME_CASES[] = {
    RegisterFile("Fen/Reads", "fen.txt", CheckFen),
    RegisterFile("Fen/Refuses", "badfen.txt", CheckRefusal),
    RegisterFile("Notation/Reads", "tokens.txt", CheckToken),
    RegisterFile("Notation/Typed", "typed.txt", CheckTyped),
    RegisterFile("Notation/Refused", "refused.txt", CheckRefused),
    RegisterFile("Notation/Writes", "written.txt", CheckWritten),
    RegisterFile("Finish/Ends", "endings.txt", CheckEnding),
    RegisterFile("Finish/Resigns", "resignations.txt", CheckResignation)};

// Different positions with the same hash key must not count as a repetition.
TEST(Finish, RepetitionLooksAtTheBoards) {
    StartAt("4k3/8/8/8/8/8/8/4K2R w - - 0 1");
    Play("Rh2 Kd8 Rh3 Kd7 Rh4 Kd6");
    for (int ply = 0; ply < 6; ++ply) {
        zobrist_keys[ply] = board.zobrist_key;
    }
    EXPECT_FALSE(IsNfoldRepetition(2));
}

TEST(Finish, MateScores) {
    EXPECT_TRUE(IsMateEval(MATE_EVAL_THRESHOLD + 1) && IsMateEval(-MATE_EVAL_THRESHOLD - 1));
    EXPECT_FALSE(IsMateEval(MATE_EVAL_THRESHOLD) || IsMateEval(-MATE_EVAL_THRESHOLD));
}

// The hash key after some moves must equal the key of the same position set up from its FEN.
TEST(Fen, GivesTheKeyThatMovesGive) {
    for (const char* const moves :
         {"", "e4 a6", "Nf3 Nf6 Rg1 d6", "e4", "e3 a5 Ke2 Ra6", "Na3 h5 Rb1 Rh6", "e4 a6 e5 d5"}) {
        StartAt("startpos");
        Play(moves);
        const std::uint64_t key = board.zobrist_key;
        StartAt(GetBoardFen());
        EXPECT_EQ(board.zobrist_key, key) << moves;
    }
}

TEST(History, FillsAndEmpties) {
    const std::string fen = "4k3/8/8/8/8/8/8/4K2R w - - 0 1";
    StartAt(fen);
    const std::uint64_t clock = game_state.engine_time;
    const char* const moves[] = {"e1e2", "e8e7", "e2e1", "e7e8"};
    Move move;
    for (int i = 0; FindLegalMove(moves[i % 4], move); ++i) {
        PlayMove(move);
        game_state.engine_time = 100;
    }
    EXPECT_EQ(state_history.count + MAX_LINE_PLIES, MAX_PLY_NUMBER);
    while (game_state.ply_count > 0) {
        UndoMove();
    }
    EXPECT_EQ(GetBoardFen(), fen);
    EXPECT_EQ(game_state.engine_time, clock);
}

} // namespace
