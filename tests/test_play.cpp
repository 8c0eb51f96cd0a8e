// The program for a person at a terminal.
#include "cases.h"
#include "engine_process.h"

#include <csignal>
#include <regex>

namespace {

struct PlayProcess : EngineProcess {
    explicit PlayProcess(const std::string& arguments = "--no-book")
        : EngineProcess(arguments, KORVANE_PLAY_BINARY, "", KORVANE_PLAY_BINARY) {}
};

// What it prints when the lines are typed and then the input ends.
std::string Type(PlayProcess& play, const std::string& lines) {
    SendLines(play, lines);
    CloseInput(play);
    const Ending ending = WaitForExit(play);
    EXPECT_EQ(ending.status, 0) << ending.errors;
    return ending.output;
}

void CheckAnswer(const TextCase& test) {
    PlayProcess play;
    const std::string heard = Type(play, ToLines(test.fields[0]));
    EXPECT_TRUE(std::regex_search(heard, std::regex(test.fields[1]))) << heard;
}

const bool HAS_ANSWERS = RegisterFile("Play/Answers", "play.txt", CheckAnswer);

TEST(Play, LogsAGameOnceWithItsPlayersAndResult) {
    PlayProcess play;
    const std::string heard =
        Type(play, "fen k7/8/1K6/8/8/8/8/7R w - - 0 1\nRh8\nundo\nRh8\npgn copy.pgn\nnew\ne4");
    const std::string log = ReadFile(play, "GameLog.pgn");
    EXPECT_TRUE(
        std::regex_search(log, std::regex(R"(\[White "[^?"]+"\]\n\[Black "Korvane [^"]+"\]\n)"
                                          R"(\[Result "1-0"\](.*\n)+1\. Rh8# 1-0\n)")))
        << log;
    EXPECT_EQ(log.rfind("[Event "), log.find("[Event ")) << log;
    EXPECT_NE(ReadFile(play, "copy.pgn").find("1. Rh8# 1-0"), std::string::npos) << heard;
}

TEST(Play, StopsThinkingButKeepsTheGameAtInterrupt) {
    PlayProcess play;
    SendLines(play, "level 3600\ne4");
    ReadUntil(play, "Korvane is thinking\\.\\.\\.");
    kill(play.pid, SIGINT);
    ReadUntil(play, "Korvane plays .*");
    SendLines(play, "analyse");
    ReadUntil(play, "   3 .*");
    kill(play.pid, SIGINT);
    SendLines(play, "fen");
    ReadUntil(play, "(> )?(> )?.* w .* 2");
    kill(play.pid, SIGINT);
    ReadUntil(play, "Type quit, or press Ctrl-C again, to leave.");
    kill(play.pid, SIGTERM);
    EXPECT_EQ(WaitForExit(play).status, 0);
}

TEST(Play, ShowsItsOwnHelp) {
    PlayProcess play("--help");
    EXPECT_TRUE(WaitForExit(play).output.starts_with("Usage: korvane-play [OPTIONS]\n"));
}

} // namespace
