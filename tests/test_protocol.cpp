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

std::string ReadLogs(const EngineProcess& engine) {
    return ReadLog(engine, "GameLog.fen") + ReadLog(engine, "GameLog") +
           ReadLog(engine, "GameLog.pgn");
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
    EXPECT_EQ(Ask(engine, "xboard\nprotover 2"), ReadCases("features.txt"));
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

// A position that is refused leaves the game as it was.
void CheckRefusal(const TextCase& test) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "force" + Game("e2e4 e7e5") + "\n" + test.fields[0] + "\nundo" +
                              Game("e7e6 g1f3") + Result("1-0")),
              ToAnswer(test.fields[1]));
    EXPECT_TRUE(ReadLog(engine, "GameLog.pgn").ends_with("]\n\n1. e2e4 e7e6 2. g1f3 1-0\n\n"));
}

const bool HAS_REFUSALS = RegisterFile("Protocol/Refusals", "protocol.txt", CheckRefusal);

TEST(Protocol, LogsAGame) {
    EngineProcess engine;
    EXPECT_EQ(
        Ask(engine, "force\nlevel 40 5 0\nname J \"J\" \\D\nrating 2100 0\ncomputer\nics x.org" +
                        Game("e4 e5 Nf3 Nf6 Ng1 Ng8 Nc3 Nf6 Nb1 Nc6 Nf3 Nb8 Nc3 d5") +
                        Result("1/2-1/2 {Draw (agreed)} more")),
        "");
    EXPECT_EQ(ReadLogs(engine), ReadCases("log-of-a-game.txt"));
}

// A new game forgets the opponent. Without a "new", a game after a logged one starts from the same
// position. That position's move number 0 is counted on from like any other.
TEST(Protocol, LogsGamesInARow) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "name Ann\nics x.org\ncomputer\nrating 1 2\nlevel 40 5 0\nnew\nics -\n"
                          "name Bob\nrating 1900 0\nforce\n"
                          "setboard 1r2k3/P7/8/8/4p3/8/3P4/4K2R b K - 5 0" +
                              Game("e8d8 d2d4 exd3 a7b8r d8d7 O-O d3d2 b8b1") +
                              Result("0-1 {Black wins}") + "\nforce" + Game("e8d8 axb8=R+ d8d7") +
                              Result("1-0")),
              "");
    EXPECT_EQ(ReadLogs(engine), ReadCases("log-of-games.txt"));
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
                          "verbose: Cannot use book file \\([^)]+\\) \"korvane.bk\".\n");
    EXPECT_EQ(std::regex_replace(Ask(engine, "easy"), told, "told"), "told");
}

// It answers, plays and ends as ever.
void CheckPlayWithoutLogs(EngineProcess& engine) {
    EXPECT_EQ(Ask(engine, "nopost\nx\nforce" + Game("e4 e5") + Result("1-0 {x}")), UNKNOWN + "x\n");
    EXPECT_EQ(Simplify(Ask(engine, "sd 3\nusermove e2e4")), "move\n");
    SendLines(engine, "quit");
    EXPECT_EQ(WaitForExit(engine).status, 0);
}

TEST(Protocol, LosesOnlyTheEntriesOfBrokenLogs) {
    EngineProcess engine(PLAY, KORVANE_BINARY,
                         "ln -s /dev/full GameLog.fen; mkfifo GameLog; mkdir GameLog.pgn");
    const rlimit no_bytes{0, 0};
    EXPECT_EQ(prlimit(engine.pid, RLIMIT_FSIZE, &no_bytes, nullptr), 0);
    CheckPlayWithoutLogs(engine);
}

TEST(Protocol, LosesOnlyTheEntriesWithItsFolder) {
    if (WINDOWS_PROGRAMS) return; // which hold on to their folder
    EngineProcess engine;
    Ask(engine, "xboard");
    RunBeside(engine, "rmdir \"$PWD\"");
    CheckPlayWithoutLogs(engine);
}

} // namespace
