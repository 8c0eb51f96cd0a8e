// The second program as a UCI front end meets it.
#include "cases.h"
#include "engine_process.h"
#include "support.h"

#include <csignal>
#include <regex>
#include <sstream>
#include <unistd.h>

namespace {

const std::string CROWDED = "position fen " + MIDDLE_GAME.substr(MIDDLE_GAME.find(' ') + 1);
const std::string THINKS = "info depth .*"; // a line that a search tells first

// A line from each of the books is played by no search.
const std::string LAY_BOOKS =
    LayBook("h4 h5") + "; mv korvane.bk other.bk; echo x > damaged.bk; " + LayBook("a3 h6");

struct UciProcess : EngineProcess {
    explicit UciProcess(const std::string& arguments = "", const std::string& preparation = "")
        : EngineProcess(arguments, KORVANE_UCI_BINARY, preparation, KORVANE_UCI) {}
};

// What is told until the lines, sent one by one, are carried out. "< PATTERN" is not sent, but
// stands for the wait for such a line.
std::string Converse(EngineProcess& engine, const std::string& lines) {
    std::istringstream steps(lines);
    std::string heard;
    for (std::string step; std::getline(steps, step);) {
        if (step.starts_with("< ")) {
            heard += ReadUntil(engine, step.substr(2));
        } else {
            SendLines(engine, step);
        }
    }
    SendLines(engine, "perft 0");
    return heard + std::regex_replace(ReadUntil(engine, "nodes 1"), std::regex("nodes 1\n$"), "");
}

// A case's lines, and a pattern of what is told, thinking lines and pictures of the board left out.
void CheckAnswer(const TextCase& test) {
    UciProcess engine("", LAY_BOOKS);
    const std::regex dropped(
        "(info depth |[1-8] ([ *!][prnbqkPRNBQK.] ){8}|   a  b  c|Key: )[^\n]*\n");
    const std::string heard = Converse(engine, ToLines(test.fields[0]));
    EXPECT_TRUE(std::regex_match(std::regex_replace(heard, dropped, ""),
                                 std::regex(ToAnswer(test.fields[1]))))
        << heard;
}

const bool HAS_ANSWERS[] = {
    RegisterFile("Uci/Answers", "uci.txt", CheckAnswer),
    RegisterFile("Uci/Positions", "uci.txt", CheckAnswer),
    RegisterFile("Uci/Refusals", "uci.txt", CheckAnswer),
    RegisterFile("Uci/Books", "uci.txt", CheckAnswer),
    RegisterFile("Uci/Limits", "uci.txt", CheckAnswer),
    RegisterFile("Uci/Hears", "uci.txt", CheckAnswer),
};

// A FEN, and lines that make the engine choose a move: once, and a legal one.
void CheckChoice(const TextCase& test) {
    UciProcess engine;
    const std::string heard =
        Converse(engine, "position fen " + test.fields[0] + "\n" + ToLines(test.fields[1]));
    const std::regex choice("bestmove (\\S+)(?: ponder (\\S+))?\n");
    std::smatch chosen;
    ASSERT_TRUE(std::regex_search(heard, chosen, choice)) << heard;
    EXPECT_FALSE(std::regex_search(chosen.suffix().str(), choice)) << heard;
    StartAt(test.fields[0]);
    Play(chosen[1].str() + " " + chosen[2].str());
}

const bool HAS_CHOICES = RegisterFile("Uci/Chooses", "uci.txt", CheckChoice);

// The line as the reference writes it; empty when it is no thinking line, or tells the same depth,
// score and moves as the one before.
std::string ToReference(const std::string& line, std::string& last) {
    const std::regex form("info depth (\\d+) .*score (cp|mate) (-?\\d+) nodes (\\d+) .* pv (.*)");
    std::smatch parts;
    if (!std::regex_match(line, parts, form)) return "";
    int score = std::stoi(parts[3]);
    if (parts[2] == "mate") score = score > 0 ? 1'000'000 - 8 * score : -999'996 - 8 * score;
    const std::string start = parts[1].str() + " " + std::to_string(score) + " ";
    if (last == start + parts[5].str()) return "";
    last = start + parts[5].str();
    return start + parts[4].str() + " " + parts[5].str() + "\n";
}

void CheckReference(const Reference& test) {
    UciProcess engine;
    std::istringstream lines(Converse(engine, "position fen " + test.fen + "\ngo depth " +
                                                  std::to_string(test.plies) + "\n< bestmove .*"));
    std::string told, last;
    for (std::string line; std::getline(lines, line);) {
        told += line.starts_with("bestmove ")
                    ? "move " + line.substr(9, line.find(' ', 9) - 9) + "\n"
                    : ToReference(line, last);
    }
    EXPECT_EQ(told, std::regex_replace(test.text, std::regex("\\d+\\.+ "), ""));
}

// Those that are a single search, and soon done.
std::vector<Reference> ShortReferences() {
    std::vector<Reference> references = ReadReferences();
    std::erase_if(references, [](const Reference& reference) {
        return std::regex_search(reference.text, std::regex("move .*\n.*move |\n\\d+ \\S+ \\d{6}"));
    });
    return references;
}

const std::vector<Reference> SHORT_REFERENCES = ShortReferences();
const bool HAS_REFERENCES = RegisterCases<Reference>("Uci/Lines", SHORT_REFERENCES, CheckReference);

// Two position lines; the game of the second is the same whether it follows the first or not.
void CheckContinuation(const TextCase& test) {
    UciProcess engine, fresh;
    const std::string game = "position " + test.fields[1] + "\nd";
    const std::string afresh = Converse(fresh, game);
    EXPECT_NE(afresh.find("Fen: " + test.fields[2] + "\nKey: "), std::string::npos) << afresh;
    EXPECT_EQ(Converse(engine, "position " + test.fields[0] + "\n" + game), afresh);
}

const bool HAS_CONTINUATIONS = RegisterFile("Uci/Continues", "uci.txt", CheckContinuation);

std::string Shuffles(int count) {
    std::string game = "position startpos moves";
    while (count-- > 0) {
        game += " g1f3 g8f6 f3g1 f6g8";
    }
    return game;
}

TEST(Uci, TakesGamesOfAnyLengthThatFits) {
    UciProcess engine;
    const std::string middle = Converse(engine, Shuffles(375) + "\nd");
    EXPECT_NE(middle.find(" w KQkq - 1500 751\n"), std::string::npos) << middle;
    EXPECT_EQ(Converse(engine, Shuffles(1024) + "\nd"),
              "info string Too long a game: f6g8\n" + middle);
}

TEST(Uci, MeasuresOnItsCommandLineAndInAGame) {
    UciProcess measurer("bench 3"), engine;
    const Ending ending = WaitForExit(measurer);
    std::smatch nodes;
    ASSERT_TRUE(std::regex_search(ending.output, nodes, std::regex("\nNodes: \\d+\n")));
    EXPECT_EQ(ending.status, 0);
    const std::string board = Converse(engine, "position startpos moves e2e4 e7e5\nd");
    const std::string heard = Converse(engine, "bench 3\nd");
    EXPECT_NE(heard.find(nodes[0].str()), std::string::npos) << heard;
    EXPECT_TRUE(heard.ends_with("\n" + board)) << heard;
}

TEST(Uci, PrintsItsUsage) {
    UciProcess engine("--help"), other("-h");
    const Ending ending = WaitForExit(engine);
    EXPECT_EQ(std::to_string(ending.status) + ending.errors, "0");
    EXPECT_NE(ending.output.find("\n\nUsage: korvane-uci "), std::string::npos) << ending.output;
    EXPECT_EQ(WaitForExit(other).output, ending.output);
}

// The arguments, and what is wrong with them.
const Exchange COMMAND_LINES[] = {
    {"Unknown", "hello", "Unknown command: hello"},
    {"UnknownBeforeACommand", "hello perft 1", "Unknown command: hello perft 1"},
    {"OptionTooMany", "--help me", "Unknown command: --help me"},
    {"PerftDepth", "perft x", "Not a depth from 0 to 64: x"},
    {"BenchDepth", "bench 2", "Not a depth from 3 to 50: 2"},
};
const bool HAS_COMMAND_LINES =
    RegisterCases<Exchange>("Uci/RefusesOnItsCommandLine", COMMAND_LINES, [](const Exchange& test) {
        UciProcess engine(test.lines);
        const Ending ending = WaitForExit(engine);
        EXPECT_EQ(std::to_string(ending.status) + ending.output + " " + ending.errors,
                  "1 korvane-uci: " + test.answer + " (try korvane-uci --help)\n");
    });

TEST(Uci, WaitsForAFrontEndThatReadsNoMore) {
    if (WINDOWS_PROGRAMS) return; // whose bridge reads on
    UciProcess engine;
    constexpr int QUESTIONS = 2000;
    std::string questions, answers;
    for (int i = 0; i < QUESTIONS; ++i) {
        questions += "\nisready";
        answers += "readyok\n";
    }
    SendWithoutReading(engine, CROWDED + "go infinite" + questions);
    const std::string heard = Converse(engine, "stop");
    EXPECT_EQ(std::regex_replace(heard, std::regex("(info depth|bestmove)[^\n]*\n"), ""), answers);
    EXPECT_TRUE(std::regex_search(heard, std::regex("\nbestmove [^\n]*\n$")));
}

TEST(Uci, KeepsItsTablesWithoutMemoryForOthers) {
    if (WINDOWS_PROGRAMS) return; // that cannot be limited from here
    UciProcess engine;
    // Its lines tell how full the tables are.
    const auto search = [&] {
        const std::string heard = Converse(engine, "ucinewgame\ngo depth 5\n< bestmove .*");
        return std::regex_replace(heard, std::regex(" (nps|time) \\d+"), "");
    };
    Converse(engine, "setoption name Hash value 1");
    const std::string before = search();
    // Room for one of the two areas of memory.
    LimitMemory(engine.pid, std::size_t{350} << 20);
    const std::string large = "setoption name Hash value 1024\n";
    const std::string refusal = "info string No memory for Hash 1024\n";
    EXPECT_EQ(Converse(engine, large + large), refusal + refusal);
    EXPECT_EQ(search(), before);
    EXPECT_EQ(Converse(engine, "setoption name Hash value 64"), "");
}

TEST(Uci, ReadsTheBookWhenTold) {
    UciProcess engine("", LAY_BOOKS);
    const std::string again = "setoption name Book File value korvane.bk\n";
    const std::string search = "go nodes 1\n< bestmove .*";
    Converse(engine, "isready");
    RunBeside(engine, "cp other.bk new.bk; mv new.bk korvane.bk");
    EXPECT_EQ(Converse(engine, search), "bestmove a2a3\n");
    EXPECT_EQ(Converse(engine, again + search), "bestmove h2h4\n");
    RunBeside(engine, "truncate -s 50 korvane.bk");
    EXPECT_EQ(Converse(engine, again + search),
              "info string Cannot use the book korvane.bk: a record lies outside the file\n"
              "bestmove h2h4\n");
}

TEST(Uci, KeepsItsBookWithoutMemoryForAnother) {
    if (WINDOWS_PROGRAMS) return;
    UciProcess engine("", LAY_BOOKS);
    Converse(engine, "isready");
    LimitMemory(engine.pid, 0);
    EXPECT_EQ(
        Converse(engine, "setoption name Book File value other.bk\ngo nodes 1\n< bestmove .*"),
        "info string Cannot use the book other.bk: there is no memory for it\n"
        "bestmove a2a3\n");
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__
#endif
#endif
#ifndef __SANITIZE_ADDRESS__ // which ends the program itself
TEST(Uci, TellsWhenItRunsOutOfMemory) {
    if (WINDOWS_PROGRAMS) return;
    UciProcess engine;
    Converse(engine, "isready");
    LimitMemory(engine.pid, 0);
    const std::string line(1 << 20, ' '); // of which it does not take all
    EXPECT_GT(write(engine.input, line.data(), line.size()), 0);
    const Ending ending = WaitForExit(engine);
    EXPECT_EQ(std::to_string(ending.status) + " " + ending.errors, "1 Error (out of memory)\n");
}
#endif

// Bytes as they are sent, and what is told.
void CheckBytes(const Exchange& test) {
    UciProcess engine;
    SendText(engine, "isready\n" + test.lines.substr(0, 4));
    ReadUntil(engine, "readyok");
    EXPECT_EQ(Converse(engine, test.lines.substr(4)), test.answer);
}

const Exchange BYTES[] = {
    {"CutInTwo", "isready", "readyok\n"},
    {"CarriageReturns", "isready\r\n\r\nisready\r", "readyok\nreadyok\n"},
    {"EmptyLines", "\n\n \n\t\n isready \n\n", "readyok\n"},
    {"NulBytes", std::string("\0 isready\nisready\0\n\0\nisready \0", 28), "readyok\nreadyok\n"},
    {"EveryWordUnknown", std::string(5000, '\xff') + " %s%n\nisready", "readyok\n"},
    {"MoreThanAMegabyte", std::string(3 << 20, ' ') + "isready\nisready", "readyok\n"},
};
const bool HAS_BYTES = RegisterCases<Exchange>("Uci/Bytes", BYTES, CheckBytes);

// The lines lead to a state, and the answer is a pattern that tells that it is reached.
const Exchange STATES[] = {
    {"Idle", "isready", "readyok"},
    {"Thinking", CROWDED + "go depth 99", THINKS},
    {"Infinite", CROWDED + "go infinite", THINKS},
    {"Pondering", CROWDED + "go ponder wtime 1000 btime 1000", THINKS},
    {"WaitingBehindASearch", "position fen 7k/8/8/8/8/8/P7/6RK b - - 0 1\ngo infinite", THINKS},
    {"WaitingBehindAMate", "position fen 7k/6Q1/6K1/8/8/8/8/8 b - - 0 1\ngo ponder", THINKS},
};

void Quit(EngineProcess& engine) { SendLines(engine, "quit"); }

void HangUpInALine(EngineProcess& engine) {
    SendText(engine, "isready\nposition startp");
    CloseInput(engine);
}

template <int SIGNAL>
void Kill(EngineProcess& engine) {
    kill(engine.pid, SIGNAL);
}

template <void (*FINISH)(EngineProcess&), int SIGNAL>
void CheckEnd(const Exchange& state) {
    UciProcess engine;
    ASSERT_GT(engine.pid, 0);
    SendLines(engine, state.lines);
    ReadUntil(engine, state.answer);
    FINISH(engine);
    const Ending ending = WaitForExit(engine);
    const bool is_idle = std::string(state.name) == "Idle";
    const int signal = is_idle && SIGNAL == SIGPIPE ? 0 : SIGNAL; // it has nothing to say
    EXPECT_EQ(std::to_string(ending.status) + ending.errors, std::to_string(-signal));
    EXPECT_EQ(ending.output.find("bestmove ") != std::string::npos, !is_idle && signal == 0);
}

const bool HAS_ENDS[] = {
    RegisterCases<Exchange>("Uci/EndsAtQuit", STATES, CheckEnd<Quit, 0>),
    RegisterCases<Exchange>("Uci/EndsAtHangUp", STATES, CheckEnd<CloseInput, 0>),
    RegisterCases<Exchange>("Uci/EndsAtHangUpInALine", STATES, CheckEnd<HangUpInALine, 0>),
    RegisterCases<Exchange>("Uci/EndsWhenNobodyListens", STATES, CheckEnd<CloseOutput, SIGPIPE>),
    RegisterCases<Exchange>("Uci/EndsAtInterrupt", STATES, CheckEnd<Kill<SIGINT>, SIGINT>),
    RegisterCases<Exchange>("Uci/EndsAtTermination", STATES, CheckEnd<Kill<SIGTERM>, SIGTERM>),
};

} // namespace
