// Fuzzes book files. Loads each input as a book, plays games from this book, and lists it.
#include "book/book.h"
#include "book/bookmaker.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"

namespace {

// Plays book moves until the book has no move for the position. Then undoes all moves.
void PlayFromBook() {
    Move move;
    while (GetNextBookMove(move)) {
        MakeForceMove(move);
        UpdateBookHelp();
        SaveIntoStateHistory(move);
        CheckPosition();
    }
    CheckUndo();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteText("book", {reinterpret_cast<const char*>(data), size});
    const bool is_whole = InitializeBook("book") == nullptr;
    ResetEngine(is_whole);
    for (int game = 0; game < 4; ++game) {
        PlayFromBook();
    }
    Require(RunToExit([] { ShowBook("book", "listing"); }) == (is_whole ? -1 : 1),
            "a book that is loaded can be listed, and no other");
    if (is_whole) FinalizeBook();
    return 0;
}
