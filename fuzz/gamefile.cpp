// Game files for the book builder: the first byte chooses between PGN and lines of moves, and how
// often a move must have been played.
#include "book/bookmaker.h"
#include "harness.h"
#include "mutate.h"
#include "notation/text.h"

namespace {

constexpr std::string_view WORDS[] = {"1.",
                                      "12...",
                                      "1-0",
                                      "0-1",
                                      "1/2-1/2",
                                      "*",
                                      "$1",
                                      "{a comment}",
                                      "(1. d4 (d5))",
                                      "; to the end",
                                      "%",
                                      "[Event \"x\"]",
                                      "e.p.",
                                      "[Result \"*\"]",
                                      "[SetUp \"1\"]",
                                      "[FEN \"%f\"]",
                                      "\xef\xbb\xbf",
                                      "!?"};

// A word for a line of moves: mostly a move that is legal behind them.
std::string WordAfter(std::span<const std::string> before) {
    if (Roll(4) == 0) return FilledText(Pick(WORDS));
    ResetEngine(false);
    for (const std::string& word : before) {
        PlayUserMove(word);
    }
    return SomeMove();
}

} // namespace

std::string MutateInput(std::string_view text) {
    if (text.empty()) return " ";
    Parts lines = SplitText(text.substr(1), '\n');
    if (Roll(4) == 0) {
        ChangeParts(lines, [](auto) { return FilledText(Pick(WORDS)); });
    } else {
        std::string& line = lines[Roll(lines.size())];
        Parts words = SplitText(line, ' ');
        ChangeParts(words, WordAfter);
        line = JoinedText(words, ' ');
    }
    return text[0] + JoinedText(lines, '\n');
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    ResetEngine(false);
    WriteText("games", {reinterpret_cast<const char*>(data) + 1, size - 1});
    const bool is_pgn = data[0] % 2 == 0;
    const int minimum = data[0] / 2 % 4;
    if (RunToExit([&] { MakeBook("games.bk", "games", is_pgn, 30, minimum); }) >= 0) return 0;
    ShowBook("games.bk", "listing");
    const std::string listing = ReadText("listing");
    MakeBook("again.bk", "listing", false, 30, 1);
    ShowBook("again.bk", "listing");
    Require(listing == ReadText("listing"), "a book built from a listing has the same lines");
    return 0;
}
