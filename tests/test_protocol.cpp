// The engine as a front end meets it: commands in, answers and logs out.
#include "engine_process.h"
#include "support.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

// There are 48 moves, and nothing is decided for long.
const std::string MIDDLE_GAME =
    "setboard r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1\n";

const std::string MOVE = "move [a-h][1-8][a-h][1-8][nbrq]?";
const std::string THINKING = "[ \\d]\\d[ \\d-]{7}\\d[ \\d]{7}\\d[ \\d]{10}\\d   ";
const std::string STATUS =
    "stat01:[ \\d]{7}\\d[ \\d]{10}\\d[ \\d]{2}\\d[ \\d]{3}\\d  48    [a-h1-8]{4}";
const std::string UNKNOWN = "Error (unknown command): ";
const std::string REFUSED = "tellusererror Illegal position\n";
const std::string NO_BOOK = " Book not available!\n\n";

using Exchange = std::pair<std::string, std::string>;

// In the answers "move" alone stands for any move in coordinates.
void ExpectAnswers(EngineProcess& engine, const std::string& before,
                   const std::vector<Exchange>& exchanges) {
    for (const auto& [lines, answer] : exchanges) {
        const std::string full_answer = Ask(engine, before + lines);
        EXPECT_EQ(std::regex_replace(full_answer, std::regex(MOVE), "move"), answer) << lines;
    }
}

// Moves as command lines, with a line feed before each.
std::string Game(const std::string& moves) {
    return std::regex_replace(" " + moves, std::regex(" "), "\nusermove ");
}

// A log without what differs from run to run.
std::string ReadLog(const EngineProcess& engine, const std::string& name) {
    const std::regex date("[0-9]{4}(\\.[0-9]{2}){2}"), time("[0-9]{2}(:[0-9]{2}){2}");
    return std::regex_replace(std::regex_replace(ReadFile(engine, name), date, "D"), time, "T");
}

// Starts a search that no clock ends, and waits until it runs.
void StartThinking(EngineProcess& engine, const std::string& command) {
    SendLines(engine, "new\n" + MIDDLE_GAME + "sd 50\n" + command);
    ReadUntil(engine, THINKING + "1\\. .*");
}

TEST(Protocol, AnnouncesItsFeatures) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "xboard\nprotover 2"),
              "feature done=0\nfeature myname=\"Korvane 1.0.3\"\nfeature ping=1\n"
              "feature setboard=1\nfeature playother=1\nfeature san=1\nfeature usermove=1\n"
              "feature time=1\nfeature draw=1\nfeature sigint=0\nfeature sigterm=0\n"
              "feature reuse=1\nfeature analyze=1\nfeature variants=\"normal\"\nfeature colors=0\n"
              "feature ics=1\nfeature pause=1\nfeature name=1\nfeature done=1\n");
    const std::string mate = "\neasy\nnopost\nsetboard k7/8/1K6/8/8/8/8/7R w - - 0 1\ngo";
    EXPECT_EQ(Ask(engine, "rejected san\naccepted\naccepted x" + mate + "\naccepted san" + mate),
              "move h1h8\n1-0 {White mates}\nmove Rh8#\n1-0 {White mates}\n");
}

TEST(Protocol, PlaysGames) {
    EngineProcess engine;
    const std::string log = "\neasy\nplayother\nresult 1-0 {x}";
    const std::string rook = "4k3/8/8/8/8/8/P7/R3K3 w - - 98 80";
    ExpectAnswers(
        engine, "new\nforce\nsetboard ",
        {{INITIAL_FEN + "\nundo\nremove" + Game("e7e5 O-O Kxx e4 e4"),
          "Illegal move: e7e5\nIllegal move: O-O\nIllegal move: Kxx\nIllegal move: e4\n"},
         {"4r1k1/8/8/8/8/8/4B3/4K3 w - - 0 1" + Game("e2d3"), "Illegal move: e2d3\n"},
         {"5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1" + Game("e1g1"), "Illegal move: e1g1\n"},
         {INITIAL_FEN + Game("f3 e5 g4 Qh4 a3"), "0-1 {Black mates}\nIllegal move: a3\n"},
         {INITIAL_FEN + Game("e4 e5 Bc4 a6 Qf3 a5 Qxf7"), "1-0 {White mates}\n"},
         {INITIAL_FEN + Game("Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1") + "\nbk" + Game("Ng8"),
          NO_BOOK + "1/2-1/2 {Threefold repetition}\n"},
         {"k7/8/1K6/8/8/8/8/2Q5 w - - 0 1" + Game("c1c7"), "1/2-1/2 {Stalemate}\n"},
         {rook + Game("a3 Ke7 Ra2"), ""},
         {rook + Game("Rb1") + "\nbk" + Game("Ke7"), NO_BOOK + "1/2-1/2 {Fifty move rule}\n"},
         {"4k3/8/8/8/8/8/3p4/B3K3 w - - 0 1" + Game("e1d2"), "1/2-1/2 {Insufficient material}\n"},
         {"r3k3/8/8/8/8/8/8/4K2R w Kq - 0 1" + Game("O-O e8c8") + log, ""},
         {"1n6/P3k3/8/8/8/8/p7/4K3 w - - 0 1" + Game("axb8=R a2a1q") + log, ""},
         {"4k3/8/8/8/3pP3/8/K6R/7R b - e3" + Game("dxe3 Rd1 Ke7") + "\nremove" + log, ""}});
    EXPECT_EQ(ReadFile(engine, "GameLog.fen"), "2kr4/8/8/8/8/8/8/5RK1 w - - 2 2\n"
                                               "1R6/4k3/8/8/8/8/8/q3K3 w - - 0 2\n"
                                               "4k3/8/8/8/8/4p3/K6R/7R w - - 0 2\n");
    EXPECT_TRUE(ReadLog(engine, "ErrorLog").starts_with("1.0.3\tD\tT\t\"Illegal move: e7e5\"\n1."));
}

