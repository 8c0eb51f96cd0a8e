// Fuzzes whole conversations in CECP. Each line of an input is a command. The engine has a small
// book.
#include "board/score.h"
#include "book/book.h"
#include "game/enginestate.h"
#include "harness.h"
#include "platform/channel.h"
#include "protocol/interpreter.h"
#include "protocol/poll.h"
#include "search/records.h"

#include <algorithm>

namespace {

// A search starts no further root move after this many nodes. The larger limit is for inputs that
// begin with "sd ".
constexpr std::uint64_t NODES_OF_A_SEARCH = 40;
constexpr std::uint64_t NODES_OF_A_DEEP_SEARCH = 5'000;
constexpr std::int32_t MOST_DEPTH = Plies(4);
std::uint64_t nodes_of_a_search;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool has_book = [] {
        WriteSmallBook("games.bk");
        return InitializeBook("games.bk") == nullptr;
    }();
    Require(has_book, "the book is read");
    search_host = {.must_stop = PollCommands,
                   .may_go_on =
                       [](const Move& move) {
                           return NoteRootMove(move) && search_info.nodes < nodes_of_a_search;
                       },
                   .tell_line = PrintThinking};
    ResetEngine(true);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const bool is_deep = text.starts_with("sd ");
    nodes_of_a_search = is_deep ? NODES_OF_A_DEEP_SEARCH : NODES_OF_A_SEARCH;
    SetInput(text);
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
