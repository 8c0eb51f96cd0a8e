// The program for UCI front ends. The words of its command line are a first and only command line
// of theirs, as in "korvane-uci bench".
#include "board/utility.h"
#include "book/book.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "platform/system.h"
#include "search/hash.h"
#include "uci/commands.h"
#include "uci/lines.h"
#include "uci/options.h"
#include "uci/setup.h"
#include "uci/thinking.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

namespace {

std::string Join(std::span<const char* const> words) {
    std::string line;
    for (const char* const word : words) {
        if (!line.empty()) line += ' ';
        line += word;
    }
    return line;
}

// The exit status.
int RunCommandLine(const std::string& line) {
    if (line == "--version") {
        PrintVersion();
    } else if (IsCommand(line)) {
        CarryOutLine(line);
    } else {
        std::fprintf(stderr, "korvane-uci: no command: %s\n", line.c_str());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
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
    SeedRandom(static_cast<std::uint32_t>(SystemTime())); // levels play differently every time
    engine_state.use_random = 0;                          // the best move is that of the best line
    InitializeHashTable(engine_state.hash_size);
    InitializeUciOptions();
    ForgetGame();
    search_host = UCI_HOST;
    int status = EXIT_SUCCESS;
    const auto words = CommandLineWords(argument_count, arguments);
    if (words.size() > 1) {
        status = RunCommandLine(Join(words.subspan(1)));
    } else {
        RunConversation();
    }
    FinalizeHashTable();
    FinalizeBook();
    return status;
}