TEST(Protocol, RepliesUnlessForced) {
    EngineProcess engine;
    const std::string four = "move\nmove\nmove\nmove\n";
    const std::string hopeless = "new\nsetboard 7k/8/8/8/8/8/P7/KQR5 b - - 0 1\nsd 3\notim ";
    const std::string moves = "\ngo" + Game("a3 a4 a5 a6");
    ExpectAnswers(engine, "nopost\neasy\nsd 3\n",
                  {{"usermove e2e4", "move\n"}, // a game stands ready at once
                   {"new\nforce" + Game("e2e4 e7e5"), ""},
                   {"go\nusermove a7a6", "move\nmove\n"},
                   {"force\nundo\nusermove h2h3\nplayother\n.", ""},
                   {"usermove h7h6\nforce\nnew\nsd 3\nusermove e2e4", "move\nmove\n"},
                   {"new\nforce" + Game("f3 e5 g4 Qh4") + "\ngo", "0-1 {Black mates}\n"},
                   {"undo\ngo", "move\n0-1 {Black mates}\n"}, // the game is open again
                   {"new\nsetboard 4k3/8/8/8/8/8/R7/4K3 w - - 99 80\nusermove a2a3",
                    "1/2-1/2 {Fifty move rule}\n"},
                   {"setboard 4k3/8/8/8/8/8/P7/4K3 w - - 0 1\nusermove a2a3", "move\n"},
                   {hopeless + "3000" + moves, four + "move\nresign\n"},
                   {hopeless + "2999" + moves, four + "move\n"}});
    EngineProcess stubborn("--hash-size=1 --no-resign");
    ExpectAnswers(stubborn, "nopost\neasy\n", {{hopeless + "3000" + moves, four + "move\n"}});
}

TEST(Protocol, TakesOddLines) {
    EngineProcess engine;
    std::string bytes, log;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\n') bytes += static_cast<char>(byte);
    }
    for (const std::string line : {"", " ", "e2e4", "quit ", " quit", "New", "protover 3", "go\r ",
                                   "..", "hintt", "%s%n%d", bytes.c_str()}) {
        EXPECT_EQ(Ask(engine, line), UNKNOWN + line + "\n");
        log += "1.0.3\tD\tT\t\"" + UNKNOWN + line + "\"\n";
    }
    EXPECT_EQ(ReadLog(engine, "ErrorLog"), log);
    const std::string longest(4095, 'x');
    ExpectAnswers(
        engine, "",
        {{longest, UNKNOWN + longest + "\n"},
         {longest + longest, UNKNOWN + longest + "\n"},
         {std::string("cut\0off", 7), UNKNOWN + "cut off\n"},
         {"bk\r\nusermovee7\rx\r\nusermove", NO_BOOK + "Illegal move: e7\nIllegal move: \n"},
         {"usermove " + longest, "Illegal move: " + longest.substr(0, 31) + "\n"},
         {"level " + longest + "\nname " + longest + "\nics " + longest, ""},
         {"setboard " + longest + "\nresult 1-0 {" + longest, REFUSED},
         {"ping\nping x\nping -3\nping8 9", "pong\npong\npong -3\npong 8\n"},
         {"hint\ndraw\nbk\n?\n.\npause\nresume\nrandom\neasy\nnopost", NO_BOOK}});
    for (const std::string lines :
         {"sd 0", "sd -99999999999", "sd 99999999999999\ntime 90\ntime\ntime x", "sd 50\ntime 0",
          "time -1\notim -1\notim x\nlevel\nlevel 40\nlevel x y z\nlevel 40 2:30 x",
          "time 99999999999999\notim 99999999999999\nlevel -1 -1:-1 -2147483648",
          "time 6000\nlevel 99999999999 9:99 99999999999",
          "rating\nrating 1\nname\nics\nlevelx\nresult\nresult *\naccepted\nremove"}) {
        ExpectAnswers(engine, "new\n" + MIDDLE_GAME + "sd 4\n", {{lines + "\ngo", "move\n"}});
    }
}

