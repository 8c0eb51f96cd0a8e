// perft: counts the positions after a number of plies, or checks a file of known counts.
#include "measure/perft.h"
#include "board/utility.h"
#include "frame/startup.h"
#include "game/gamestate.h"
#include "notation/fen.h"
#include "notation/text.h"
#include "play/newgame.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

namespace {

struct Tally {
    int passed;
    int failed;
};

void Fail(Tally& tally, std::string_view what, std::string_view line) {
    std::printf("%.*s: %.*s\n", static_cast<int>(what.size()), what.data(),
                static_cast<int>(line.size()), line.data());
    ++tally.failed;
}

// Checks one count of the position `fen`. The field "D4 197281" means 197281 positions after 4
// plies.
void CheckField(std::string_view field, std::int32_t max_depth, std::string_view fen,
                Tally& tally) {
    const std::string_view depth_word = NextWord(field);
    const std::string_view count_word = NextWord(field);
    std::int32_t depth = 0;
    if (!depth_word.starts_with('D') || !ReadNumber(depth_word.substr(1), depth) || depth < 0 ||
        count_word.find_first_not_of("0123456789") != std::string_view::npos ||
        count_word.empty()) {
        Fail(tally, "unreadable field", fen);
        return;
    }
    if (depth > max_depth) return;
    const std::uint64_t expected = std::strtoull(std::string(count_word).c_str(), nullptr, 10);
    const std::uint64_t nodes = CountLeaves(depth, LastMove());
    if (nodes == expected) {
        ++tally.passed;
        return;
    }
    Fail(tally,
         "depth " + std::to_string(depth) + ": expected " + std::to_string(expected) +
             ", counted " + std::to_string(nodes),
         fen);
}

void CheckLine(std::string_view line, std::int32_t max_depth, Tally& tally) {
    const std::string_view fen = line.substr(0, line.find(';'));
    if (!SetBoardFen(fen) || fen.size() == line.size()) {
        Fail(tally, "unreadable line", line);
        return;
    }
    std::string_view fields = line.substr(fen.size());
    while (!fields.empty()) {
        fields.remove_prefix(1);
        const std::string_view field = fields.substr(0, fields.find(';'));
        CheckField(field, max_depth, fen, tally);
        fields.remove_prefix(field.size());
    }
}

int CheckFile(const char* name, std::int32_t max_depth) {
    std::ifstream file(name);
    if (!file) {
        std::fprintf(stderr, "perft: cannot read %s\n", name);
        return EXIT_FAILURE;
    }
    Tally tally{0, 0};
    for (std::string line; std::getline(file, line);) {
        if (!line.empty()) CheckLine(line, max_depth, tally);
    }
    std::printf("%d passed, %d failed\n", tally.passed, tally.failed);
    return tally.failed == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

void PrintUsage(std::FILE* out) {
    std::fputs("usage: perft [--divide] DEPTH [FEN]   count the positions\n"
               "       perft --epd FILE MAXDEPTH      check a file of known counts\n"
               "--divide prints a count for each first move.\n",
               out);
}

int Refuse() {
    PrintUsage(stderr);
    return EXIT_FAILURE;
}

bool ReadDepth(const char* text, std::int32_t& depth) {
    return ReadNumber(text, depth) && depth >= 0 && depth <= PERFT_MAX_DEPTH;
}

int Count(std::int32_t depth, const char* fen, bool is_divided) {
    if (!SetBoardFen(fen)) {
        std::fprintf(stderr, "perft: illegal position: %s\n", fen);
        return EXIT_FAILURE;
    }
    if (is_divided) {
        Divide(depth);
    } else {
        std::printf("nodes %" PRIu64 "\n", CountLeaves(depth, LastMove()));
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argument_count, char** arguments) {
    InitializeTables();
    std::span<char*> words = SpanOf(arguments, argument_count).subspan(1);
    if (words.size() == 1 && IsHelpOption(words[0])) {
        PrintUsage(stdout);
        return EXIT_SUCCESS;
    }
    bool is_divided = false;
    bool is_file = false;
    for (; !words.empty() && std::string_view(words[0]).starts_with("--");
         words = words.subspan(1)) {
        const std::string_view option = words[0];
        if (option == "--divide") {
            is_divided = true;
        } else if (option == "--epd") {
            is_file = true;
        } else {
            return Refuse();
        }
    }
    std::int32_t depth = 0;
    if (is_file) {
        if (is_divided || words.size() != 2 || !ReadDepth(words[1], depth)) return Refuse();
        return CheckFile(words[0], depth);
    }
    if (words.empty() || words.size() > 2 || !ReadDepth(words[0], depth)) return Refuse();
    return Count(depth, words.size() == 2 ? words[1] : INITIAL_FEN, is_divided);
}
