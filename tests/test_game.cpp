// FEN, move notation, the end of the game, history.
#include "cases.h"
#include "snapshot.h"
#include "support.h"

#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/notation.h"
#include "notation/setboard.h"
#include "play/newgame.h"
#include "play/turns.h"

namespace {

const char* const START = INITIAL_FEN.c_str();

// A position, what is given then, and the text that is wanted of it.
struct Case {
    const char* name;
    const char* fen;
    const char* given = "";
    const char* wanted = "";
};

// Moves played, and the FEN that is written.
const Case FENS[] = {
    {"FiftyMoveCount", "8/5k2/8/8/8/8/5K2/8 b - - 17 1", "", "8/5k2/8/8/8/8/5K2/8 b - - 17 1"},
    {"MissingCounters", "8/5k2/8/8/8/8/5K2/8 w - -", "", "8/5k2/8/8/8/8/5K2/8 w - - 0 1"},
    {"MoveNumberOfWhite", "8/5k2/8/8/8/8/5K2/8 w - - 3 30", "f2e2",
     "8/5k2/8/8/8/8/4K3/8 b - - 4 30"},
    {"MoveNumberOfBlack", "4k3/8/8/8/4P3/8/8/4K3 b - e3 0 9", "e8e7",
     "8/4k3/8/8/4P3/8/8/4K3 w - - 1 10"},
    {"EnPassantSquare", "4k3/8/8/8/4P3/8/8/4K3 b - e3 0 9", "", "4k3/8/8/8/4P3/8/8/4K3 b - e3 0 9"},
    {"CastlingOfAMissingRook", "r3k2r/8/8/8/8/8/8/R3K3 w KQkq - 0 1", "",
     "r3k2r/8/8/8/8/8/8/R3K3 w Qkq - 0 1"},
    {"CastlingLostByKingAndRook", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1f1 a8b8",
     "1r2k2r/8/8/8/8/8/8/R4K1R w k - 2 2"},
};

void CheckFen(const Case& test) {
    StartAt(test.fen);
    Play(test.given);
    EXPECT_STREQ(GetBoardFen(), test.wanted);
}

const bool ARE_FENS_REGISTERED = RegisterCases<Case>("Fen/Reads", FENS, CheckFen);

const Case BAD_FENS[] = {
    {"Nothing", ""},
    {"WrongSide", "4k3/8/8/8/8/8/8/4K3 x - - 0 1"},
    {"WrongCastlingLetter", "4k3/8/8/8/8/8/8/4K3 w KX - 0 1"},
    {"CastlingLetterTwice", "4k3/8/8/8/8/8/8/4K3 w KK - 0 1"},
    {"CastlingWithAnEnemyRook", "4k3/8/8/8/8/8/8/4K2r w K - 0 1"},
    {"CastlingKingInTheCorner", "R3K3/8/8/8/8/8/8/4k3 w Q - 0 1"},
    {"CastlingKingOnTheRooksSquare", "4k3/8/8/8/8/8/8/K6R w Q - 0 1"},
    {"WrongFiftyMoveCount", "4k3/8/8/8/8/8/8/4K3 w - - x 1"},
    {"WrongMoveNumber", "4k3/8/8/8/8/8/8/4K3 w - - 0 -1"},
    {"ShortRank", "4k3/8/8/8/8/8/8/4K2 w - - 0 1"},
    {"LongRank", "4k3/8/8/8/8/8/8/4K4 w - - 0 1"},
    {"MissingRank", "4k3/8/8/8/8/8/4K3 w - - 0 1"},
    {"RankTooMany", "4k3/8/8/8/8/8/8/4K3/8 w - - 0 1"},
    {"Nine", "4k3/9/8/8/8/8/8/4K3 w - - 0 1"},
    {"WrongPieceLetter", "4k3/8/8/8/8/8/8/4K2x w - - 0 1"},
    {"TwoKings", "4kk2/8/8/8/8/8/8/4K3 w - - 0 1"},
    {"NoKing", "8/8/8/8/8/8/8/4K3 w - - 0 1"},
    {"PawnOnTheLastRank", "P3k3/8/8/8/8/8/8/4K3 w - - 0 1"},
    {"PawnOnTheFirstRank", "4k3/8/8/8/8/8/8/p3K3 w - - 0 1"},
    {"EnPassantWithoutAPawn", "4k3/8/8/8/8/8/8/4K3 b - e3 0 1"},
    {"EnPassantOfTheSideToMove", "4k3/8/8/8/4P3/8/8/4K3 w - e3 0 1"},
    {"EnPassantFromATakenSquare", "4k3/8/8/8/4P3/8/4P3/4K3 b - e3 0 1"},
    {"EnPassantOverAPiece", "4k3/8/8/8/4P3/4N3/8/4K3 b - e3 0 1"},
    {"KingTakenByRook", "4k3/8/8/8/8/8/4R3/4K3 w - - 0 1"},
    {"KingTakenByBishop", "4k3/8/6B1/8/8/8/8/4K3 w - - 0 1"},
    {"KingTakenByKnight", "4k3/8/3N4/8/8/8/8/4K3 w - - 0 1"},
    {"KingTakenByWhitePawn", "4k3/3P4/8/8/8/8/8/4K3 w - - 0 1"},
    {"KingTakenByBlackPawn", "8/8/8/8/8/4k3/3p4/4K3 b - - 0 1"},
    {"KingTakenByKing", "4k3/4K3/8/8/8/8/8/8 w - - 0 1"},
};

// Refused, and nothing changed.
void CheckRefusal(const Case& test) {
    StartAt("r3k2r/8/8/8/4P3/8/8/R3K2R b KQkq e3 0 5");
    Play("e8g8 e1e2");
    const std::string fen = GetBoardFen();
    const Snapshot before = TakeSnapshot();
    EXPECT_FALSE(SetBoardFen(test.fen));
    EXPECT_EQ(GetBoardFen(), fen);
    EXPECT_TRUE(TakeSnapshot() == before);
}

const bool ARE_BAD_FENS_REGISTERED = RegisterCases<Case>("Fen/Refuses", BAD_FENS, CheckRefusal);

const char* const PROMOTE = "8/4P3/8/8/8/8/k7/2K5 w - - 0 1";
const char* const CASTLE = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1";
const char* const KNIGHTS = "1n2k3/8/5n2/8/8/8/8/4K3 b - - 0 1";
const char* const PINNED = "1n1k4/8/5n2/8/7B/8/8/4K3 b - - 0 1";
const char* const TAKE = "4k3/8/5p2/3pP3/8/5p2/3N4/4K1N1 w - d6 0 1";

// A token, and the move that it names in coordinate notation.
const Case TOKENS[] = {
    {"Coordinates", START, "e2e4", "e2e4"},
    {"CoordinatesWithCheck", START, "e2e4+", "e2e4"},
    {"CoordinatesOfNoMove", START, "e2e5", "none"},
    {"CoordinatesOffTheBoard", START, "z1e4", "none"},
    {"CoordinatesOfAPromotion", PROMOTE, "e7e8N", "e7e8n"},
    {"CoordinatesWithoutPromotion", PROMOTE, "e7e8", "e7e8q"},
    {"DoubleStep", START, "e4", "e2e4"},
    {"StepTooFar", START, "e5", "none"},
    {"StepBackwards", START, "e1", "none"},
    {"StepOffTheBoard", START, "e9", "none"},
    {"Knight", START, "Nf3", "g1f3"},
    {"KnightWithMarks", START, "Nf3!?", "g1f3"},
    {"KnightWithItsSquare", START, "Ng1f3", "g1f3"},
    {"CaptureOfNothing", START, "Nxf3", "none"},
    {"PieceAlone", START, "N", "none"},
    {"FileAlone", START, "Nf", "none"},
    {"PawnFilesAlone", START, "exd", "none"},
    {"Nothing", START, "", "none"},
    {"CastlingWithZeros", CASTLE, "0-0", "none"},
    {"CastlingToTheKingSide", CASTLE, "O-O#", "e8g8"},
    {"CastlingToTheQueenSide", CASTLE, "O-O-O+", "e8c8"},
    {"CastlingAsAKingMove", CASTLE, "Kg8", "e8g8"},
    {"Promotion", PROMOTE, "e8=R", "e7e8r"},
    {"PromotionInSmallLetters", PROMOTE, "e8=q", "e7e8q"},
    {"PromotionWithoutItsSign", PROMOTE, "e8B", "e7e8q"},
    {"ByItsFile", KNIGHTS, "Nbd7", "b8d7"},
    {"ByItsRank", KNIGHTS, "N8d7", "b8d7"},
    {"ByItsOtherRank", KNIGHTS, "N6d7", "f6d7"},
    {"TheOtherIsPinned", PINNED, "Nd7", "b8d7"},
    {"EnPassant", TAKE, "exd6", "e5d6"},
    {"PawnCapture", TAKE, "exf6", "e5f6"},
    {"CaptureWithoutItsSign", TAKE, "Nf3", "none"},
    {"CaptureByItsFile", TAKE, "Ndxf3", "d2f3"},
    {"AmbiguousCapture", TAKE, "Nxf3", "g1f3"},
};

void CheckToken(const Case& test) {
    StartAt(test.fen);
    Move move;
    EXPECT_EQ(ParseMove(test.given, move) ? WrittenMove(move) : std::string("none"), test.wanted);
}

const bool ARE_TOKENS_REGISTERED = RegisterCases<Case>("Notation/Reads", TOKENS, CheckToken);

// A move in coordinate notation and in SAN.
const Case WRITTEN_MOVES[] = {
    {"Piece", START, "g1f3", "Nf3"},
    {"ByItsFile", "4k3/8/8/8/8/8/8/1N1NK3 w - - 0 1", "b1c3", "Nbc3"},
    {"ByItsRank", "4k3/8/8/1N6/8/8/8/1N2K3 w - - 0 1", "b1c3", "N1c3"},
    {"ByItsSquare", "8/8/8/7k/8/Q7/8/Q1Q1K3 w - - 0 1", "a1b2", "Qa1b2"},
    {"ByItsSquareOfFour", "8/8/8/7k/8/Q1Q5/8/Q3K3 w - - 0 1", "a1b2", "Qa1b2"},
    {"Check", "3k4/8/4P3/3p4/8/8/8/K7 w - - 0 1", "e6e7", "e7+"},
    {"Mate", "4k3/4p1pP/4P3/8/8/8/8/K7 w - - 0 1", "h7h8r", "h8=R#"},
    {"CapturePromotion", "5rk1/4P3/8/8/8/8/8/K7 w - - 0 1", "e7f8n", "exf8=N"},
    {"CastlingToTheKingSide", "5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", "O-O+"},
    {"CastlingToTheQueenSide", "3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", "e1c1", "O-O-O+"},
    {"EnPassant", "7k/8/8/3pP3/8/8/8/K7 w - d6 0 1", "e5d6", "exd6"},
};

void CheckWritten(const Case& test) {
    StartAt(test.fen);
    Move move;
    ASSERT_TRUE(ParseMove(test.given, move));
    EXPECT_STREQ(WrittenMove(move), test.given);
    engine_state.san_notation = 1;
    EXPECT_STREQ(WrittenMove(move), test.wanted);
    engine_state.san_notation = 0;
}

const bool ARE_WRITTEN_MOVES_REGISTERED =
    RegisterCases<Case>("Notation/Writes", WRITTEN_MOVES, CheckWritten);

const char* const REPETITION = "1/2-1/2 {Threefold repetition}\n";
const char* const FIFTY_MOVES = "1/2-1/2 {Fifty move rule}\n";
const char* const TOO_LITTLE = "1/2-1/2 {Insufficient material}\n";
const char* const KING_TOURS = "Ke2 Ke7 Ke1 Ke8 Ke2 Ke7 Ke1 Ke8";
const char* const LONG_TOUR = "Ke2 Ke7 Ke1 Ke8 Rh2 Kd8 Rh3 Kc8 Rh4 Kb8 Rh5 Ka8 Rg5 Ka7 Rf5 Kb7 Re5 "
                              "Kc7 Rd5 Kc8 Rd4 Kb8 Rd3 Ka8 Re3 Ka7 Rf3 Kb7 Rg3 Kc7 Rg1 Kd8 Rh1 Ke8";
const char* const ROOKS = "4k2r/p7/8/8/8/8/P7/R3K3 w - - 98 80";

// Moves played, and what the game says at its end: the line sent to the front end, or nothing.
const Case ENDINGS[] = {
    {"BlackMates", START, "f3 e5 g4 Qh4", "0-1 {Black mates}\n"},
    {"WhiteMates", "6k1/5ppp/8/8/8/8/8/K2R4 w - - 0 1", "d1d8", "1-0 {White mates}\n"},
    {"MateBeforeFiftyMoves", "6k1/5ppp/8/8/8/8/8/K2R4 w - - 99 80", "d1d8", "1-0 {White mates}\n"},
    {"Stalemate", "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", "c1c7", "1/2-1/2 {Stalemate}\n"},
    {"SecondOccurrence", START, "Nf3 Nf6 Ng1 Ng8", ""},
    {"ThirdOccurrence", START, "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8", REPETITION},
    {"RepetitionOfLongAgo", "4k3/8/8/8/8/8/8/4K2R w - - 0 1", LONG_TOUR, REPETITION},
    {"RepetitionWithoutCastling", "4k2r/8/8/8/8/8/8/4K2R w Kk - 0 1", KING_TOURS, ""},
    {"RepetitionAfterEnPassantWasOver", "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1",
     "Ke7 Ke2 Ke8 Ke1 Ke7 Ke2 Ke8 Ke1", ""},
    {"RepetitionWhenNobodyTakesEnPassant", "4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1",
     "Ke7 Ke2 Ke8 Ke1 Ke7 Ke2 Ke8 Ke1", REPETITION},
    {"NinetyNinePlies", ROOKS, "a1b1", ""},
    {"FiftyMoves", ROOKS, "a1b1 h8g8", FIFTY_MOVES},
    {"FiftyMovesWithAPawn", ROOKS, "a1b1 a7a6 b1a1", ""},
    {"FiftyMovesWithACapture", "4k2r/7P/8/8/8/8/8/R3K3 w - - 98 80", "a1b1 h8h7 b1a1", ""},
    {"Knight", "4k3/8/8/8/8/8/8/3NK3 w - - 0 1", "", TOO_LITTLE},
    {"Bishop", "4kb2/8/8/8/8/8/8/4K3 w - - 0 1", "", TOO_LITTLE},
    {"Rook", "4k3/8/8/8/8/8/8/4K2R w - - 0 1", "", ""},
    {"Pawn", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "", ""},
    {"BishopsOfOneColour", "4k3/8/8/8/8/8/8/B1B1K3 w - - 0 1", "", TOO_LITTLE},
    {"BishopsOfBothColours", "4k3/8/8/8/8/8/8/BB2K3 w - - 0 1", "", ""},
    {"BishopsAgainstEachOther", "4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1", "", TOO_LITTLE},
    {"OppositeBishops", "2b1k3/8/8/8/8/8/8/2B1K3 w - - 0 1", "", ""},
    {"KnightsAgainstEachOther", "4kn2/8/8/8/8/8/8/2N1K3 w - - 0 1", "", ""},
};

void CheckEnding(const Case& test) {
    StartAt(test.fen);
    Play(test.given);
    testing::internal::CaptureStdout();
    CheckEndOfGame(LastMove());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), test.wanted);
    EXPECT_EQ(game_state.game_over, test.wanted[0] != '\0');
}