TEST(Protocol, RefusesPositionsAndKeepsTheGame) {
    EngineProcess engine;
    EXPECT_EQ(Ask(engine, "force\nsetboard" + Game("e2e4 e7e5")), REFUSED);
    for (const std::string position : {"", "k7/8/8/8/8/8/8/K7", "4k3/8/8/8/8/8/8/K3R3 w - -"}) {
        EXPECT_EQ(Ask(engine, "setboard " + position), REFUSED) << position;
    }
    EXPECT_EQ(Ask(engine, "usermove g1f3\neasy\nplayother\nresult 1-0"), "");
    EXPECT_TRUE(ReadFile(engine, "GameLog.pgn").ends_with("]\n\n1. e2e4 e7e5 2. g1f3 1-0\n\n"));
    EXPECT_TRUE(ReadFile(engine, "GameLog").ends_with("_?__black_?_human_?_?_loss_\n"));
}

TEST(Protocol, LogsFinishedGames) {
    EngineProcess engine;
    const std::string start = "force\nresult 1-0 {x}\nnew\nforce\n";
    EXPECT_EQ(Ask(engine,
                  "nopost\nanalyze\nresult 1-0 {x}\nexit\nresult * {x}\n" + start +
                      "level 40 5 0\nname J \"J\" \\D\nrating 2100 0\ncomputer\nics x.org" +
                      Game("e4 e5 Nf3 Nf6 Ng1 Ng8 Nc3 Nf6 Nb1 Nc6 Nf3 Nb8 Nc3 d5") +
                      "\nplayother\nresult 1/2-1/2 {Draw (agreed)} more\n" + start +
                      "ics -\nname Bob\nrating 1900 0\nsetboard 4k3/8/8/8/8/8/R7/4K2R b K - 5 30" +
                      Game("e8d8 e1g1") + "\nplayother\nresult 0-1 {Black wins}"),
              "");
    EXPECT_EQ(ReadLog(engine, "GameLog.fen"),
              "rnbqkb1r/ppp2ppp/5n2/3pp3/4P3/2N2N2/PPPP1PPP/R1BQKB1R w KQkq d6 0 8\n"
              "3k4/8/8/8/8/8/R7/5RK1 b - - 7 31\n");
    EXPECT_EQ(ReadLog(engine, "GameLog"),
              "1.0.3_D_T_x.org_level 40 5 0_white_J \"J\" \\D_program_2100_-_draw_Draw (agreed)\n"
              "1.0.3_D_T_?__black_Bob_human_1900_-_win_Black wins\n");
    EXPECT_EQ(ReadLog(engine, "GameLog.pgn"),
              "[Event \"?\"]\n[Site \"x.org\"]\n[Date \"D\"]\n[Round \"?\"]\n"
              "[White \"Korvane 1.0.3\"]\n[Black \"J \\\"J\\\" \\\\D\"]\n[Result \"1/2-1/2\"]\n"
              "[WhiteElo \"2100\"]\n[BlackElo \"-\"]\n[WhiteType \"program\"]\n"
              "[BlackType \"program\"]\n[Time \"T\"]\n\n"
              "1. e2e4 e7e5 2. g1f3 g8f6 3. f3g1 f6g8 4. b1c3 g8f6 5. c3b1 b8c6 6. g1f3 c6b8\n"
              "7. b1c3 d7d5 1/2-1/2\n\n"
              "[Event \"?\"]\n[Site \"?\"]\n[Date \"D\"]\n[Round \"?\"]\n[White \"Bob\"]\n"
              "[Black \"Korvane 1.0.3\"]\n[Result \"0-1\"]\n[WhiteElo \"-\"]\n[BlackElo \"1900\"]\n"
              "[WhiteType \"human\"]\n[BlackType \"program\"]\n[Time \"T\"]\n[SetUp \"1\"]\n"
              "[FEN \"4k3/8/8/8/8/8/R7/4K2R b K - 5 30\"]\n\n30... e8d8 31. e1g1 0-1\n\n");
}

