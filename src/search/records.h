// The interface of the search: limits, callbacks, and the state of the running search. The search
// is the same for all protocols.
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

// Number of nodes between two polls of the limits and the host. The count starts again after each
// poll and each root move.
inline constexpr std::uint64_t NODE_CHECK_INTERVAL = 10'000;

struct SearchLimits {
    // Depth of the last iteration, in quarter-plies. At least three plies are always searched.
    std::int32_t depth;
    std::optional<TimeLeft> clock; // no time limit if empty
    std::uint64_t nodes = 0;       // node limit; 0 if none
    std::span<const Move> moves{}; // root moves to search; all legal moves if empty
    bool is_strict = false;        // true if a stop also ends quiescence searches
};

// A principal variation from the root. `plies` is the depth of the iteration. `score` is in
// centipawns, from the point of view of the side to move at the root.
struct SearchLine {
    std::int32_t plies;
    std::int32_t score;
    std::span<const Move> moves;
};

// Callbacks of the search. Each may be null.
struct SearchHost {
    // Returns true if the search must stop. Called at the first node and then about every
    // NODE_CHECK_INTERVAL nodes. During the call, `board` is a position of the search tree.
    // Quiescence searches call must_stop only if SearchLimits::is_strict is true.
    bool (*must_stop)() = nullptr;
    // Called before each root move, with `board` in the root position. Returns true if the move may
    // be searched. Otherwise the search ends.
    bool (*may_go_on)(const Move& move) = nullptr;
    // Reports a new principal variation.
    void (*tell_line)(const SearchLine& line) = nullptr;
    // Reports the principal variation of a completed iteration.
    void (*tell_iteration)(const SearchLine& line) = nullptr;
};
extern SearchHost search_host;

// State of the running search. Depths and plies are in quarter-plies, times in centiseconds.
struct SearchInfo {
    std::uint64_t nodes;      // nodes searched so far, including the root
    std::uint64_t next_poll;  // value of `nodes` at which the full-width search polls
    std::uint64_t poll_slack; // quiescence searches poll at next_poll + poll_slack; NO_POLL: never
    std::uint64_t node_limit; // 0 if there is no limit
    std::uint64_t start_time;
    std::uint64_t time_limit;     // duration after which the search must stop, or NO_TIME_LIMIT
    TimeLeft clock;               // time left at start_time; unused if time_limit is NO_TIME_LIMIT
    std::uint8_t stop;            // 1 if the full-width search must return
    std::uint8_t stop_quiescence; // 1 if quiescence searches must also return
    std::uint8_t null_move;       // 1 if a null move is on the current search line
    std::uint8_t iid;             // 1 during internal iterative deepening
    std::int32_t max_ply;         // nodes at this ply or deeper start the quiescence search
    std::int32_t deepest_ply;     // deepest ply that a quiescence search reached in this iteration
};
inline constexpr std::uint64_t NO_POLL = std::numeric_limits<std::int64_t>::max();
inline constexpr std::uint64_t NO_TIME_LIMIT = std::numeric_limits<std::uint64_t>::max();
extern SearchInfo search_info;

// Sets up search_info for a search that begins now. The first node polls the limits and the host.
void ResetSearchInfo(const SearchLimits& limits);

// Starts the clock of the running search. `left` is the time left on the engine's clock.
void StartClock(const TimeLeft& left);

// Polls the limits and the host. Sets search_info.stop and returns the new value.
bool MustStop();

inline bool IsNodeLimitReached() {
    return search_info.node_limit != 0 && search_info.nodes >= search_info.node_limit;
}

// Schedules the next poll after NODE_CHECK_INTERVAL nodes, or at the node limit if the limit comes
// first. Called at every poll and after every root move.
inline void SchedulePoll() {
    // If node_limit is 0 (no limit), the difference wraps around to a huge number.
    const std::uint64_t left = search_info.node_limit - search_info.nodes;
    search_info.next_poll = search_info.nodes + std::min(left, NODE_CHECK_INTERVAL);
}

inline constexpr int MOVE_TEXT_FIELD = 32;

// Progress of the search. Times are in centiseconds.
struct AnalyzeInfo {
    std::uint64_t elapsed;
    std::uint64_t nodes;
    std::int32_t depth;       // depth of the iteration, in plies
    std::int32_t moves_left;  // number of root moves that the iteration has not begun to search
    std::int32_t moves_total; // number of root moves
    char move_text[MOVE_TEXT_FIELD]; // current root move; the host must set this text
};
extern AnalyzeInfo analyze_info;

// Limits for the three parts of a search line: the iteration depth in plies, the extensions in
// quarter-plies, and the number of captures in the quiescence search.
inline constexpr std::int32_t MAX_DEPTH_PLIES = 200;
inline constexpr std::int32_t MAX_EXTRA_PLY = Plies(14);
inline constexpr std::int32_t MAX_CAPTURES_IN_A_ROW = SQUARES;
static_assert(MAX_DEPTH_PLIES + MAX_EXTRA_PLY / QUARTER_PLIES + MAX_CAPTURES_IN_A_ROW <
              MAX_LINE_PLIES);

struct PvLine {
    std::int32_t length;
    Move moves[MAX_LINE_PLIES];
};

// Sets `pv` to the move followed by the principal variation of the child.
inline void TakePv(PvLine& pv, const Move& move, const PvLine& child) {
    pv.moves[0] = move;
    std::copy_n(child.moves, child.length, pv.moves + 1);
    pv.length = child.length + 1;
}
