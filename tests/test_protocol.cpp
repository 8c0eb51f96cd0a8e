// The engine as a front end meets it: commands in, answers and logs out.
#include "cases.h"
#include "engine_process.h"
#include "support.h"

#include <regex>
#include <sys/resource.h>

namespace {

const std::string LONGEST(4095, 'x'); // that is heard as one line

std::string EveryByte() {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\n') bytes += static_cast<char>(byte);
    }
    return bytes;
}

// A log without what differs from run to run.
std::string ReadLog(const EngineProcess& engine, const std::string& name) {
    const std::regex date("[0-9]{4}(\\.[0-9]{2}){2}"), time("[0-9]{2}(:[0-9]{2}){2}");
    return std::regex_replace(std::regex_replace(ReadFile(engine, name), date, "D"), time, "T");
}

// Every move in coordinates stands as "move", the longest line as "LONGEST".
std::string Simplify(std::string answer) {
    const std::size_t place = answer.find(LONGEST);
    if (place != std::string::npos) answer.replace(place, LONGEST.size(), "LONGEST");
    return std::regex_replace(answer, std::regex(MOVE), "move");
}

// A fresh engine that does not ponder answers.
void CheckAnswer(const Exchange& test) {
    EngineProcess engine;
    EXPECT_EQ(Simplify(Ask(engine, "easy\nnopost\n" + test.lines)), test.answer);
}

const std::string FIFTY_MOVES = "1/2-1/2 {Fifty move rule}\n";
const std::string SET = "force\nsetboard ";
const Exchange ILLEGAL_MOVES[] = {
    {"AtTheStart", "force" + Game("e7e5 O-O Kxx e4 e4"),
     "Illegal move: e7e5\nIllegal move: O-O\nIllegal move: Kxx\nIllegal move: e4\n"},
    {"CastlingThroughCheck", SET + "5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1" + Game("e1g1 O-O-O"),
     "Illegal move: e1g1\n"},
    {"Pinned", SET + "4r1k1/8/8/8/8/8/4B3/4K3 w - - 0 1" + Game("e2d3"), "Illegal move: e2d3\n"},
    {"NoMove", "usermovee7\rx\r\nusermove", "Illegal move: e7\nIllegal move: \n"},
    {"LongMove", "usermove " + LONGEST, "Illegal move: " + LONGEST.substr(0, 31) + "\n"},
};
const bool HAS_MOVES = RegisterCases<Exchange>("Protocol/IllegalMoves", ILLEGAL_MOVES, CheckAnswer);

const std::string ROOK = SET + "4k3/8/8/8/8/8/P7/R3K3 w - - 98 80";
const std::string FOOLS_MATE = "force" + Game("f3 e5 g4 Qh4");
const Exchange CLAIMS[] = {
    {"WhiteMates", "force" + Game("e4 e5 Bc4 a6 Qf3 a5 Qxf7"), "1-0 {White mates}\n"},
    {"BlackMates", FOOLS_MATE + Game("a3"), "0-1 {Black mates}\nIllegal move: a3\n"},
    {"Stalemate", SET + "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1" + Game("c1c7"), "1/2-1/2 {Stalemate}\n"},
    {"Repetition", "force" + Game("Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1") + "\nbk" + Game("Ng8"),
     NO_BOOK + "1/2-1/2 {Threefold repetition}\n"},
    {"FiftyMoves", ROOK + Game("Rb1") + "\nbk" + Game("Ke7"), NO_BOOK + FIFTY_MOVES},
    {"FiftyMovesWithAPawn", ROOK + Game("a3 Ke7 Ra2"), ""},
    {"Material", SET + "4k3/8/8/8/8/8/3p4/B3K3 w - - 0 1" + Game("e1d2"),
     "1/2-1/2 {Insufficient material}\n"},
    {"NoMoveBehind", "setboard 4k3/8/8/8/8/8/R7/4K3 w - - 99 80\nusermove a2a3", FIFTY_MOVES},
    {"TakenBack", FOOLS_MATE + "\nsd 3\ngo\nundo\ngo",
     "0-1 {Black mates}\nmove\n0-1 {Black mates}\n"},
    {"GoneWithSetBoard", FOOLS_MATE + "\nplayother\n" + MIDDLE_GAME + "sd 3\nusermove a2a3",
     "0-1 {Black mates}\nmove\n"},
};
const bool HAS_CLAIMS = RegisterCases<Exchange>("Protocol/Claims", CLAIMS, CheckAnswer);

