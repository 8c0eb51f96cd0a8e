#include "play/strength.h"

#include "board/position.h"
#include "board/score.h"
#include "board/utility.h"
#include "book/book.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "play/mopup.h"
#include "search/fsearch.h"
#include "search/rootsearch.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>
#include <limits>
#include <span>

namespace {

// Levels below FIRST_SEARCHING_ELO play some moves at random. Levels below FIRST_BOOKISH_ELO leave
// the book early.
constexpr std::int32_t FIRST_SEARCHING_ELO = 1800;
constexpr std::int32_t FIRST_BOOKISH_ELO = 1600;

// At MIN_ELO, the engine uses the book for the first LEAST_BOOK_PLIES plies of a game. Every
// ELO_PER_BOOK_PLY points above MIN_ELO add one ply. From FIRST_BOOKISH_ELO there is no limit.
constexpr std::int32_t LEAST_BOOK_PLIES = 4;
constexpr std::int32_t ELO_PER_BOOK_PLY = 100;

// The node limits at FIRST_SEARCHING_ELO and at MAX_ELO. Between these levels, the limit grows
// exponentially.
constexpr double FIRST_NODES = 80'000;
constexpr double LAST_NODES = 6'000'000;

// The parameters of a level below FIRST_SEARCHING_ELO. Such a level finds some of its moves by a
// search of FIRST_NODES nodes. It picks the other moves at random, after a search of GLANCE_PLIES
// plies has scored all legal moves. The loss of a move is the best score minus the move's score, in
// centipawns. The greater the loss, the less probable the move.
struct NoiseLevel {
    double attention; // share of moves found by a search of FIRST_NODES nodes, 0 to 1
    double tolerance; // a move with this loss is 1/e times as probable as the best move
    double limit;     // moves with this loss or more are never picked
};
// The parameters at MIN_ELO and at FIRST_SEARCHING_ELO. The parameters of the levels between them
// are interpolated.
constexpr NoiseLevel LOWEST = {0.2, 42, 210};
constexpr NoiseLevel HIGHEST = {1.0, 10, 50};
// Above MIN_ELO, `attention` grows in proportion to (elo - MIN_ELO) to the power of this exponent.
// With this exponent, equal Elo steps give about equal steps in strength.
constexpr double ATTENTION_GROWTH = 1.2;
constexpr std::int32_t GLANCE_PLIES = 2;
// ScoreMoves makes a move before each search, so the search is one ply shallower.
constexpr std::int32_t GLANCE_DEPTH = Plies(GLANCE_PLIES - 1);
constexpr std::int32_t GLANCE_MAX_PLY = Plies(4);

double Mix(double from, double to, double share) { return from + (to - from) * share; }

NoiseLevel NoiseLevelOf(std::int32_t elo) {
    const double share =
        std::min(1.0, static_cast<double>(elo - MIN_ELO) / (FIRST_SEARCHING_ELO - MIN_ELO));
    return {Mix(LOWEST.attention, HIGHEST.attention, std::pow(share, ATTENTION_GROWTH)),
            Mix(LOWEST.tolerance, HIGHEST.tolerance, share),
            Mix(LOWEST.limit, HIGHEST.limit, share)};
}

std::uint64_t NodesOf(std::int32_t elo) {
    const double share =
        static_cast<double>(std::max(elo, FIRST_SEARCHING_ELO) - FIRST_SEARCHING_ELO) /
        (MAX_ELO - FIRST_SEARCHING_ELO);
    return static_cast<std::uint64_t>(FIRST_NODES * std::pow(LAST_NODES / FIRST_NODES, share));
}

// Returns a random number in [0, 1). RandomU32 returns only 30 random bits.
double RandomShare() { return RandomU32() / static_cast<double>(std::uint32_t{1} << 30); }

// Scores each move by a search of GLANCE_PLIES plies. If the search is stopped, the moves without a
// score get UNSEARCHED_EVAL.
void ScoreMoves(const MoveList& list, std::int32_t (&scores)[MAX_MOVES]) {
    ResetSearchInfo({.depth = GLANCE_DEPTH, .clock = {}, .is_strict = true});
    // Delays the first poll, so that some moves have a score even if the search is stopped early.
    SchedulePoll();
    search_info.max_ply = GLANCE_MAX_PLY;
    for (std::int32_t i = 0; i < list.count; ++i) {
        MakeMove(list.moves[i]);
        scores[i] = -FullSearch(-MATE_EVAL, MATE_EVAL, GLANCE_DEPTH, QUARTER_PLIES, &list.moves[i],
                                nullptr, 0);
        UnMakeMove(list.moves[i]);
        if (search_info.stop) scores[i] = UNSEARCHED_EVAL;
    }
    analyze_info.depth = GLANCE_PLIES;
}

// Returns the index of a random move. Moves with a higher score are more probable.
std::int32_t PickByLoss(std::span<const std::int32_t> scores, const NoiseLevel& noise) {
    const std::int32_t best = std::ranges::max(scores);
    double weights[MAX_MOVES];
    double sum = 0;
    for (std::int32_t i = 0; i < std::ssize(scores); ++i) {
        const double loss = best - scores[static_cast<std::size_t>(i)];
        weights[i] = loss < noise.limit ? std::exp(-loss / noise.tolerance) : 0;
        sum += weights[i];
    }
    double left = RandomShare() * sum;
    std::int32_t picked = 0;
    for (std::int32_t i = 0; left >= 0 && i < std::ssize(scores); ++i) {
        if (weights[i] == 0) continue;
        left -= weights[i];
        picked = i;
    }
    return picked;
}

std::int32_t PickMove(const NoiseLevel& noise, Move& move) {
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    assert(list.count > 0);
    std::int32_t scores[MAX_MOVES];
    ScoreMoves(list, scores);
    const std::int32_t picked = PickByLoss(SpanOf(scores, list.count), noise);
    move = list.moves[picked];
    return scores[picked];
}

} // namespace

std::int32_t FindMoveOfLevel(std::int32_t elo, Move& move, Move& expected_reply,
                             const SearchLimits& limits) {
    SetFakeMove(expected_reply);
    if (elo == FULL_STRENGTH) return FindBestMove(&move, &expected_reply, LastMove(), limits);
    assert(elo >= MIN_ELO && elo <= MAX_ELO);
    if (IsElementaryWin()) {
        // Clear the node count of the previous search, because FindMopUpMove does not count nodes.
        ResetSearchInfo(limits);
        analyze_info.depth = 1;
        return FindMopUpMove(move);
    }
    const NoiseLevel noise = NoiseLevelOf(elo);
    if (RandomShare() >= noise.attention) return PickMove(noise, move);
    SearchLimits lower = limits;
    lower.nodes = NodesOf(elo);
    if (limits.nodes > 0) lower.nodes = std::min(lower.nodes, limits.nodes);
    return FindBestMove(&move, &expected_reply, LastMove(), lower);
}

std::int32_t BookPliesOfLevel(std::int32_t elo) {
    if (elo == FULL_STRENGTH || elo >= FIRST_BOOKISH_ELO) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return LEAST_BOOK_PLIES + (elo - MIN_ELO) / ELO_PER_BOOK_PLY;
}

bool PickBookMoveOfLevel(std::int32_t elo, Move& move) {
    return game_state.ply_count < BookPliesOfLevel(elo) && PickBookMove(move);
}