const bool ARE_ENDINGS_REGISTERED = RegisterCases<Case>("Finish/Ends", ENDINGS, CheckEnding);

// Keys may collide.
TEST(Finish, RepetitionLooksAtTheBoards) {
    StartAt("4k3/8/8/8/8/8/8/4K2R w - - 0 1");
    Play("Rh2 Kd8 Rh3 Kd7 Rh4 Kd6");
    for (int ply = 0; ply < 6; ++ply) {
        zobrist_keys[ply] = zobrist_key;
    }
    EXPECT_FALSE(IsNfoldRepetition(2));
}

TEST(Finish, MateScores) {
    EXPECT_TRUE(IsMateEval(MATE_EVAL_THRESHOLD + 1) && IsMateEval(-MATE_EVAL_THRESHOLD - 1));
    EXPECT_FALSE(IsMateEval(MATE_EVAL_THRESHOLD) || IsMateEval(-MATE_EVAL_THRESHOLD));
}

// The engine's move at which it resigns, or 0. Black has nothing but moves of its king behind a
// wall of pawns; from a move on white has enough time to win, before it has not.
struct Resignation {
    const char* name;
    const char* fen;
    int long_clock_from;
    int resigns_at;
};

const Resignation RESIGNATIONS[] = {
    {"AfterFiveHopelessMoves", "4k3/p1p1p1p1/P1P1P1P1/8/8/8/Q7/K7 b - - 0 1", 1, 5},
    {"NotWhileTheOpponentHasNoTime", "4k3/p1p1p1p1/P1P1P1P1/8/8/8/Q7/K7 b - - 0 1", 9, 0},
    {"CountsFromTheFirstHopelessMove", "4k3/p1p1p1p1/P1P1P1P1/8/8/8/Q7/K7 b - - 0 1", 4, 8},
    {"NotWhenLittleMaterialBehind", "4k3/p1pNp1p1/P1P1P1P1/8/8/1R6/8/K7 b - - 0 1", 1, 0},
    {"NotWhenThePawnsAreWorthLittle", "4k3/p1p1p1p1/P1P1P1P1/P1P1P1P1/8/R7/8/K7 b - - 0 1", 1, 0},
};

