#include "uci/options.h"

#include "book/book.h"
#include "game/enginestate.h"
#include "notation/text.h"
#include "platform/enforce.h"
#include "platform/system.h"
#include "play/strength.h"
#include "search/hash.h"
#include "uci/lines.h"
#include "uci/setup.h"

#include <algorithm>
#include <charconv>
#include <string>

UciOptions uci_options;

namespace {

constexpr std::int32_t DEFAULT_OVERHEAD = 5;
constexpr std::int32_t MAX_OVERHEAD = 5000;
constexpr std::int32_t DEFAULT_ELO = 1600;
constexpr std::string_view NO_FILE = "<empty>";

enum class Kind : std::uint8_t { CHECK, SPIN, BUTTON, STRING };

// The value of an option: `text` for a string, `number` for a spin or a check (0 or 1).
struct Value {
    std::int32_t number;
    std::string_view text;
};

struct UciOption {
    std::string_view name;
    Kind kind;
    Value standard;
    std::int32_t least, most; // minimum and maximum of a spin option
    void (*set)(const Value& value);
};

void Ignore(const Value&) {}

void SetHash(const Value& value) {
    if (value.number == engine_state.hash_size) return;
    if (!ResizeHashTable(value.number)) {
        TellInfo("No memory for Hash " + std::to_string(value.number));
    }
}

void ClearHash(const Value&) { NewHashTable(); }

void SetOwnBook(const Value& value) { uci_options.own_book = value.number != 0; }

// Looks for the book in the current folder and then in the program's folder. Returns the path, or
// `name` if neither folder contains the file.
std::string FindBook(std::string_view name) {
    const std::string here(name);
    const std::string beside = NameOf(PathOf(ProgramFolder()) / PathOf(here));
    return !IsPlainFile(here.c_str()) && IsPlainFile(beside.c_str()) ? beside : here;
}

// Loads the book and sets use_book to 1. Returns null on success and an error message on failure.
const char* LoadBook(const std::string& file_name) {
    if (!FileExists(file_name.c_str())) return "there is no such file";
    const char* error = ReplaceBook(file_name.c_str());
    if (!error) engine_state.use_book = 1;
    return error;
}

void SetBookFile(const Value& value) {
    if (value.text.empty() || value.text == NO_FILE) {
        FinalizeBook();
        engine_state.use_book = 0;
    } else if (const char* error = LoadBook(FindBook(value.text))) {
        TellInfo("Cannot use the book " + std::string(value.text) + ": " + error);
    }
    RestoreGame(); // replays the game's moves in the new book
}

void SetOverhead(const Value& value) { uci_options.move_overhead = value.number; }
void SetAnalyseMode(const Value& value) { uci_options.analyse_mode = value.number != 0; }

// Clears the transposition tables, so that results of a stronger search do not help a lower level.
void SetLimitStrength(const Value& value) {
    uci_options.limit_strength = value.number != 0;
    NewHashTable();
}

void SetElo(const Value& value) {
    uci_options.elo = value.number;
    NewHashTable();
}

// NOLINTNEXTLINE(cert-err58-cpp): without memory for this text the program cannot start.
const std::string ABOUT =
    std::string(PROGRAM_NAME) + " " + std::string(PROGRAM_VERSION) + " " + std::string(AUTHORSHIP);

using enum Kind;
const UciOption OPTIONS[] = {
    {"Hash", SPIN, {DEFAULT_HASH_SIZE, {}}, MIN_HASH_SIZE, MAX_HASH_SIZE, SetHash},
    {"Clear Hash", BUTTON, {}, 0, 0, ClearHash},
    {"Ponder", CHECK, {}, 0, 0, Ignore}, // no effect: "go ponder" starts pondering
    {"OwnBook", CHECK, {1, {}}, 0, 0, SetOwnBook},
    {"Book File", STRING, {0, DEFAULT_BOOK_NAME}, 0, 0, SetBookFile},
    {"Move Overhead", SPIN, {DEFAULT_OVERHEAD, {}}, 0, MAX_OVERHEAD, SetOverhead},
    {"UCI_AnalyseMode", CHECK, {}, 0, 0, SetAnalyseMode},
    {"UCI_LimitStrength", CHECK, {}, 0, 0, SetLimitStrength},
    {"UCI_Elo", SPIN, {DEFAULT_ELO, {}}, MIN_ELO, MAX_ELO, SetElo},
    {"UCI_EngineAbout", STRING, {0, ABOUT}, 0, 0, Ignore},
};

std::string Declaration(const UciOption& option) {
    const std::string start = "option name " + std::string(option.name) + " type ";
    switch (option.kind) {
    case CHECK: return start + "check default " + (option.standard.number ? "true" : "false");
    case SPIN:
        return start + "spin default " + std::to_string(option.standard.number) + " min " +
               std::to_string(option.least) + " max " + std::to_string(option.most);
    case BUTTON: return start + "button";
    default: return start + "string default " + std::string(option.standard.text);
    }
}

// Option names are not case-sensitive.
bool IsSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, LowerCase, LowerCase);
}

std::string_view Trim(std::string_view text) {
    constexpr std::string_view BLANKS = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

// Reads a value of the option. Returns false if the text is not a valid value.
bool ReadValue(const UciOption& option, std::string_view text, Value& value) {
    value = {0, text};
    switch (option.kind) {
    case CHECK: value.number = text == "true"; return text == "true" || text == "false";
    case SPIN: {
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), value.number);
        return error == std::errc{} && end == text.data() + text.size() &&
               value.number >= option.least && value.number <= option.most;
    }
    default: return true;
    }
}

} // namespace

void InitializeUciOptions() {
    engine_state.use_book = 0;
    uci_options = {.own_book = true,
                   .analyse_mode = false,
                   .is_debugging = false,
                   .move_overhead = DEFAULT_OVERHEAD,
                   .limit_strength = false,
                   .elo = DEFAULT_ELO};
    LoadBook(FindBook(DEFAULT_BOOK_NAME));
}

void TellOptions() {
    for (const UciOption& option : OPTIONS) {
        Tell(Declaration(option));
    }
}

void SetUciOption(std::string_view arguments) {
    if (NextWord(arguments) != "name") {
        TellInfo("No name of an option");
        return;
    }
    const std::string name = TakeWordsBefore(arguments, "value");
    const std::string_view text = Trim(arguments);
    const auto option = std::ranges::find_if(
        OPTIONS, [&](const UciOption& candidate) { return IsSameName(candidate.name, name); });
    if (option == std::end(OPTIONS)) {
        TellInfo("Unknown option: " + name);
        return;
    }
    Value value;
    if (!ReadValue(*option, text, value)) {
        TellInfo("Invalid value of " + std::string(option->name) + ": " + std::string(text));
        return;
    }
    option->set(value);
}
