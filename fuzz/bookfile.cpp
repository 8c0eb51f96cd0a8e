// Book files: loaded, listed, and played from.
#include "book/book.h"
#include "book/bookmaker.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "mutate.h"

namespace {

// Plays book moves to the end of the book.
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

// The book with one of its numbers changed, or one of the bytes of a move.
std::string DamagedBook(std::string text) {
    constexpr std::size_t STEP = 4; // of numbers, and of the groups of bytes
    if (text.size() < STEP) return text;
    const std::size_t place = Roll(text.size() / STEP) * STEP;
    if (Roll(4) == 0) {
        text[place + Roll(STEP)] = static_cast<char>(Roll(256));
        return text;
    }
    std::size_t number = 0;
    for (std::size_t i = 0; i < STEP; ++i) {
        number |= std::size_t{static_cast<unsigned char>(text[place + i])} << (8 * i);
    }
    switch (Roll(4)) {
    case 0: ++number; break;
    case 1: --number; break;
    case 2: number = Roll(64); break;
    default: number = Roll(text.size() / STEP) * STEP;
    }
    for (std::size_t i = 0; i < STEP; ++i) {
        text[place + i] = static_cast<char>(number >> (8 * i));
    }
    return text;
}

} // namespace

// A whole book gets a line more, or is damaged.
std::string MutateInput(std::string_view text) {
    WriteText("book", text);
    MoveTrieNode root;
    const bool is_whole = ReadBook(root, "book") == nullptr;
    if (!is_whole || Roll(2) == 0) {
        FreeMoveTrie(root);
        return DamagedBook(std::string(text));
    }
    PlaySomeMoves(1 + Roll(12));
    const auto count = static_cast<std::size_t>(state_history.count);
    InsertIntoMoveTrie(root, {state_history.moves + 1, count}, false);
    WriteMoveTrie(root, "book", 1);
    FreeMoveTrie(root);
    return ReadText("book");
}

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
