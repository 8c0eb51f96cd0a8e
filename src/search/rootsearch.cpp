#include "search/rootsearch.h"

#include "board/move.h"
#include "board/position.h"
#include "board/score.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "search/fsearch.h"
#include "search/hash.h"
#include "search/records.h"
#include "search/timecontrol.h"

#include <algorithm>
#include <functional>
#include <span>

namespace {

constexpr std::int32_t FIRST_DEPTH = Plies(3);
constexpr std::int32_t ASPIRATION_WINDOW = 33; // in centipawns, below and above the last score
// In centipawns. Subtracted from the score of a root move if the score is only an upper bound.
constexpr std::int32_t BOUND_PENALTY = 50;
// In centipawns. Moves whose score is at most this much below the best score count as equally good.
constexpr std::int32_t RANDOM_MARGIN = 3;

struct RootMove {
    Move move;
    std::int32_t score;
    bool is_exact;
};

struct Root {
    std::int32_t count;
    RootMove moves[MAX_MOVES];
    std::int32_t best; // best score of the iteration
    PvLine best_line;
    PvLine child_line;
    bool is_forced; // true if there is only one legal move
};
Root root;

std::span<RootMove> RootMoves() { return SpanOf(root.moves, root.count); }

void TakeRootMoves(const Move* last_move, std::span<const Move> wanted) {
    MoveList list;
    GenerateAllLegalMoves(list, last_move);
    root.count = 0;
    for (const Move& move : list) {
        const auto is_it = [&](const Move& other) { return IsSameMove(move, other); };
        if (!wanted.empty() && std::ranges::none_of(wanted, is_it)) continue;
        root.moves[root.count++] = {move, UNSEARCHED_EVAL, false};
    }
}

void StartSearch(const Move* last_move, const SearchLimits& limits) {
    ResetSearchInfo(limits);
    search_info.nodes = 1; // counts the root node
    TakeRootMoves(last_move, limits.moves);
    root.is_forced = root.count == 1 && limits.moves.empty();
    root.best_line.length = 0;
}

SearchLine BestLine(std::int32_t plies) {
    return {plies, root.best, SpanOf(root.best_line.moves, root.best_line.length)};
}

std::int32_t SearchChild(std::int32_t alpha, std::int32_t beta, std::int32_t depth,
                         const Move& move, PvLine* line) {
    return -FullSearch(-beta, -alpha, depth - QUARTER_PLIES, QUARTER_PLIES, &move, line, 0);
}

// Returns the score of a root move. Call after the move is made. The first move is searched with a
// window around its score in the last iteration, and again with the full window if the new score is
// outside that window. Every other move is searched with a zero window above the best score, and
// again with the window from the best score to MATE_EVAL if the move beats the best score.
std::int32_t SearchRootMove(const RootMove& candidate, bool is_first, std::int32_t depth) {
    const Move& move = candidate.move;
    const std::int32_t last = candidate.score;
    if (is_first && last != UNSEARCHED_EVAL) {
        const std::int32_t low = last - ASPIRATION_WINDOW;
        const std::int32_t high = last + ASPIRATION_WINDOW;
        const std::int32_t score = SearchChild(low, high, depth, move, &root.child_line);
        if (score > low && score < high) return score;
        // If the first search was stopped, its score is outside the window, and the second search
        // is started too. The second search then ends at its first leaf or earlier, but may store
        // entries in the quiescence table.
        return SearchChild(-MATE_EVAL, MATE_EVAL, depth, move, &root.child_line);
    }
    const std::int32_t score = SearchChild(root.best, root.best + 1, depth, move, nullptr);
    if (score <= root.best) return score;
    return SearchChild(root.best, MATE_EVAL, depth, move, &root.child_line);
}

// True if the hash tables contain `score` as the exact score of the move. The probe uses the full
// window. No stored bound is usable for that window, so the probe returns exact scores only.
bool IsExactInTables(const Move& move, std::int32_t score, std::int32_t depth) {
    std::int32_t move_index = NO_MOVE_INDEX;
    MakeMove(move);
    const std::int32_t known =
        ProbeHashTable(board.zobrist_key, -MATE_EVAL, MATE_EVAL, depth - QUARTER_PLIES, move_index);
    UnMakeMove(move);
    return known == -score;
}

void TakeBest(const RootMove& candidate, std::int32_t score, std::int32_t plies) {
    root.best = score;
    TakePv(root.best_line, candidate.move, root.child_line);
    if (search_host.tell_line) search_host.tell_line(BestLine(plies));
}

// Returns false if the node limit is reached or the host ends the search.
bool MayGoOn(const Move& move) {
    return !IsNodeLimitReached() && (!search_host.may_go_on || search_host.may_go_on(move));
}

// Searches the root moves to `depth` quarter-plies. Skips a move if an earlier iteration gave it a
// mate score. Returns early if the search is stopped.
void Iterate(std::int32_t depth) {
    const std::int32_t plies = depth / QUARTER_PLIES;
    search_info.max_ply = depth + std::min(2 * depth, MAX_EXTRA_PLY);
    search_info.deepest_ply = 0;
    root.best = -MATE_EVAL;
    analyze_info.depth = plies;
    analyze_info.moves_left = analyze_info.moves_total = root.count;
    for (std::int32_t i = 0; i < root.count; ++i) {
        RootMove& candidate = root.moves[i];
        if (candidate.score != UNSEARCHED_EVAL && IsMateEval(candidate.score)) continue;
        --analyze_info.moves_left;
        if (!MayGoOn(candidate.move)) search_info.stop = 1;
        if (search_info.stop) return;
        MakeMove(candidate.move);
        const std::int32_t score = SearchRootMove(candidate, i == 0, depth);
        SchedulePoll();
        UnMakeMove(candidate.move);
        if (search_info.stop) return;
        candidate.is_exact = score > root.best || IsExactInTables(candidate.move, score, depth);
        candidate.score = candidate.is_exact ? score : score - BOUND_PENALTY;
        if (score > root.best) TakeBest(candidate, score, plies);
    }
    if (search_host.tell_iteration) search_host.tell_iteration(BestLine(plies));
}

// Returns the first root move if randomness is off. Otherwise returns a random move whose exact
// score is at most RANDOM_MARGIN below the best exact score.
const RootMove& ChooseRootMove() {
    const std::span<const RootMove> moves = RootMoves();
    const auto first = std::ranges::find_if(moves, &RootMove::is_exact);
    std::uint32_t good_moves = 0;
    for (auto move = first; move != moves.end() && move->score >= first->score - RANDOM_MARGIN;
         ++move) {
        if (move->is_exact) ++good_moves;
    }
    if (!engine_state.use_random || good_moves == 0) return moves.front();
    std::uint32_t skipped = RandomU32() % good_moves;
    auto chosen = first;
    while (!chosen->is_exact || skipped-- > 0) {
        ++chosen;
    }
    return *chosen;
}

bool IsSearchOver(std::int32_t score, std::uint64_t iteration_time) {
    if (IsMateEval(score) || root.is_forced) return true;
    if (root.count > 1 && IsMateEval(root.moves[1].score)) return true;
    if (search_info.stop) return true;
    if (search_info.time_limit == NO_TIME_LIMIT) return false;
    return !IsTimeForIteration(search_info.clock, CurrentTimeU64() - search_info.start_time,
                               iteration_time);
}

// Sets `expected_reply` to the second move of the principal variation. Sets a fake move if the
// variation has only one move, if `chosen` ends the game, or if `chosen` and the first move of the
// variation have different squares. `chosen` and the first move may still promote to different
// pieces. If the reply captures the promoted piece, `captured` must therefore be read from the
// board.
void FindExpectedReply(const Move& chosen, Move& expected_reply) {
    SetFakeMove(expected_reply);
    if (root.best_line.length < 2) return;
    MakeMove(chosen);
    if (IsEqualMove(chosen, root.best_line.moves[0]) && !IsEndOfGame(&chosen)) {
        expected_reply = root.best_line.moves[1];
        if (expected_reply.captured) expected_reply.captured = board.position[expected_reply.to];
    }
    UnMakeMove(chosen);
}

} // namespace

