// The main program of korvane-uci, the engine for UCI front ends. If there are arguments, such as
// "bench 5", the program runs them as one command and exits.
#include "board/utility.h"
#include "book/book.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "measure/bench.h"
#include "measure/perft.h"
#include "platform/system.h"
#include "search/hash.h"
#include "uci/commands.h"
#include "uci/go.h"
#include "uci/lines.h"
#include "uci/options.h"
#include "uci/setup.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace {

std::string Join(std::span<const char* const> words) {
    std::string line;
    for (const char* const word : words) {
        if (!line.empty()) line += ' ';
        line += word;
    }
    return line;
}

void PrintUsage() {
    PrintVersion();
    std::printf(
        "\n"
        "Usage: korvane-uci            talk to a UCI front end, which also sets the options\n"
        "       korvane-uci COMMAND    run one command and exit\n"
        "\n"
        "Commands:\n"
        "  d              print the board, its FEN and its hash key\n"
        "  perft [N]      count the positions after N plies, 0 to %d (default: 1)\n"
        "  bench [N]      search fixed positions N plies deep, %d to %d (default: %d)\n"
        "  --version      print the version\n"
        "  --help, -h     print this help\n",
        PERFT_MAX_DEPTH, BENCH_MIN_DEPTH, BENCH_MAX_DEPTH, BENCH_DEFAULT_DEPTH);
}

int command_status = EXIT_SUCCESS; // exit status of a command given as arguments

void Complain(std::string_view text) {
    std::fprintf(stderr, "korvane-uci: %.*s (try korvane-uci --help)\n",
                 static_cast<int>(text.size()), text.data());
    command_status = EXIT_FAILURE;
}

void RunCommandLine(std::span<const char* const> words) {
    const std::string line = Join(words);
    info_listener = Complain;
    if (line == "--version") {
        PrintVersion();
    } else if (IsHelpOption(line)) {
        PrintUsage();
    } else if (IsCommand(words.front())) {
        CarryOutLine(line);
    } else {
        Complain("Unknown command: " + line);
    }
}

void RunConversation() {
    std::string line;
    do {
        WaitForLine(line);
    } while (CarryOutLine(line));
}

} // namespace

int main(int argument_count, char** arguments) {
    PrepareProcess(Interrupts::FATAL);
    InitializeTables();
    // Low strength levels play some random moves. A new seed makes these moves differ between runs.
    SeedRandom(static_cast<std::uint32_t>(SystemTime()));
    // With use_random, the search chooses at random among moves of nearly equal score. The chosen
    // move could then differ from the first move of the last reported line.
    engine_state.use_random = 0;
    InitializeHashTable(engine_state.hash_size);
    InitializeUciOptions();
    ForgetGame();
    search_host = UCI_HOST;
    hear_line = HearDuringSearch;
    const auto words = CommandLineWords(argument_count, arguments);
    if (words.size() > 1) {
        RunCommandLine(words.subspan(1));
    } else {
        RunConversation();
    }
    FinalizeHashTable();
    FinalizeBook();
    return command_status;
}
