// The interface of the search, limits and callbacks, and the records of the running search. The
// search itself knows no protocol.
#pragma once

#include "board/move.h"
#include "board/position.h"
#include "board/score.h"
#include "search/timecontrol.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

// Nodes between two polls of the limits and the host, below one root move.
inline constexpr std::uint64_t NODE_CHECK_INTERVAL = 10'000;

// The limits of a search.
struct SearchLimits {
    // The deepest iteration, in quarter-plies; at least three plies are searched.
    std::int32_t depth;
    std::optional<TimeLeft> clock; // none: no limit of time
    std::uint64_t nodes = 0;       // 0: no limit
    std::span<const Move> moves{}; // the root moves to search; empty: all legal ones
    bool is_strict = false; // long quiescence searches poll the limits and the host, and stop too
};

// The best line so far; `plies` is the depth of the iteration, the score is in centipawns from the
// side to move's point of view.
struct SearchLine {
    std::int32_t plies;
    std::int32_t score;
    std::span<const Move> moves;
};

// The callbacks of the search; null ones are not called.
struct SearchHost {
    // Must the search stop? Called at the first node and then every NODE_CHECK_INTERVAL nodes below
    // a root move, sooner at a node limit. A quiescence search is finished first unless the limits
    // are strict. The board is then somewhere in the tree.
    bool (*must_stop)() = nullptr;
    // May this root move be searched? If not, the search ends. The root is on the board.
    bool (*may_go_on)(const Move& move) = nullptr;
    // Reports a new best line.
    void (*tell_line)(const SearchLine& line) = nullptr;
    // Reports the best line of a finished iteration.
    void (*tell_iteration)(const SearchLine& line) = nullptr;
};
extern SearchHost search_host; // set at start-up

// Depths and plies are in quarter-plies, times in centiseconds.
struct SearchInfo {
    std::uint64_t nodes;     // the root included
    std::uint64_t next_poll; // the node count at which the full-width search polls
    std::uint64_t
        poll_slack; // a quiescence search polls this many nodes later, or with NO_POLL never
    std::uint64_t node_limit; // 0: none
    std::uint64_t start_time;
    std::uint64_t time_limit;     // the search is stopped after this, or NO_TIME_LIMIT
    TimeLeft clock;               // for the time between iterations; unused with NO_TIME_LIMIT
    std::uint8_t stop;            // the search must unwind
    std::uint8_t stop_quiescence; // so must a quiescence search; never with NO_POLL
    std::uint8_t null_move;       // a null move is on the line being searched
    std::uint8_t iid;             // an internal iterative deepening search runs
    std::int32_t max_ply;         // where full width ends and the quiescence search begins
    std::int32_t deepest_ply;     // that the iteration's quiescence search has reached
};
inline constexpr std::uint64_t NO_POLL = std::numeric_limits<std::int64_t>::max();
inline constexpr std::uint64_t NO_TIME_LIMIT = std::numeric_limits<std::uint64_t>::max();
extern SearchInfo search_info;

// Sets up search_info for a search that begins now. No node is counted yet; the first one polls.
void ResetSearchInfo(const SearchLimits& limits);

// Gives the running search a clock and starts it.
void StartClock(const TimeLeft& left);

// Polls the limits, the clock and the host. Sets search_info.stop and returns it.
bool MustStop();

inline bool IsNodeLimitReached() {
    return search_info.node_limit != 0 && search_info.nodes >= search_info.node_limit;
}

// Puts the next poll an interval ahead, or at the node limit if that is nearer. Called at every
// poll and after every root move.
inline void SchedulePoll() {
    const std::uint64_t left = search_info.node_limit - search_info.nodes; // huge without a limit
    search_info.next_poll = search_info.nodes + std::min(left, NODE_CHECK_INTERVAL);
}

inline constexpr int MOVE_TEXT_FIELD = 32;

// Progress of the search; times in centiseconds.
struct AnalyzeInfo {
    std::uint64_t elapsed;
    std::uint64_t nodes;
    std::int32_t depth;              // of the iteration, in whole plies
    std::int32_t moves_left;         // root moves of the iteration not yet started
    std::int32_t moves_total;        // legal root moves
    char move_text[MOVE_TEXT_FIELD]; // the root move being searched; written by the host
};
extern AnalyzeInfo analyze_info;

// The longest search line: the depth of the iteration, which the user may ask for, the extensions
// beyond it (in quarter-plies), and the captures of a quiescence search.
inline constexpr std::int32_t MAX_DEPTH_PLIES = 200;
inline constexpr std::int32_t MAX_EXTRA_PLY = Plies(14);
inline constexpr std::int32_t MAX_CAPTURES_IN_A_ROW = SQUARES;
static_assert(MAX_DEPTH_PLIES + MAX_EXTRA_PLY / QUARTER_PLIES + MAX_CAPTURES_IN_A_ROW <
              MAX_LINE_PLIES);

// A principal variation.
struct PvLine {
    std::int32_t length;
    Move moves[MAX_LINE_PLIES];
};

// Sets the line to the move, followed by the child's line.
inline void TakePv(PvLine& pv, const Move& move, const PvLine& child) {
    pv.moves[0] = move;
    std::copy_n(child.moves, child.length, pv.moves + 1);
    pv.length = child.length + 1;
}
