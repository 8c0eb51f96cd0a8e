// perft: counts positions, see measure/perft.h, or checks a file of known counts.
#include "measure/perft.h"
#include "frame/startup.h"
#include "game/gamestate.h"
#include "notation/fen.h"
#include "notation/text.h"
#include "play/newgame.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
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

// One field "Dn count" of a line.
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

int Refuse() {
    std::fputs("usage: perft DEPTH [FEN]\n       perft --epd FILE MAXDEPTH\n", stderr);
    return EXIT_FAILURE;
}

bool ReadDepth(const char* text, std::int32_t& depth) {
    return ReadNumber(text, depth) && depth >= 0 && depth <= PERFT_MAX_DEPTH;
}

} // namespace

int main(int argument_count, char** arguments) {
    InitializeTables();
    std::int32_t depth = 0;
    if (argument_count == 4 && std::strcmp(arguments[1], "--epd") == 0) {
        return ReadDepth(arguments[3], depth) ? CheckFile(arguments[2], depth) : Refuse();
    }
    if (argument_count < 2 || argument_count > 3 || !ReadDepth(arguments[1], depth))
        return Refuse();
    const char* fen = argument_count == 3 ? arguments[2] : INITIAL_FEN;
    if (!SetBoardFen(fen)) {
        std::fprintf(stderr, "perft: illegal position: %s\n", fen);
        return EXIT_FAILURE;
    }
    Divide(depth);
    return EXIT_SUCCESS;
}