void CheckResignation(const Resignation& test) {
    StartAt(test.fen);
    engine_state.depth_limit = 3 * QUARTER_PLIES;
    engine_state.post_thinking = engine_state.ponder = engine_state.use_random = 0;
    int resigned_at = 0;
    for (int move = 1; move <= 8 && resigned_at == 0; ++move) {
        game_state.opponent_time = move < test.long_clock_from ? 2999 : 3000;
        testing::internal::CaptureStdout();
        MakeEngineMove();
        const std::string said = testing::internal::GetCapturedStdout();
        if (said.find("resign") != std::string::npos) resigned_at = move;
        Play(move < 8 ? "K" + std::string(1, static_cast<char>('a' + move)) + "1" : "Kg1");
    }
    EXPECT_EQ(resigned_at, test.resigns_at);
}

const bool ARE_RESIGNATIONS_REGISTERED =
    RegisterCases<Resignation>("Finish/Resigns", RESIGNATIONS, CheckResignation);

TEST(History, FillsAndEmpties) {
    const std::string fen = "4k3/8/8/8/8/8/8/4K2R w - - 0 1";
    StartAt(fen);
    const std::uint64_t clock = game_state.engine_time;
    const char* const moves[] = {"e1e2", "e8e7", "e2e1", "e7e8"};
    for (int i = 0; PlayMove(moves[i % 4]); ++i) {
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
