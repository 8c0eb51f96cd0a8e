// What the engine hears and tells while it thinks, ponders and analyses, how deep it thinks, what
// it plays from its book and at random, and how it ends when its front end has gone.
#include "cases.h"
#include "engine_process.h"

#include <algorithm>
#include <csignal>
#include <regex>
#include <thread>

namespace {

// A single move is played at once, and the game is long after it.
const std::string ONE_MOVE = "setboard r5k1/pppq1ppp/2np4/8/8/1Q1P3N/PPPR2PP/4r2K w - - 0 20";

// Asks behind the engine's move, so that it is not the search for the move that answers.
bool IsPondering(EngineProcess& engine) {
    ReadUntil(engine, MOVE);
    return Ask(engine, ".").find("stat01:") != std::string::npos;
}

void CheckStop(const TextCase& test) {
    EngineProcess engine;
    StartThinking(engine, "easy\ngo");
    SendLines(engine, test.fields[0]);
    ReadUntil(engine, MOVE);
}

const bool HAS_STOPS = RegisterFile("Protocol/MovesAtOnceFor", "protocol.txt", CheckStop);

TEST(Protocol, OtherLinesWaitForItsMove) {
    EngineProcess engine;
    SendLines(engine, "easy\n" + MIDDLE_GAME + "sd 7\ngo");
    ReadUntil(engine, THINKING + "1\\. .*");
    SendLines(engine, "ping 7\nnonsense");
    EXPECT_NE(ReadUntil(engine, MOVE).find("\n 7 "), std::string::npos);
    EXPECT_EQ(ReadUntil(engine, "Error.*"), "pong 7\n" + UNKNOWN + "nonsense\n");
}

// The first move leaves a hint, which is not told during the second search; the line that ends a
// pause is lost.
TEST(Protocol, TellsOnlyItsStatusWhileItThinks) {
    EngineProcess engine;
    SendLines(engine, "easy\n" + MIDDLE_GAME + "sd 4\ngo\nsd 50\ngo");
    ReadUntil(engine, THINKING + "1\\.\\.\\. .*");
    SendLines(engine, "nopost\n.\nhint\nbk\npause\nquit\n.\n?");
    ReadUntil(engine, "stat01:.*");
    EXPECT_EQ(std::regex_replace(ReadUntil(engine, MOVE), std::regex("(stat01|move)[^\n]*"), "$1"),
              "stat01\nmove\n");
}

TEST(Protocol, PondersAfterItsMove) {
    EngineProcess engine;
    StartThinking(engine, "easy\ngo");
    SendLines(engine, "hard\n?");
    EXPECT_TRUE(IsPondering(engine));
}

TEST(Protocol, PondersUntilAMoveOrEasy) {
    EngineProcess engine;
    StartThinking(engine, "hard\nplayother");
    SendLines(engine, "usermove e1g1");
    ReadUntil(engine, THINKING + "1\\.\\.\\. .*");
    SendLines(engine, "easy\n?");
    EXPECT_FALSE(IsPondering(engine));
}

TEST(Protocol, HasAClockAgainAfterPondering) {
    EngineProcess engine;
    StartThinking(engine, "hard\nplayother");
    SendLines(engine, "time 40\nusermove e1g1");
    ReadUntil(engine, MOVE);
}

TEST(Protocol, AnswersWhilePondering) {
    EngineProcess engine;
    SendLines(engine, "nopost\n" + ONE_MOVE + "\ngo");
    ReadUntil(engine, MOVE);
    const std::string heard = Ask(engine, "hint\n?\ndraw\nbk\nhard\n.");
    EXPECT_EQ(std::regex_replace(heard, std::regex("(Hint|stat01):[^\n]*"), "$1"),
              "Hint\noffer draw\n" + NO_BOOK + "stat01\n");
    EXPECT_EQ(Ask(engine, "easy\n."), "");
}

// It has a book of three plies, and no time to think deeply.
void CheckLeavingTheBook(const Exchange& test) {
    EngineProcess engine(PLAY, KORVANE_BINARY, LayBook("e4 e5 Nf3"));
    EXPECT_EQ(Ask(engine, "nopost\ntime 40\nusermove e2e4\n."), "move e7e5\n");
    SendLines(engine, test.lines);
    EXPECT_TRUE(IsPondering(engine));
}

const Exchange LEAVES[] = {{"AtItsEnd", "usermove g1f3"}, {"BesideIt", "usermove d2d4"}};
const bool HAS_LEAVES =
    RegisterCases<Exchange>("Protocol/PondersOutOfItsBook", LEAVES, CheckLeavingTheBook);

// The case's lines prepare the directory, and its answer is an option.
void CheckPlayWithoutBook(const Exchange& test) {
    EngineProcess engine(PLAY + test.answer, KORVANE_BINARY, test.lines);
    SendLines(engine, "nopost\ntime 40\nusermove e2e4");
    EXPECT_TRUE(IsPondering(engine));
}

const Exchange WITHOUT_BOOK[] = {
    {"Missing", ""},
    {"Damaged", "echo x > korvane.bk"},
    {"SwitchedOff", LayBook("e4 e5"), " --no-book"},
};
const bool HAS_NO_BOOK =
    RegisterCases<Exchange>("Protocol/PondersWithoutBook", WITHOUT_BOOK, CheckPlayWithoutBook);

TEST(Protocol, Analyses) {
    EngineProcess engine;
    StartThinking(engine, "analyze");
    SendLines(engine, ".\nbk");
    ReadUntil(
        engine,
        "stat01:[ \\d]{7}\\d(?=.{30}$) +[1-9]\\d{3,9}[ \\d]{2}\\d[ \\d]{3}\\d  48    [a-h1-8]{4}");
    ReadUntil(engine, " Book not available!");
}

void CheckStep(const TextCase& test) {
    EngineProcess engine;
    StartThinking(engine, "analyze");
    SendLines(engine, "usermove e1g1");
    ReadUntil(engine, THINKING + "1\\.\\.\\. .*");
    SendLines(engine, test.fields[0]);
    ReadUntil(engine, THINKING + test.fields[1] + ".*");
}

void CheckEndOfAnalysis(const TextCase& test) {
    EngineProcess engine;
    StartThinking(engine, "analyze");
    SendLines(engine, "nopost\n.");
    ReadUntil(engine, "stat01:.*");
    EXPECT_EQ(Ask(engine, ToLines(test.fields[0]) + "\n."), ToAnswer(test.fields[1]));
}

void CheckDepth(const TextCase& test) {
    EngineProcess engine;
    const std::string heard = Ask(engine, "easy\n" + test.fields[0] + "\nsd 7\ngo");
    EXPECT_EQ(heard.substr(heard.rfind('\n', heard.find("\nmove ") - 1) + 1, 2),
              " " + test.fields[1]);
}

const bool HAS_TEXTS[] = {
    RegisterFile("Protocol/AnalysesOn", "protocol.txt", CheckStep),
    RegisterFile("Protocol/AnalysisEndsWith", "protocol.txt", CheckEndOfAnalysis),
    RegisterFile("Protocol/ThinksNoDeeper", "protocol.txt", CheckDepth),
};

// Thinking lines without their times.
std::string Timeless(const std::string& lines) {
    const std::regex times("([^\n]{10})[^\n]{8}([^\n]{14}[^\n]*\n)");
    return std::regex_replace(lines, times, "$1$2");
}

std::string Think(EngineProcess& engine) {
    SendLines(engine, "new\neasy\nsd 8\nsd\nsd x\ngo");
    return Timeless(ReadUntil(engine, MOVE));
}

TEST(Protocol, ThinksTheSameEveryTime) {
    EngineProcess engine, other;
    const std::string thinking = Think(engine);
    EXPECT_EQ(Think(engine), thinking);
    EXPECT_EQ(Think(other), thinking);
}

TEST(Protocol, PlaysFromItsBookAndOn) {
    EngineProcess engine("--hash-size=1", KORVANE_BINARY, LayBook("e4 c6 d4 d5 Nc3 dxe4"));
    EXPECT_EQ(Ask(engine, "easy\nnopost\nsd 3\nbk\nusermove e2e4\nhint\nbk\nusermove d2d4\n"
                          "usermove b1c3\nbk"),
              " 1. e2e4\n\nmove c7c6\n 2. d2d4\n\nmove d7d5\nmove d5e4\n Out of book!\n\n");
    const std::string moves = Ask(engine, "usermove c3e4\ngo\ngo\ngo\ngo\ngo");
    EXPECT_EQ(std::count(moves.begin(), moves.end(), '\n'), 6);
    EngineProcess referee;
    EXPECT_EQ(Ask(referee, "force" + Game("e2e4 c7c6 d2d4 d7d5 b1c3 d5e4 c3e4") + "\n" +
                               std::regex_replace(moves, std::regex("move"), "usermove") + "hint"),
              "");
    EXPECT_EQ(Ask(engine, "result 1-0\nbk"), " 1. e2e4\n\n"); // the next game is in the book again
}

// The case's lines are what happens to the file while the engine runs.
void CheckBookInMemory(const Exchange& test) {
    EngineProcess engine(PLAY, KORVANE_BINARY,
                         LayBook("e4 a5") + "; mv korvane.bk other.bk; " + LayBook("e4 h5"));
    EXPECT_EQ(Ask(engine, "easy\nnopost\nusermove e2e4"), "move h7h5\n");
    RunBeside(engine, test.lines);
    EXPECT_EQ(Ask(engine, "new\nusermove e2e4\nnew\nusermove e2e4"), "move h7h5\nmove h7h5\n");
}

const Exchange BOOK_FAULTS[] = {{"Replaced", "mv other.bk korvane.bk"},
                                {"CutShort", "truncate -s 50 korvane.bk"},
                                {"Removed", "rm korvane.bk"}};
const bool HAS_BOOK_FAULTS =
    RegisterCases<Exchange>("Protocol/PlaysOnFromItsBook", BOOK_FAULTS, CheckBookInMemory);

// Only a move from the book makes one run differ from another. The lone king has two moves that are
// equally good whatever the evaluation: it takes the last pawn now or, by d5c4, whose score the
// search before leaves in the tables, a move later.
TEST(Protocol, VariesItsMovesTheSameInEveryRun) {
    EngineProcess engine("--hash-size=1", KORVANE_BINARY, LayBook("e4 e5"));
    EngineProcess other("--hash-size=1", KORVANE_BINARY, LayBook("e4 e5"));
    EngineProcess steady(PLAY, KORVANE_BINARY, LayBook("e4 e5"));
    std::string games = "easy\nnopost", same;
    for (int i = 0; i < 8; ++i) {
        games += "\nnew\nsd 3\nsetboard 7k/8/8/8/1K1p4/8/8/8 w - - 0 1\ngo\nxboard"
                 "\nsetboard 7k/8/8/3K4/3p4/8/8/8 w - - 0 1\ngo\nxboard";
        same += "move b4c4\nmove d5d4\n1/2-1/2 {Insufficient material}\n";
    }
    const std::string moves = Ask(engine, games);
    EXPECT_NE(moves, same);
    EXPECT_EQ(Ask(other, games), moves);
    EXPECT_EQ(Ask(steady, games), same);
}

const Exchange STATES[] = {
    {"Idle", ""}, {"Thinking", "easy\ngo"}, {"Pondering", "playother"}, {"Analysing", "analyze"}};

constexpr const char* LAST_TEXTS[] = {"quit\n",      "quit",   "",
                                      "usermove e2", "st 5\n", "st 5\nusermove e2"};

// Interrupts do not end the engine; the end of the input does, as the command does.
template <int LAST>
void CheckEnd(const Exchange& state) {
    const std::string last = LAST_TEXTS[LAST];
    EngineProcess engine;
    ASSERT_GT(engine.pid, 0);
    EXPECT_EQ(Ask(engine, "xboard"), "");
    if (!state.lines.empty()) StartThinking(engine, state.lines);
    if (!WINDOWS_PROGRAMS) { // which know no such signals
        kill(engine.pid, SIGINT);
        kill(engine.pid, SIGTERM);
    }
    SendText(engine, last);
    if (last != "quit\n") CloseInput(engine);
    const Ending ending = WaitForExit(engine);
    EXPECT_EQ(std::to_string(ending.status) + ending.errors, "0");
    EXPECT_EQ(ending.output.ends_with("Illegal move: e2\n"), last.ends_with("usermove e2"));
}

const bool HAS_ENDS[] = {
    RegisterCases<Exchange>("Protocol/EndsAtQuit", STATES, CheckEnd<0>),
    RegisterCases<Exchange>("Protocol/EndsAtUnfinishedQuit", STATES, CheckEnd<1>),
    RegisterCases<Exchange>("Protocol/EndsAtHangUp", STATES, CheckEnd<2>),
    RegisterCases<Exchange>("Protocol/EndsAtHangUpInALine", STATES, CheckEnd<3>),
    RegisterCases<Exchange>("Protocol/EndsAtHangUpBehindALine", STATES, CheckEnd<4>),
    RegisterCases<Exchange>("Protocol/EndsAtHangUpInASecondLine", STATES, CheckEnd<5>),
};

// The input stays open, and the searches have nothing to say.
void CheckDeafEnd(const Exchange& state) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "xboard"), "");
    if (!state.lines.empty()) {
        StartThinking(engine, state.lines);
        SendLines(engine, "nopost\n.");
        ReadUntil(engine, "stat01:.*");
    }
    CloseOutput(engine);
    // The move that it still wants to tell is the end of it.
    EXPECT_EQ(WaitForExit(engine).status, state.lines == "easy\ngo" ? -SIGPIPE : 0);
}