TEST(Protocol, HearsCommandsWhileThinking) {
    EngineProcess engine;
    // The first move leaves a hint; during the second search hint and book go unanswered, and the
    // line that ends a pause is lost.
    SendLines(engine, "easy\n" + MIDDLE_GAME + "sd 4\ngo\nsd 50\ngo");
    ReadUntil(engine, THINKING + "1\\.\\.\\. .*");
    SendLines(engine, "hint\nbk\npause\nquit\n.\nnopost\n.");
    const std::string heard = ReadUntil(engine, "stat01:.*") + ReadUntil(engine, "stat01:.*");
    EXPECT_TRUE(std::regex_match(heard, std::regex("((" + THINKING + "|stat01:)[^\n]*\n)*")));
    SendLines(engine, "hard\n?\n."); // the last is answered because the engine ponders
    EXPECT_TRUE(ReadUntil(engine, "stat01:.*").starts_with("move "));
    for (const std::string stop : {"?", "new", "force", "time 9", "otim 9", "result *", "undo",
                                   "remove", "exit", "setboard x", "usermove a1a1", "analyze"}) {
        StartThinking(engine, "easy\npost\ngo");
        SendLines(engine, stop);
        ReadUntil(engine, MOVE);
    }
    ReadUntil(engine, THINKING + "1\\.\\.\\. .*");
    // Other lines wait until the search is over.
    SendLines(engine, "exit\nnew\n" + MIDDLE_GAME + "sd 7\ngo");
    ReadUntil(engine, THINKING + "1\\. .*");
    SendLines(engine, "ping 7\nnonsense");
    EXPECT_NE(ReadUntil(engine, MOVE).find("\n 7 "), std::string::npos);
    EXPECT_EQ(ReadUntil(engine, "Error.*"), "pong 7\n" + UNKNOWN + "nonsense\n");
}

TEST(Protocol, HearsCommandsWhilePondering) {
    EngineProcess engine;
    // A single move is played at once, and the game is long after it.
    SendLines(engine, "setboard r5k1/pppq1ppp/2np4/8/8/1Q1P3N/PPPR2PP/4r2K w - - 0 20\ngo\nping 7");
    ReadUntil(engine, "pong 7");
    const std::string heard = Ask(engine, "nopost\nhint\n?\ndraw\nbk\nhard\n.");
    const std::regex expected("(^|\n)Hint: [a-h][1-8][a-h][1-8]\noffer draw\n" + NO_BOOK +
                              "stat01:[^\n]{38}\n$");
    EXPECT_TRUE(std::regex_search(heard, expected)) << heard;
    EXPECT_EQ(Ask(engine, "easy\n."), "");
    StartThinking(engine, "hard\npost\nplayother");
    SendLines(engine, "usermove e1g1");
    ReadUntil(engine, THINKING + "1\\.\\.\\. .*");
    SendLines(engine, "easy\n?");
    ReadUntil(engine, MOVE);
    EXPECT_EQ(Ask(engine, "."), "");
}

TEST(Protocol, Analyses) {
    EngineProcess engine;
    StartThinking(engine, "analyze");
    SendLines(engine, ".\nbk");
    ReadUntil(engine, STATUS);
    ReadUntil(engine, " Book not available!");
    // The number of the thinking lines' first move tells the position.
    const std::string rook = "setboard 4k3/8/8/8/8/8/R7/4K3 w - - 99 80";
    const Exchange STEPS[] = {
        {"usermove e1g1", "1\\.\\.\\."}, {"undo", "1\\."}, {rook, "80\\."}, {"new", "1\\."}};
    for (const auto& [line, number] : STEPS) {
        SendLines(engine, line);
        ReadUntil(engine, THINKING + number + " .*");
    }
    for (const std::string stop : {"usermove e2e5", "setboard x", "remove", "exit"}) {
        SendLines(engine, "nopost\nanalyze\n.");
        ReadUntil(engine, "stat01:.*");
        EXPECT_EQ(Ask(engine, stop + "\n.").find("stat01"), std::string::npos) << stop;
    }
    EXPECT_EQ(Ask(engine, rook + "\nforce\nusermove a2a3\nanalyze\n."),
              "1/2-1/2 {Fifty move rule}\n");
}

