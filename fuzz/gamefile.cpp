// Fuzzes the book builder with game files. The first byte selects the format (PGN or lines of
// moves) and the minimum number of games for a move: a move that occurs in fewer games is not put
// into the book.
#include "book/bookmaker.h"
#include "harness.h"

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
