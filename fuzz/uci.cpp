// Whole conversations with a UCI front end, a command to a line, with a small book. All moves that
// are told are played.
#include "book/book.h"
#include "book/bookmaker.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "notation/text.h"
#include "play/turns.h"
#include "search/hash.h"
#include "search/records.h"
#include "uci/commands.h"
#include "uci/lines.h"
#include "uci/options.h"
#include "uci/setup.h"
#include "uci/thinking.h"

#include <algorithm>

namespace {

// A search ends after so many nodes and the root move behind them. An input that lets a search go
// on has more.
constexpr std::uint64_t NODES_OF_A_SEARCH = 100;
constexpr std::uint64_t NODES_OF_A_DEEP_SEARCH = 5'000;
constexpr int LOOKS_OF_AN_INPUT = 500;
constexpr std::string_view COMMANDS[] = {
    "uci", "debug", "isready",   "setoption", "register", "ucinewgame", "position",
    "go",  "stop",  "ponderhit", "d",         "perft",    "bench",      QUIT_LINE};

int looks_left = 0;
std::uint64_t nodes_of_a_search;
std::string output;

// Ends what takes too long.
bool IsEnough() { return looks_left-- <= 0 || search_info.nodes >= nodes_of_a_search; }

constexpr SearchHost HOST = {
    .must_stop = [] { return UCI_HOST.must_stop() || IsEnough(); },
    .may_go_on = [] { return UCI_HOST.may_go_on() && !IsEnough(); },
    .tell_line = [](const SearchLine& line) { UCI_HOST.tell_line(line); },
    .tell_iteration = [](const SearchLine& line) { UCI_HOST.tell_iteration(line); }};

std::string_view CommandOf(std::string_view line) {
    for (std::string_view word; !(word = NextWord(line)).empty();) {
        if (std::ranges::find(COMMANDS, word) != std::end(COMMANDS)) return word;
    }
    return "";
}

// Plays the moves, and takes them back; a word may stand between them.
void CheckLine(std::string_view moves, std::string_view passed_over) {
    int played = 0;
    for (std::string_view word; !(word = NextWord(moves)).empty();) {
        if (word == passed_over) continue;
        Move move;
        Require(FindMove(word, move) && PlayMove(word), "the moves that are told are legal");
        ++played;
    }
    Require(played > 0, "a line has moves");
    while (played-- > 0) {
        UndoMove();
    }
}

void CheckOutput(std::string_view command) {
    constexpr std::string_view CHOICE = "bestmove ", LINE = " pv ";
    int choices = 0;
    Require(output.empty() || output.ends_with('\n'), "lines are told whole");
    for (std::string_view rest = output; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(line.size() + 1);
        const std::size_t pv = line.find(LINE);
        if (line == "bestmove (none)") {
            Require(!HasLegalMove(LastMove()), "there is no move to choose");
            ++choices;
        } else if (line.starts_with(CHOICE)) {
            CheckLine(line.substr(CHOICE.size()), "ponder");
            ++choices;
        } else if (line.starts_with("info depth ") && pv != std::string_view::npos) {
            CheckLine(line.substr(pv + LINE.size()), "");
        }
    }
    Require(choices == (command == "go"), "a search has one best move, and nothing else has any");
}

void Start() {
    ResetEngine(true);
    engine_state.use_random = 0;
    ResizeHashTable(1);
    ForgetLines();
    InitializeUciOptions();
    ForgetGame();
    search_host = HOST;
    looks_left = LOOKS_OF_AN_INPUT;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool has_book = [] {
        WriteText("games", "e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 c4 *\nc4 *\n");
        MakeBook(DEFAULT_BOOK_NAME, "games", false, 30, 5);
        return true;
    }();
    Start();
    Require(has_book && engine_state.use_book, "the book is read");
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const bool is_deep = text.find(PAUSE) != std::string_view::npos;
    nodes_of_a_search = is_deep ? NODES_OF_A_DEEP_SEARCH : NODES_OF_A_SEARCH;
    SetInput(text);
    SetOutput(&output);
    std::string line;
    for (bool goes_on = true; goes_on;) {
        WaitForLine(line);
        const std::string_view command = CommandOf(line);
        if (command == "bench" || command == "perft") continue; // they take long
        output.clear();
        goes_on = CarryOutLine(line);
        CheckPosition();
        CheckOutput(command);
    }
    CheckUndo();
    CheckFen();
    FinalizeBook();
    return 0;
}