const Exchange REPLIES[] = {
    {"AtOnce", "sd 3\nusermove e2e4", "move\n"}, // a game stands ready
    {"NotInForceMode", "force\nundo\nremove" + Game("e2e4 e7e5"), ""},
    {"AfterGo", "sd 3\nforce" + Game("e4 e5") + "\ngo\nusermove a7a6", "move\nmove\n"},
    {"AfterPlayOther", "sd 3\nforce\nusermove h2h3\nplayother\n.\nusermove h7h6", "move\n"},
    {"AfterNew", "force\nnew\nsd 3\nusermove e2e4", "move\n"},
};
const bool HAS_REPLIES = RegisterCases<Exchange>("Protocol/Replies", REPLIES, CheckAnswer);

// The engine moves, and a line that waits for the move keeps those behind it from the search.
const std::string GO = "\ngo\nxboard";
const std::string HOPELESS = "setboard 7k/8/8/8/8/8/P7/KQR5 b - - 0 1\nsd 3\notim ";
const std::string FOUR_MORE = GO + Game("a3\nxboard a4\nxboard a5\nxboard a6");
const std::string FIVE = "move\nmove\nmove\nmove\nmove\n";
// The move's score is -102, and -101.
const std::string BEHIND = "sd 4\nsetboard 8/8/8/8/Pr4B1/6k1/8/2K5 w - - 0 1" + GO;
const std::string LESS_BEHIND = "sd 3\nsetboard K7/8/8/3n1P2/8/1N6/8/k7 b - - 0 1" + GO;
const Exchange OFFERS[] = {
    {"Resigns", HOPELESS + "3000" + FOUR_MORE, FIVE + "resign\n"},
    {"ResignsOnlyInTime", HOPELESS + "2999" + FOUR_MORE, FIVE},
    {"TakesADraw", BEHIND + "\ndraw", "move\noffer draw\n"},
    {"TakesNoDrawAtTheLimit", LESS_BEHIND + "\ndraw", "move\n"},
    {"TakesNoDrawInANewGame", BEHIND + "\nnew\ndraw", "move\n"},
    {"TakesNoDrawInANewPosition", BEHIND + "\n" + MIDDLE_GAME + "draw", "move\n"},
    {"TakesNoDrawForAMoveTakenBack", BEHIND + "\nundo\ndraw", "move\n"},
};
const bool HAS_OFFERS = RegisterCases<Exchange>("Protocol/Offers", OFFERS, CheckAnswer);

const Exchange HINTS[] = {
    {"GivenAfterAMove", "hint\nsd 3" + GO + "\nhint", "move\nHint: b8c6\n"},
    {"GoneWithNew", "sd 3" + GO + "\nnew\nhint", "move\n"},
    {"GoneWithSetBoard", "sd 3" + GO + "\n" + MIDDLE_GAME + "hint", "move\n"},
    {"GoneWithItsMove", "sd 3" + GO + "\nundo\nhint", "move\n"},
    {"BackAtRemove", "sd 3" + GO + Game("a6") + "\nremove\nhint", "move\nmove\nHint: b8c6\n"},
    {"KeptAtUndo", "sd 3" + GO + "\nforce" + Game("a6") + "\nundo\nhint", "move\nHint: b8c6\n"},
};
const bool HAS_HINTS = RegisterCases<Exchange>("Protocol/Hints", HINTS, CheckAnswer);

