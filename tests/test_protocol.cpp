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
void ExpectAnswer(const std::string& lines, const std::string& answer) {
    EngineProcess engine;
    EXPECT_EQ(Simplify(Ask(engine, "easy\nnopost\n" + lines)), answer);
}

void CheckAnswer(const TextCase& test) {
    ExpectAnswer(ToLines(test.fields[0]), ToAnswer(test.fields[1]));
}

const bool HAS_TEXTS[] = {
    RegisterFile("Protocol/IllegalMoves", "protocol.txt", CheckAnswer),
    RegisterFile("Protocol/Claims", "protocol.txt", CheckAnswer),
    RegisterFile("Protocol/Replies", "protocol.txt", CheckAnswer),
    RegisterFile("Protocol/Offers", "protocol.txt", CheckAnswer),
    RegisterFile("Protocol/Hints", "protocol.txt", CheckAnswer),
};

void CheckSetting(const TextCase& test) {
    ExpectAnswer(MIDDLE_GAME + "sd 4\n" + ToLines(test.fields[0]) + "\ngo", "move\n");
}

const bool HAS_SETTINGS = RegisterFile("Protocol/Settings", "protocol.txt", CheckSetting);

const Exchange ODD_LINES[] = {
    {"NoMove", "usermovee7\rx\r\nusermove", "Illegal move: e7\nIllegal move: \n"},
    {"LongMove", "usermove " + LONGEST, "Illegal move: " + LONGEST.substr(0, 31) + "\n"},
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
const bool HAS_ODD_LINES =
    RegisterCases<Exchange>("Protocol/OddLines", ODD_LINES,
                            [](const Exchange& test) { ExpectAnswer(test.lines, test.answer); });

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
    const std::string hopeless = "setboard 7k/8/8/8/8/8/P7/KQR5 b - - 0 1\nsd 3\notim 3000\n";
    const std::string moves = "go\nxboard" + Game("a3\nxboard a4\nxboard a5\nxboard a6");
    EXPECT_EQ(Simplify(Ask(engine, "easy\nnopost\n" + hopeless + moves)),
              "move\nmove\nmove\nmove\nmove\n");
}

// Ends a game so that it is logged, which games in force mode are not.
std::string Result(const std::string& result) { return "\neasy\nplayother\nresult " + result; }

// The PGN log without the tags that tell nothing of players and moves.
std::string ReadGames(const EngineProcess& engine) {
    const std::regex others("\\[(Event|Site|Date|Round|Time) [^\n]*\n");
    return std::regex_replace(ReadFile(engine, "GameLog.pgn"), others, "");
}

// A position that is refused leaves the game as it was.
void CheckRefusal(const TextCase& test) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "force" + Game("e2e4 e7e5") + "\n" + test.fields[0] + "\nundo" +
                              Game("e7e6 g1f3") + Result("1-0")),
              ToAnswer(test.fields[1]));
    EXPECT_TRUE(ReadGames(engine).ends_with("]\n\n1. e2e4 e7e6 2. g1f3 1-0\n\n"));
}

const bool HAS_REFUSALS = RegisterFile("Protocol/Refusals", "protocol.txt", CheckRefusal);

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