const bool HAS_DEAF_ENDS =
    RegisterCases<Exchange>("Protocol/EndsWhenNobodyListens", STATES, CheckDeafEnd);

// A line that waits and one that is not yet read do not hide it.
TEST(Protocol, EndsWhenNobodyListensBehindLines) {
    EngineProcess engine;
    StartThinking(engine, "analyze");
    SendLines(engine, "nopost\n.\nst 5\nst 6");
    ReadUntil(engine, "stat01:.*");
    CloseOutput(engine);
    EXPECT_EQ(WaitForExit(engine).status, -SIGPIPE);
}

TEST(Protocol, WaitsForAFrontEndThatReadsNoMore) {
    if (WINDOWS_PROGRAMS) return; // whose bridge reads on
    EngineProcess engine, other;
    std::string searches = "easy\n" + MIDDLE_GAME + "sd 3";
    for (int i = 0; i < 60; ++i) {
        searches += "\ngo";
    }
    SendWithoutReading(engine, searches);
    EXPECT_EQ(Timeless(Ask(engine, "x")), Timeless(Ask(other, searches + "\nx")));
}

TEST(Protocol, AnswersLinesThatPourInWhileItThinks) {
    EngineProcess engine;
    SendLines(engine, "easy\n" + MIDDLE_GAME + "sd 6\ngo");
    ReadUntil(engine, THINKING + "1\\. .*");
    std::string lines, answers;
    for (int i = 0; i < 5000; ++i) {
        const std::string number = std::to_string(i);
        lines += "ping " + number + "\nline " + number + "\n";
        answers += "pong " + number + "\n" + UNKNOWN + "line " + number + "\n";
    }
    answers += "pong 5000\n";
    std::thread front_end([&] { SendText(engine, lines + "ping 5000\n"); });
    const std::string heard = ReadUntil(engine, "pong 5000");
    front_end.join();
    const std::size_t start = heard.find("pong");
    EXPECT_TRUE(std::regex_search(heard.substr(0, start), std::regex(MOVE + "\n$")));
    std::string rest = heard.substr(start);
    const auto [is, is_to_be] = std::ranges::mismatch(rest, answers); // of so many lines
    EXPECT_EQ(std::string(is, rest.end()).substr(0, 40),
              std::string(is_to_be, answers.end()).substr(0, 40));
}

} // namespace