const Exchange ODD_LINES[] = {
    {"CarriageReturn", "bk\r", NO_BOOK},
    {"NulByte", std::string("cut\0off", 7), UNKNOWN + "cut off\n"},
    {"Longest", LONGEST, UNKNOWN + "LONGEST\n"},
    {"TooLong", LONGEST + "x", UNKNOWN + "LONGEST\n"},
    {"TooLongBehindAReturn", LONGEST.substr(1) + "\r\n" + "x" + LONGEST.substr(2) + "\rx",
     UNKNOWN + LONGEST.substr(1) + "\n" + UNKNOWN + LONGEST.substr(1) + "\r\n"},
    {"LongTexts", "level " + LONGEST + "\nname " + LONGEST + "\nics " + LONGEST, ""},
    {"LongPosition", "setboard " + LONGEST, REFUSED},
    {"LongResult", "result 1-0 {" + LONGEST, ""},
    {"Pings", "ping\nping x\nping -3\nping8 9", "pong\npong\npong -3\npong 8\n"},
    {"NothingToSay", "draw\n?\n.\npause\nresume\nrandom\ncomputer", ""},
};
const bool HAS_ODD_LINES = RegisterCases<Exchange>("Protocol/OddLines", ODD_LINES, CheckAnswer);

// Errors are told, and logged.
void CheckUnknown(const Exchange& test) {
    EngineProcess engine;
    const std::string error = UNKNOWN + test.lines;
    EXPECT_EQ(Ask(engine, test.lines), error + "\n");
    EXPECT_EQ(ReadLog(engine, "ErrorLog"), "1.0.3\tD\tT\t\"" + error + "\"\n");
}

const Exchange UNKNOWN_LINES[] = {
    {"Empty", ""},
    {"Blank", " "},
    {"BareMove", "e2e4"},
    {"BlankBehind", "quit "},
    {"BlankBefore", " quit"},
    {"Capital", "New"},
    {"Version", "protover 3"},
    {"TwoDots", ".."},
    {"Return", "go\r "},
    {"LetterBehind", "hintt"},
    {"Format", "%s%n%d"},
    {"Bytes", EveryByte()},
};
const bool HAS_UNKNOWN_LINES =
    RegisterCases<Exchange>("Protocol/UnknownLines", UNKNOWN_LINES, CheckUnknown);

const Exchange SETTINGS[] = {
    {"NoDepth", "sd 0"},
    {"NegativeDepth", "sd -99999999999"},
    {"HugeDepth", "sd 99999999999999\ntime 90\ntime\ntime x"},
    {"NoTime", "sd 50\ntime 0"},
    {"NegativeTime", "time -1\notim -1\notim x"},
    {"HugeTime", "time 99999999999999\notim 99999999999999"},
    {"ShortLevel", "level\nlevel 40\nlevelx"},
    {"OddLevel", "level x y z\nlevel 40 2:30 x"},
    {"NegativeLevel", "level -1 -1:-1 -2147483648"},
    {"HugeLevel", "time 6000\nlevel 99999999999 9:99 99999999999"},
    {"NoText", "rating\nrating 1\nname\nics\nresult\nresult *\naccepted\nremove"},
};
const bool HAS_SETTINGS =
    RegisterCases<Exchange>("Protocol/Settings", SETTINGS, [](const Exchange& test) {
        CheckAnswer({test.name, MIDDLE_GAME + "sd 4\n" + test.lines + "\ngo", "move\n"});
    });

TEST(Protocol, AnnouncesItsFeatures) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "xboard\nprotover 2"),
              "feature done=0\nfeature myname=\"Korvane 1.0.3\"\nfeature ping=1\n"
              "feature setboard=1\nfeature playother=1\nfeature san=1\nfeature usermove=1\n"
              "feature time=1\nfeature draw=1\nfeature sigint=0\nfeature sigterm=0\n"
              "feature reuse=1\nfeature analyze=1\nfeature variants=\"normal\"\nfeature colors=0\n"
              "feature ics=1\nfeature pause=1\nfeature name=1\nfeature done=1\n");
}

TEST(Protocol, WritesAlgebraicMovesOnceAccepted) {
    EngineProcess engine;
    const std::string mate = "\neasy\nnopost\nsetboard k7/8/1K6/8/8/8/8/7R w - - 0 1\ngo";
    EXPECT_EQ(Ask(engine, "rejected san\naccepted\naccepted x" + mate + "\naccepted san" + mate),
              "move h1h8\n1-0 {White mates}\nmove Rh8#\n1-0 {White mates}\n");
}

