// The records of the running search.
#pragma once

#include "board/move.h"
#include "board/position.h"
#include "board/score.h"

#include <algorithm>
#include <cstdint>
#include <limits>

// Nodes between two looks at the clock and the input, below one root move.
inline constexpr std::int32_t NODE_CHECK_INTERVAL = 10'000;

// Depths and plies are in quarter-plies, times in centiseconds.
struct SearchInfo {
    std::uint64_t nodes;       // up to the latest CountNodes, the root included
    std::int32_t node_counter; // nodes left until clock and input are looked at; below 0: overdue
    std::int32_t counted_from; // what node_counter began to count down from
    std::int32_t overdue;      // the node_counter at which a quiescence search looks too
    std::uint64_t node_limit;  // 0: none
    std::uint64_t start_time;
    std::uint64_t time_limit;     // the longest that the search may run, or NO_TIME_LIMIT
    std::uint8_t stop;            // the search must unwind
    std::uint8_t stop_quiescence; // so must a quiescence search; only with strict limits
    std::uint8_t null_move;       // a null move is on the line being searched
    std::uint8_t iid;             // an internal iterative deepening search runs
    std::int32_t max_ply;         // where full width ends and the quiescence search begins
    std::int32_t deepest_ply;     // that the iteration's quiescence search has reached
};
inline constexpr std::int32_t NEVER_OVERDUE = std::numeric_limits<std::int32_t>::min();
inline constexpr std::uint64_t NO_TIME_LIMIT = std::numeric_limits<std::uint64_t>::max();
extern SearchInfo search_info;

// Counts the nodes and asks: is a limit reached, or has the program around the search a reason to
// stop? If so, the search is told.
bool MustStop();

inline bool IsNodeLimitReached() {
    return search_info.node_limit != 0 && search_info.nodes >= search_info.node_limit;
}

// Adds the nodes since the last time to the total, and puts off the next look by an interval, or to
// the limit of nodes. Done at every look and after every root move.
inline void CountNodes() {
    search_info.nodes +=
        static_cast<std::uint64_t>(search_info.counted_from - search_info.node_counter);
    const std::uint64_t left = search_info.node_limit - search_info.nodes; // huge without a limit
    search_info.node_counter = search_info.counted_from =
        static_cast<std::int32_t>(std::min<std::uint64_t>(left, NODE_CHECK_INTERVAL));
}

// Sets a mark of the search for a scope; behind it the mark is what it was before.
struct ScopedMark {
    explicit ScopedMark(std::uint8_t& the_mark) : mark(the_mark), before(the_mark) { mark = 1; }
    ~ScopedMark() { mark = before; }
    ScopedMark(const ScopedMark&) = delete;
    ScopedMark& operator=(const ScopedMark&) = delete;

    std::uint8_t& mark;
    const std::uint8_t before;
};

inline constexpr int MOVE_TEXT_FIELD = 32;

// How far the search is.
struct AnalyzeInfo {
    std::uint64_t elapsed;
    std::uint64_t nodes;
    std::int32_t depth;       // of the iteration, in whole plies
    std::int32_t moves_left;  // root moves of the iteration not yet started
    std::int32_t moves_total; // legal root moves
    char move_text[MOVE_TEXT_FIELD];
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

// Makes the line the move followed by the child's line.
inline void TakePv(PvLine& pv, const Move& move, const PvLine& child) {
    pv.moves[0] = move;
    std::copy_n(child.moves, child.length, pv.moves + 1);
    pv.length = child.length + 1;
}
