// Whole conversations with a UCI front end, a command to a line, with a small book. All moves that
// are told are played.
#include "book/book.h"
#include "book/bookmaker.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "mutate.h"
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

// A search ends after so many nodes and the root move behind them. An input that begins with
// the byte of a pause has more.
constexpr std::uint64_t NODES_OF_A_SEARCH = 40;
constexpr std::uint64_t NODES_OF_A_DEEP_SEARCH = 5'000;
constexpr std::size_t MOST_MEMORY = std::size_t{6} << 20; // clearing larger tables takes long
constexpr int LOOKS_OF_AN_INPUT = 500;
constexpr std::string_view COMMANDS[] = {
    "uci", "debug", "isready",   "setoption", "register", "ucinewgame", "position",
    "go",  "stop",  "ponderhit", "d",         "perft",    "bench",      QUIT_LINE};

constexpr std::string_view LINES[] = {"position startpos",
                                      "position startpos moves %m",
                                      "position fen %f",
                                      "position fen %f moves e2e4",
                                      "go",
                                      "go depth %n",
                                      "go nodes %n",
                                      "go mate %n",
                                      "go movetime %n",
                                      "go infinite",
                                      "go ponder wtime %n btime %n",
                                      "go wtime %n btime %n winc %n binc %n movestogo %n",
                                      "go searchmoves %m %m",
                                      "stop",
                                      "ponderhit",
                                      "\x01",
                                      "isready",
                                      "ucinewgame",
                                      "uci",
                                      "d",
                                      "debug on",
                                      "setoption name Hash value %n",
                                      "setoption name Clear Hash",
                                      "setoption name OwnBook value false",
                                      "setoption name Book File value <empty>",
                                      "setoption name Move Overhead value %n",
                                      "setoption name UCI_AnalyseMode value true",
                                      "setoption name UCI_LimitStrength value true",
                                      "setoption name UCI_Elo value %n",
                                      "register later",
                                      "quit"};

int looks_left = 0;
int mop_ups_left = 0;
std::uint64_t nodes_of_a_search;
std::string output;

// Ends what takes too long.
bool IsEnough() { return looks_left-- <= 0 || search_info.nodes >= nodes_of_a_search; }

constexpr SearchHost HOST = {
    .must_stop = [] { return UCI_HOST.must_stop() || IsEnough(); },
    .may_go_on = [](const Move& move) { return UCI_HOST.may_go_on(move) && !IsEnough(); },
    .tell_line = [](const SearchLine& line) { UCI_HOST.tell_line(line); },
    .tell_iteration = [](const SearchLine& line) { UCI_HOST.tell_iteration(line); }};

// What takes long whatever its limits. One search that mops up is allowed to an input of deep
// searches.
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

// Plays the moves, and takes them back; a word may stand between them.
void CheckLine(std::string_view moves, std::string_view passed_over) {
    int played = 0;
    for (std::string_view word; !(word = NextWord(moves)).empty();) {
        if (word == passed_over) continue;
        Move move;
        Require(FindMove(word, move), "the moves that are told are legal");
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
    ForgetLines();
    InitializeUciOptions();
    ForgetGame();
    search_host = HOST;
    hear_line = HearDuringSearch;
    looks_left = LOOKS_OF_AN_INPUT;
}

// The last position line, and a move more.
std::string LongerGame(std::span<const std::string> before) {
    const auto last = std::find_if(before.rbegin(), before.rend(), [](const std::string& line) {
        return line.starts_with("position ");
    });
    const std::string line = last == before.rend() ? "position startpos" : *last;
    CarryOutLine(line);
    return line + (line.find(" moves ") == std::string::npos ? " moves " : " ") + SomeMove();
}

} // namespace

std::string MutateInput(std::string_view text) {
    Start();
    SetOutput(&output);
    Parts lines = SplitText(text, '\n');
    ChangeParts(lines, [](std::span<const std::string> before) {
        return Roll(3) == 0 ? LongerGame(before) : FilledText(Pick(LINES));
    });
    FinalizeBook();
    return JoinedText(lines, '\n');
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool has_book = [] {
        WriteText("games", "e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 c4 *\nc4 *\n");
        MakeBook(DEFAULT_BOOK_NAME, "games", false, 30, 5);
        return true;
    }();
    SetMostMemory(MOST_MEMORY);
    Start();
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