TEST(Protocol, DoesNotResignWhenToldNotTo) {
    EngineProcess engine("--hash-size=1 --no-random --no-resign");
    EXPECT_EQ(Simplify(Ask(engine, "easy\nnopost\n" + HOPELESS + "3000" + FOUR_MORE)), FIVE);
}

// Ends a game so that it is logged, which games in force mode are not.
std::string Result(const std::string& result) { return "\neasy\nplayother\nresult " + result; }

// The PGN log without the tags that tell nothing of players and moves.
std::string ReadGames(const EngineProcess& engine) {
    const std::regex others("\\[(Event|Site|Date|Round|Time) [^\n]*\n");
    return std::regex_replace(ReadFile(engine, "GameLog.pgn"), others, "");
}

// A position that is refused leaves the game as it was.
void CheckRefusal(const Exchange& test) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "force" + Game("e2e4 e7e5") + "\nsetboard" + test.lines + "\nundo" +
                              Game("e7e6 g1f3") + Result("1-0")),
              test.answer);
    EXPECT_TRUE(ReadGames(engine).ends_with("]\n\n1. e2e4 e7e6 2. g1f3 1-0\n\n"));
}

const Exchange REFUSALS[] = {
    {"NoText", "", REFUSED},
    {"EmptyText", " ", REFUSED},
    {"NoSide", " k7/8/8/8/8/8/8/K7", REFUSED},
    {"OneKing", " 8/8/8/8/8/8/8/K7 w - - 0 1", REFUSED},
    {"NoPieces", " 8/8/8/8/8/8/8/8 w - - 0 1"}, // taken without a word
    {"KingToBeTaken", " 4k3/8/8/8/8/8/8/K3R3 w - -", REFUSED},
};
const bool HAS_REFUSALS = RegisterCases<Exchange>("Protocol/Refusals", REFUSALS, CheckRefusal);

TEST(Protocol, LogsAGame) {
    EngineProcess engine;
    EXPECT_EQ(
        Ask(engine, "force\nlevel 40 5 0\nname J \"J\" \\D\nrating 2100 0\ncomputer\nics x.org" +
                        Game("e4 e5 Nf3 Nf6 Ng1 Ng8 Nc3 Nf6 Nb1 Nc6 Nf3 Nb8 Nc3 d5") +
                        Result("1/2-1/2 {Draw (agreed)} more")),
        "");
    EXPECT_EQ(ReadFile(engine, "GameLog.fen"),
              "rnbqkb1r/ppp2ppp/5n2/3pp3/4P3/2N2N2/PPPP1PPP/R1BQKB1R w KQkq d6 0 8\n");
    EXPECT_EQ(ReadLog(engine, "GameLog"), "1.0.3_D_T_x.org_level 40 5 0_white_J \"J\" \\D_program_"
                                          "2100_-_draw_Draw (agreed)\n");
    EXPECT_EQ(ReadLog(engine, "GameLog.pgn"),
              "[Event \"?\"]\n[Site \"x.org\"]\n[Date \"D\"]\n[Round \"?\"]\n"
              "[White \"Korvane 1.0.3\"]\n[Black \"J \\\"J\\\" \\\\D\"]\n[Result \"1/2-1/2\"]\n"
              "[WhiteElo \"2100\"]\n[BlackElo \"-\"]\n[WhiteType \"program\"]\n"
              "[BlackType \"program\"]\n[Time \"T\"]\n\n"
              "1. e2e4 e7e5 2. g1f3 g8f6 3. f3g1 f6g8 4. b1c3 g8f6 5. c3b1 b8c6 6. g1f3 c6b8\n"
              "7. b1c3 d7d5 1/2-1/2\n\n");
}

