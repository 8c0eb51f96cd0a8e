#include "uci/commands.h"

#include "board/position.h"
#include "game/enginestate.h"
#include "measure/bench.h"
#include "measure/perft.h"
#include "notation/diagram.h"
#include "notation/fen.h"
#include "notation/text.h"
#include "uci/lines.h"
#include "uci/options.h"
#include "uci/setup.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>

namespace {

void CarryOutUci(std::string_view) {
    Tell("id name " + std::string(PROGRAM_NAME) + " " + std::string(PROGRAM_VERSION));
    Tell("id author the Korvane developers");
    TellOptions();
    Tell("uciok");
}

void CarryOutDebug(std::string_view arguments) {
    uci_options.is_debugging = NextWord(arguments) == "on";
}

void CarryOutIsReady(std::string_view) { Tell("readyok"); }

void CarryOutNewGame(std::string_view) { ForgetGame(); }

void Ignore(std::string_view) {}

// Prints the board from White's side, then the FEN and the hash key of the position.
void ShowBoard(std::string_view) {
    char key[32];
    std::snprintf(key, sizeof key, "%016" PRIx64, board.zobrist_key);
    Tell(WrittenDiagram({}) + "Fen: " + GetBoardFen() + "\nKey: " + key);
}

// Reads a depth from `least` to `most`. If there is no argument, keeps the default value of
// `depth`. Reports an invalid depth and returns false.
bool ReadDepth(std::string_view arguments, std::int32_t least, std::int32_t most,
               std::int32_t& depth) {
    const std::string_view word = NextWord(arguments);
    if (word.empty() || (ReadNumber(word, depth) && depth >= least && depth <= most)) return true;
    TellInfo("Not a depth from " + std::to_string(least) + " to " + std::to_string(most) + ": " +
             std::string(word));
    return false;
}

void CarryOutPerft(std::string_view arguments) {
    std::int32_t depth = 1;
    if (!ReadDepth(arguments, 0, PERFT_MAX_DEPTH, depth)) return;
    ListenWhileMeasuring();
    Divide(depth);
}

void CarryOutBench(std::string_view arguments) {
    std::int32_t depth = BENCH_DEFAULT_DEPTH;
    if (!ReadDepth(arguments, BENCH_MIN_DEPTH, BENCH_MAX_DEPTH, depth)) return;
    ListenWhileMeasuring();
    RunBench(depth);
    RestoreGame();
}

struct UciCommand {
    std::string_view name;
    LineEffect during_search;
    void (*carry_out)(std::string_view arguments); // receives the text after the name
};

using enum LineEffect;
constexpr UciCommand COMMANDS[] = {
    {"uci", ANSWER, CarryOutUci},
    {"debug", ANSWER, CarryOutDebug},
    {"isready", ANSWER, CarryOutIsReady},
    {"setoption", WAIT, SetUciOption},
    {"register", ANSWER, Ignore},
    {"ucinewgame", WAIT, CarryOutNewGame},
    {"position", WAIT, SetUpGame},
    {"go", WAIT, Go},
    {"stop", STOP, Ignore},
    {"ponderhit", PONDER_HIT, Ignore},
    {"d", WAIT, ShowBoard},
    {"perft", WAIT, CarryOutPerft},
    {"bench", WAIT, CarryOutBench},
    {QUIT_LINE, WAIT, Ignore}, // CarryOutLine returns false, which ends the program
};

// Returns the first known command in the line, or null. Sets `arguments` to the text after the
// command's name.
const UciCommand* FindCommand(std::string_view line, std::string_view& arguments) {
    arguments = line;
    for (std::string_view word; !(word = NextWord(arguments)).empty();) {
        const auto command = std::ranges::find(COMMANDS, word, &UciCommand::name);
        if (command != std::end(COMMANDS)) return command;
    }
    return nullptr;
}

} // namespace

bool IsCommand(std::string_view line) {
    std::string_view arguments;
    return FindCommand(line, arguments) != nullptr;
}

bool CarryOutLine(std::string_view line) {
    std::string_view arguments;
    const UciCommand* const command = FindCommand(line, arguments);
    if (command) {
        command->carry_out(arguments);
    } else if (uci_options.is_debugging) {
        TellInfo("No command: " + std::string(line));
    }
    return !command || command->name != QUIT_LINE;
}

LineEffect HearDuringSearch(std::string_view line) {
    std::string_view arguments;
    const UciCommand* const command = FindCommand(line, arguments);
    if (!command) return ANSWER;
    if (command->during_search == ANSWER) command->carry_out(arguments);
    return command->during_search;
}