TEST(Protocol, ThinksTheSameEveryTimeAndHints) {
    EngineProcess engine, other;
    const auto think = [](EngineProcess& thinker) {
        SendLines(thinker, "new\neasy\nsd 8\nsd\nsd x\ngo");
        const std::regex times("([^\n]{10})[^\n]{8}([^\n]{14}[^\n]*\n)");
        return std::regex_replace(ReadUntil(thinker, MOVE), times, "$1$2");
    };
    const std::string thinking = think(engine);
    EXPECT_EQ(think(engine), thinking);
    EXPECT_EQ(think(other), thinking);
    const std::regex last_lines("\n 8.{19}   1\\. (\\S+) (\\S+)[^\n]*\nmove \\1\n$");
    std::smatch best;
    ASSERT_TRUE(std::regex_search(thinking, best, last_lines)) << thinking;
    EXPECT_EQ(Ask(engine, "hint\nforce\nundo\nhint"), "Hint: " + best[2].str() + "\n");
}

// Interrupts do not end the engine; the end of the input does, as the command does.
TEST(Protocol, EndsInEveryState) {
    for (const std::string command : {"", "easy\ngo", "playother", "analyze"}) {
        for (const std::string last :
             {"quit\n", "quit", "", "usermove e2", "st 5\n", "st 5\nusermove e2"}) {
            SCOPED_TRACE(command + " " + last);
            EngineProcess engine;
            ASSERT_GT(engine.pid, 0);
            EXPECT_EQ(Ask(engine, "xboard"), "");
            if (!command.empty()) StartThinking(engine, command);
            kill(engine.pid, SIGINT);
            kill(engine.pid, SIGTERM);
            SendText(engine, last);
            if (last != "quit\n") CloseInput(engine);
            const Ending ending = WaitForExit(engine);
            EXPECT_EQ(std::to_string(ending.status) + ending.errors, "0");
            EXPECT_EQ(ending.output.ends_with("Illegal move: e2\n"), last.ends_with("usermove e2"));
        }
    }
}

// The input stays open, and the searches have nothing to say.
TEST(Protocol, EndsWhenNobodyListens) {
    for (const std::string command : {"", "easy\ngo", "playother", "analyze"}) {
        SCOPED_TRACE(command);
        EngineProcess engine;
        EXPECT_EQ(Ask(engine, "xboard"), "");
        if (!command.empty()) {
            StartThinking(engine, command);
            SendLines(engine, "nopost\n.");
            ReadUntil(engine, "stat01:.*");
        }
        CloseOutput(engine);
        // The move that it still wants to tell is the end of it.
        EXPECT_EQ(WaitForExit(engine).status, command == "easy\ngo" ? -SIGPIPE : 0);
    }
}

TEST(Protocol, AnswersLinesThatPourInWhileItThinks) {
    EngineProcess engine;
    SendLines(engine, "easy\nnew\n" + MIDDLE_GAME + "sd 6\ngo");
    ReadUntil(engine, THINKING + "1\\. .*");
    std::string lines, answers;
    for (int i = 0; i < 5000; ++i) {
        const std::string number = std::to_string(i);
        lines += "ping " + number + "\nline " + number + "\n";
        answers += "pong " + number + "\n" + UNKNOWN + "line " + number + "\n";
    }
    std::thread front_end([&] { SendText(engine, lines + "ping 5000\n"); });
    const std::string heard = ReadUntil(engine, "pong 5000");
    front_end.join();
    const std::size_t start = heard.find("pong");
    EXPECT_EQ(heard.substr(start), answers + "pong 5000\n");
    EXPECT_TRUE(std::regex_search(heard.substr(0, start), std::regex(MOVE + "\n$")));
}

TEST(Protocol, LosesOnlyTheEntriesOfBrokenLogs) {
    EngineProcess engine;
    const std::filesystem::path directory(engine.directory);
    std::filesystem::create_symlink("/dev/full", directory / "GameLog.fen");
    EXPECT_EQ(mkfifo((directory / "GameLog").c_str(), 0666), 0);
    std::filesystem::create_directory(directory / "GameLog.pgn");
    const rlimit no_bytes{0, 0};
    EXPECT_EQ(prlimit(engine.pid, RLIMIT_FSIZE, &no_bytes, nullptr), 0);
    ExpectAnswers(engine, "easy\nnopost\n",
                  {{"x\nforce" + Game("e4 e5") + "\nplayother\nresult 1-0 {x}", UNKNOWN + "x\n"},
                   {"sd 3\nusermove e2e4", "move\n"}});
    SendLines(engine, "quit");
    EXPECT_EQ(WaitForExit(engine).status, 0);
}

} // namespace
