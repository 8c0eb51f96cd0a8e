// What whoever starts a search hands to it: how far it may go, and whom it asks and tells. The
// search itself knows no protocol.
#pragma once

#include "board/move.h"
#include "search/timecontrol.h"

#include <cstdint>
#include <optional>
#include <span>

// What ends a search that nothing else has ended.
struct SearchLimits {
    std::int32_t
        depth; // of the deepest iteration, in quarter-plies; three plies are searched anyway
    std::optional<TimeLeft> clock; // none: no limit of time
    std::uint64_t nodes = 0;       // 0: no limit
    std::span<const Move> moves{}; // the root moves that are searched; empty: all legal ones
    bool is_strict = false; // long quiescence searches poll the limits and the host, and stop too
};

// The best line so far; `plies` is the depth of the iteration, the score is in centipawns from the
// side to move's point of view.
struct SearchLine {
    std::int32_t plies;
    std::int32_t score;
    std::span<const Move> moves;
};

// The program around the search. What is null is not called.
struct SearchHost {
    // Must the search stop? Called at the first node and then every NODE_CHECK_INTERVAL nodes below
    // a root move, sooner at a node limit. A quiescence search is finished first unless the limits
    // are strict. The board is then somewhere in the tree.
    bool (*must_stop)() = nullptr;
    // May this root move be searched? If not, the search ends. The root is on the board.
    bool (*may_go_on)(const Move& move) = nullptr;
    // There is a new best line.
    void (*tell_line)(const SearchLine& line) = nullptr;
    // An iteration has ended; the line is its best.
    void (*tell_iteration)(const SearchLine& line) = nullptr;
};
extern SearchHost search_host; // the start-up's choice
