// Fuzzes whole conversations in UCI. Each line of an input is a command. The engine has a small
// book. All moves that the engine prints must be legal.
#include "book/book.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "notation/text.h"
#include "play/mopup.h"
#include "play/turns.h"
#include "search/records.h"
#include "uci/commands.h"
#include "uci/go.h"
#include "uci/lines.h"
#include "uci/options.h"
#include "uci/setup.h"

#include <algorithm>

namespace {

// A search ends soon after this many nodes. The larger limit is for inputs that begin with PAUSE.
constexpr std::uint64_t NODES_OF_A_SEARCH = 40;
constexpr std::uint64_t NODES_OF_A_DEEP_SEARCH = 5'000;
constexpr std::size_t MOST_MEMORY = std::size_t{6}
                                    << 20; // in bytes. Larger tables would take long to clear.
constexpr int POLLS_OF_AN_INPUT = 500;
constexpr std::string_view COMMANDS[] = {
    "uci", "debug", "isready",   "setoption", "register", "ucinewgame", "position",
    "go",  "stop",  "ponderhit", "d",         "perft",    "bench",      QUIT_LINE};

int polls_left = 0;
int mop_ups_left = 0;
std::uint64_t nodes_of_a_search;
std::string output;

// True if the search must end: this input has used up its polls, or the search has reached its node
// limit.
bool IsEnough() { return polls_left-- <= 0 || search_info.nodes >= nodes_of_a_search; }

constexpr SearchHost HOST = {
    .must_stop = [] { return UCI_HOST.must_stop() || IsEnough(); },
    .may_go_on = [](const Move& move) { return UCI_HOST.may_go_on(move) && !IsEnough(); },
    .tell_line = [](const SearchLine& line) { UCI_HOST.tell_line(line); },
    .tell_iteration = [](const SearchLine& line) { UCI_HOST.tell_iteration(line); }};

// True for a command that would run too long: the node limit does not end "bench", "perft" or a
// search that forces an elementary mate. An input that begins with PAUSE may start one such mate
// search.
bool IsTooLong(std::string_view command) {
    if (command == "bench" || command == "perft") return true;
    if (command != "go" || !uci_options.limit_strength || !IsElementaryWin()) return false;
    return mop_ups_left-- <= 0;
}

std::string_view CommandOf(std::string_view line) {
    for (std::string_view word; !(word = NextWord(line)).empty();) {
        if (std::ranges::find(COMMANDS, word) != std::end(COMMANDS)) return word;
    }
    return "";
}

// Plays and undoes the moves, and fails if one of them is illegal. Ignores the word `skipped`.
void CheckLine(std::string_view moves, std::string_view skipped) {
    int played = 0;
    for (std::string_view word; !(word = NextWord(moves)).empty();) {
        if (word == skipped) continue;
        Move move;
        Require(FindMove(word, move), "the moves that are printed are legal");
        PlayMove(move);
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
    Require(output.empty() || output.ends_with('\n'), "lines are printed whole");
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool has_book = [] {
        WriteSmallBook(DEFAULT_BOOK_NAME);
        return true;
    }();
    SetMostMemory(MOST_MEMORY);
    ResetEngine(true);
    engine_state.use_random = 0;
    ForgetLines();
    InitializeUciOptions();
    ForgetGame();
    search_host = HOST;
    hear_line = HearDuringSearch;
    polls_left = POLLS_OF_AN_INPUT;
    Require(has_book && engine_state.use_book, "the book is read");
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const bool is_deep = text.starts_with(PAUSE);
    nodes_of_a_search = is_deep ? NODES_OF_A_DEEP_SEARCH : NODES_OF_A_SEARCH;
    mop_ups_left = is_deep ? 1 : 0;
    SetInput(text);
    SetOutput(&output);
    std::string line;
    for (bool goes_on = true; goes_on;) {
        WaitForLine(line);
        const std::string_view command = CommandOf(line);
        if (IsTooLong(command)) continue;
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
