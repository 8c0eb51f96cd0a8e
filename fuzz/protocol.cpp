// Whole conversations with the command interpreter, a command to a line, with a small book.
#include "board/score.h"
#include "book/book.h"
#include "book/bookmaker.h"
#include "game/enginestate.h"
#include "harness.h"
#include "mutate.h"
#include "platform/channel.h"
#include "protocol/interpreter.h"
#include "protocol/poll.h"
#include "search/records.h"

#include <algorithm>

namespace {

// A search ends after so many nodes and the root move behind them. An input that begins with a
// depth has more.
constexpr std::uint64_t NODES_OF_A_SEARCH = 40;
constexpr std::uint64_t NODES_OF_A_DEEP_SEARCH = 5'000;
constexpr std::int32_t MOST_DEPTH = Plies(4);
std::uint64_t nodes_of_a_search;

constexpr std::string_view LINES[] = {"usermove %m",
                                      "usermove %m",
                                      "usermove %m",
                                      "usermove %m",
                                      "%m",
                                      "setboard %f",
                                      "setboard %f",
                                      "level %n %n 0",
                                      "level 0 %n %n",
                                      "level %n %n:%n %n",
                                      "sd %n",
                                      "time %n",
                                      "otim %n",
                                      "new",
                                      "force",
                                      "go",
                                      "playother",
                                      "analyze",
                                      "exit",
                                      "undo",
                                      "remove",
                                      "?",
                                      ".",
                                      "hint",
                                      "bk",
                                      "hard",
                                      "easy",
                                      "post",
                                      "nopost",
                                      "pause",
                                      "resume",
                                      "draw",
                                      "ping %n",
                                      "random",
                                      "computer",
                                      "result 1-0 {x}",
                                      "result %n",
                                      "name x",
                                      "rating %n %n",
                                      "ics x",
                                      "xboard",
                                      "protover 2",
                                      "accepted san",
                                      "rejected san",
                                      "quit"};

void Converse(std::string_view text) {
    static const bool has_book = [] {
        WriteText("games", "e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 c4 *\nc4 *\n");
        MakeBook("games.bk", "games", false, 30, 5);
        return InitializeBook("games.bk") == nullptr;
    }();
    Require(has_book, "the book is read");
    search_host = {.must_stop = PollCommands,
                   .may_go_on =
                       [](const Move& move) {
                           return NoteRootMove(move) && search_info.nodes < nodes_of_a_search;
                       },
                   .tell_line = PrintThinking};
    ResetEngine(true);
    const bool is_deep = text.starts_with("sd ");
    nodes_of_a_search = is_deep ? NODES_OF_A_DEEP_SEARCH : NODES_OF_A_SEARCH;
    SetInput(text);
    CommandLine line;
    for (ReceiveCommand(line); line != QUIT_COMMAND; ReceiveCommand(line)) {
        engine_state.depth_limit = std::min(engine_state.depth_limit, MOST_DEPTH);
        ParseCommand(line);
        CheckPosition();
    }
}

} // namespace

std::string MutateInput(std::string_view text) {
    Parts lines = SplitText(text, '\n');
    ChangeParts(lines, [](std::span<const std::string> before) {
        const std::string_view line = Pick(LINES);
        if (line.find("%m") != std::string_view::npos) Converse(JoinedText(before, '\n') + '\n');
        return FilledText(line);
    });
    return JoinedText(lines, '\n');
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Converse({reinterpret_cast<const char*>(data), size});
    CheckUndo();
    CheckFen();
    return 0;
}
