// Whole conversations with the command interpreter, a command to a line, with a small book.
#include "book/book.h"
#include "book/bookmaker.h"
#include "game/enginestate.h"
#include "harness.h"
#include "platform/channel.h"
#include "protocol/interpreter.h"
#include "protocol/poll.h"
#include "protocol/thinking.h"
#include "search/request.h"

#include <algorithm>

constexpr std::int32_t MOST_DEPTH = 4 * QUARTER_PLIES; // some thousand nodes

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool has_book = [] {
        WriteText("games", "e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 c4 *\nc4 *\n");
        MakeBook("games.bk", "games", false, 30, 5);
        return InitializeBook("games.bk") == nullptr;
    }();
    Require(has_book, "the book is read");
    search_host = {.must_stop = PollCommands, .tell_line = PrintThinking};
    ResetEngine(true);
    SetInput({reinterpret_cast<const char*>(data), size});
    CommandLine line;
    for (ReceiveCommand(line); line != QUIT_COMMAND; ReceiveCommand(line)) {
        engine_state.depth_limit = std::min(engine_state.depth_limit, MOST_DEPTH);
        ParseCommand(line);
        CheckPosition();
    }
    CheckUndo();
    CheckFen();
    return 0;
}