SearchLimits GameLimits() {
    SearchLimits limits{.depth = engine_state.depth_limit, .clock = {}};
    if (!engine_state.pondering && !engine_state.analyze_mode) {
        limits.clock = {game_state.engine_time, game_state.time_increment};
    }
    return limits;
}

std::int32_t FindBestMove(Move* best_move, Move* expected_reply, const Move* last_move,
                          const SearchLimits& limits) {
    StartSearch(last_move, limits);
    if (root.count == 0) {
        if (best_move) SetFakeMove(*best_move);
        if (expected_reply) SetFakeMove(*expected_reply);
        return UNSEARCHED_EVAL;
    }
    RootMove chosen;
    std::int32_t depth = FIRST_DEPTH;
    const std::int32_t last_depth = std::max(limits.depth, FIRST_DEPTH);
    for (bool is_over = false; !is_over && depth <= last_depth; depth += QUARTER_PLIES) {
        const std::uint64_t iteration_start = CurrentTimeU64();
        Iterate(depth);
        std::ranges::stable_sort(RootMoves(), std::ranges::greater{}, &RootMove::score);
        chosen = ChooseRootMove();
        is_over = IsSearchOver(chosen.score, CurrentTimeU64() - iteration_start);
    }
    if (best_move) *best_move = chosen.move;
    if (expected_reply) FindExpectedReply(chosen.move, *expected_reply);
    return chosen.score;
}
