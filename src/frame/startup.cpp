#include "frame/startup.h"

#include "board/bitboard.h"
#include "board/position.h"
#include "board/utility.h"
#include "book/book.h"
#include "book/bookmaker.h"
#include "eval/evaltables.h"
#include "frame/options.h"
#include "game/enginestate.h"
#include "notation/text.h"
#include "platform/enforce.h"
#include "play/newgame.h"
#include "protocol/poll.h"
#include "search/hash.h"
#include "search/records.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <span>
#include <string>
#include <string_view>

namespace {

constexpr std::int32_t BOOK_MAX_PLIES = 30; // a book contains at most this many plies of each game
constexpr std::int32_t BOOK_MIN_COUNT = 5;  // a book move occurs in at least this many PGN games

constexpr std::uint8_t SWITCH = 1;
constexpr std::uint8_t VALUE = 0;

Option options[] = {
    {"--hash-size", "", VALUE, 0},  {"--no-book", "", SWITCH, 0},   {"--no-random", "", SWITCH, 0},
    {"--no-resign", "", SWITCH, 0}, {"--verbose", "", SWITCH, 0},   {"--version", "", SWITCH, 0},
    {"--help", "", SWITCH, 0},      {"--make-book", "", SWITCH, 0}, {"--show-book", "", SWITCH, 0},
    {"--format", "", VALUE, 0},     {"-f", "", VALUE, 0},           {"-o", "", VALUE, 0},
};

// PrintUsage pads each line with blanks to PLAIN_WIDTH. It pads a line that contains "%s" to
// NAMED_WIDTH and then replaces "%s" by the program's name.
constexpr int PLAIN_WIDTH = 79;
constexpr int NAMED_WIDTH = 69;
constexpr std::string_view USAGE[] = {
    "Usage: %s [OPTIONS]",
    "",
    "Options:",
    "  --hash-size MB    specify maximum hash table size in megabytes (default: 128)",
    "  --no-book         disable opening book",
    "  --no-random       disable game variation",
    "  --no-resign       disable game resignation",
    "  --verbose         enable verbose output",
    "  --version         display version information and exit",
    "  --help            display this help and exit",
    "",
    "Book generation:",
    "  %s --make-book --format=pgn -f PGN [-o BOOK]",
    "  %s --make-book --format=txt -f TXT [-o BOOK]",
    "  %s --show-book [-f BOOK] -o TXT",
};

void PrintUsage() {
    constexpr std::string_view NAME_PLACE = "%s";
    for (const std::string_view line : USAGE) {
        const std::size_t place = line.find(NAME_PLACE);
        const bool is_named = place != std::string_view::npos;
        std::string text(line);
        text.resize(static_cast<std::size_t>(is_named ? NAMED_WIDTH : PLAIN_WIDTH), ' ');
        if (is_named) text.replace(place, NAME_PLACE.size(), MY_FILE_NAME);
        std::printf("%s\n", text.c_str());
    }
}

// Returns a copy of the option's value, because GetOptionValueByName stores every value in the same
// static buffer.
std::string ValueOf(std::string_view option) { return GetOptionValueByName(options, option); }

// Returns the option's file name, or the default book's name if the option was not given.
std::string BookNameOf(std::string_view option) {
    return IsPresentOption(options, option) ? ValueOf(option) : DEFAULT_BOOK_NAME;
}

void RunVersion() {
    EnsureOptionConfiguration(options, {{{"--version", true}}});
    PrintVersion();
}

void RunHelp() {
    EnsureOptionConfiguration(options, {{{"--help", true}}});
    PrintVersion();
    std::printf("\n");
    PrintUsage();
}

void RunMakeBook() {
    EnsureOptionConfiguration(
        options, {{{"--make-book", true}, {"--format", true}, {"-f", true}, {"-o", false}}});
    const std::string format = ValueOf("--format");
    if (format != "pgn" && format != "txt") RefuseOptionValue("--format", format);
    const std::string book_name = BookNameOf("-o");
    const std::string input_name = ValueOf("-f");
    MakeBook(book_name.c_str(), input_name.c_str(), format == "pgn", BOOK_MAX_PLIES,
             BOOK_MIN_COUNT);
}

void RunShowBook() {
    EnsureOptionConfiguration(options, {{{"--show-book", true}, {"-f", false}, {"-o", true}}});
    const std::string book_name = BookNameOf("-f");
    const std::string text_name = ValueOf("-o");
    ShowBook(book_name.c_str(), text_name.c_str());
}

struct Action {
    std::string_view option;
    void (*run)();
};

// In order of priority: if the command line contains several of these options, only the first of
// them in this table is carried out. The program then ends.
constexpr Action ACTIONS[] = {{"--version", RunVersion},
                              {"--help", RunHelp},
                              {"--make-book", RunMakeBook},
                              {"--show-book", RunShowBook}};

void ApplySettings() {
    if (IsPresentOption(options, "--hash-size")) {
        const char* value = GetOptionValueByName(options, "--hash-size");
        engine_state.hash_size = 0;
        ReadNumber(value, engine_state.hash_size);
        if (engine_state.hash_size < MIN_HASH_SIZE || engine_state.hash_size > MAX_HASH_SIZE) {
            RefuseOptionValue("--hash-size", value);
        }
    }
    if (IsPresentOption(options, "--no-book")) engine_state.use_book = 0;
    if (IsPresentOption(options, "--no-random")) engine_state.use_random = 0;
    if (IsPresentOption(options, "--no-resign")) engine_state.use_resign = 0;
    if (IsPresentOption(options, "--verbose")) engine_state.verbose = 1;
}

// Loads the default book. If the book is missing or invalid, the engine plays without a book.
void LoadBook() {
    if (!engine_state.use_book) return;
    const std::string name = std::string("\"") + DEFAULT_BOOK_NAME + "\".";
    if (!FileExists(DEFAULT_BOOK_NAME)) {
        engine_state.use_book = 0;
        PrintVerbose("Cannot find file " + name);
    } else if (const char* error = InitializeBook(DEFAULT_BOOK_NAME)) {
        engine_state.use_book = 0;
        PrintVerbose("Cannot use book file (" + std::string(error) + ") " + name);
    }
}

} // namespace

void PrintVersion() {
    std::printf("%s %s %s\n", PROGRAM_NAME.data(), PROGRAM_VERSION.data(), AUTHORSHIP.data());
}

void InitializeTables() {
    std::set_new_handler(RunOutOfMemory);
    InitializeUtility();
    InitializeBitBoard();
    InitializeEvaluate();
    InitializeZobristKeys();
    InitializeEngineState();
}

void ParseParameters(const char* const* arguments, int argument_count) {
    InitializeTables();
    if (argument_count > 0) {
        SetMyFileName(arguments[0]);
        ReadArguments(options, SpanOf(arguments, argument_count).subspan(1));
    }
    for (const Action& action : ACTIONS) {
        if (!IsPresentOption(options, action.option)) continue;
        action.run();
        std::exit(EXIT_SUCCESS);
    }
    ApplySettings();
    InitializeHashTable(engine_state.hash_size);
    LoadBook();
}

void Initialize(int argument_count, const char* const* arguments) {
    ParseParameters(arguments, argument_count);
    search_host = {
        .must_stop = PollCommands, .may_go_on = NoteRootMove, .tell_line = PrintThinking};
    NewGame();
}

void Finalize() {
    FinalizeHashTable();
    if (engine_state.use_book) FinalizeBook();
}