// Of what was told of an opponent, nothing is left in a new game. A game that follows a logged one
// without a "new" starts where that did.
TEST(Protocol, LogsGamesInARow) {
    EngineProcess engine;
    const std::string fen = "1r2k3/P7/8/8/4p3/8/3P4/4K2R b K - 5 30";
    EXPECT_EQ(Ask(engine, "name Ann\nics x.org\ncomputer\nrating 1 2\nlevel 40 5 0\nnew\nics -\n"
                          "name Bob\nrating 1900 0\nforce\nsetboard " +
                              fen + Game("e8d8 d2d4 exd3 a7b8r d8d7 O-O d3d2 b8b1") +
                              Result("0-1 {Black wins}") + "\nforce" + Game("e8d8 axb8=R+ d8d7") +
                              Result("1-0")),
              "");
    EXPECT_EQ(ReadFile(engine, "GameLog.fen"), "8/3k4/8/8/8/8/3p4/1R3RK1 b - - 1 34\n"
                                               "1R6/3k4/8/8/4p3/8/3P4/4K2R w K - 1 32\n");
    EXPECT_EQ(ReadLog(engine, "GameLog"), "1.0.3_D_T_?__black_Bob_human_1900_-_win_Black wins\n"
                                          "1.0.3_D_T_?__white_Bob_human_1900_-_win_\n");
    const std::string start = "[SetUp \"1\"]\n[FEN \"" + fen + "\"]\n\n30... e8d8 31. ";
    const std::string first = "[White \"Bob\"]\n[Black \"Korvane 1.0.3\"]\n[Result \"0-1\"]\n"
                              "[WhiteElo \"-\"]\n[BlackElo \"1900\"]\n[WhiteType \"human\"]\n"
                              "[BlackType \"program\"]\n";
    const std::string second = "[White \"Korvane 1.0.3\"]\n[Black \"Bob\"]\n[Result \"1-0\"]\n"
                               "[WhiteElo \"1900\"]\n[BlackElo \"-\"]\n[WhiteType \"program\"]\n"
                               "[BlackType \"human\"]\n";
    EXPECT_EQ(ReadGames(engine), first + start +
                                     "d2d4 e4d3 32. a7b8r d8d7 33. e1g1 d3d2 34. b8b1 0-1\n\n" +
                                     second + start + "a7b8r d8d7 1-0\n\n");
}

TEST(Protocol, LogsNothingOutsideAGame) {
    EngineProcess engine;
    const std::string results = "\nresult 1-0 {x}\nexit\nresult * {x}\nforce\nresult 1-0 {x}";
    EXPECT_EQ(Ask(engine, "nopost\nanalyze" + results), "");
    EXPECT_EQ(ReadFile(engine, "GameLog") + ReadFile(engine, "GameLog.pgn"), "");
}

TEST(Protocol, LogsIllegalMoves) {
    EngineProcess engine;
    Ask(engine, "force\nusermove Kxx\nusermove e4");
    EXPECT_EQ(ReadLog(engine, "ErrorLog"), "1.0.3\tD\tT\t\"Illegal move: Kxx\"\n");
}

TEST(Protocol, StartsWithAPipeInPlaceOfItsBook) {
    EngineProcess engine("--hash-size=1 --verbose", KORVANE_BINARY, "mkfifo korvane.bk");
    const std::regex told("verbose: Created[^\n]*\n"
                          "verbose: Cannot use damaged book file \\([^)]+\\) \"korvane.bk\".\n");
    EXPECT_EQ(std::regex_replace(Ask(engine, "easy"), told, "told"), "told");
}

TEST(Protocol, LosesOnlyTheEntriesOfBrokenLogs) {
    EngineProcess engine(PLAY, KORVANE_BINARY,
                         "ln -s /dev/full GameLog.fen; mkfifo GameLog; mkdir GameLog.pgn");
    const rlimit no_bytes{0, 0};
    EXPECT_EQ(prlimit(engine.pid, RLIMIT_FSIZE, &no_bytes, nullptr), 0);
    EXPECT_EQ(Ask(engine, "nopost\nx\nforce" + Game("e4 e5") + Result("1-0 {x}")), UNKNOWN + "x\n");
    EXPECT_EQ(Simplify(Ask(engine, "sd 3\nusermove e2e4")), "move\n");
    SendLines(engine, "quit");
    EXPECT_EQ(WaitForExit(engine).status, 0);
}

} // namespace
