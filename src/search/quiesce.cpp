#include "search/quiesce.h"

#include "board/position.h"
#include "eval/evaluate.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "search/hash.h"
#include "search/prefetch.h"
#include "search/records.h"

#include <algorithm>
#include <cassert>

std::int32_t QuiescenceSearch(std::int32_t alpha, std::int32_t beta, std::int32_t ply,
                              const Move* last_move) {
    assert(alpha < beta);
    assert(ply > 0);
    if (--search_info.node_counter < search_info.overdue && MustStop()) return STOPPED_EVAL;
    search_info.deepest_ply = std::max(search_info.deepest_ply, ply);

    std::int32_t hash_index = NO_MOVE_INDEX;
    const std::int32_t known = ProbeQuiescenceHashTable(zobrist_key, alpha, beta, hash_index);
    if (known != UNKNOWN_EVAL) return known;

    std::int32_t best = Evaluate();
    std::int32_t best_index = NO_MOVE_INDEX;
    Bound bound = BOUND_UPPER;
    if (best > alpha) {
        alpha = best;
        bound = BOUND_EXACT;
    }
    if (alpha >= beta) {
        StoreQuiescenceHashTable(zobrist_key, alpha, BOUND_LOWER, NO_MOVE_INDEX);
        return alpha;
    }

    MoveList list;
    GenerateCaptures(list, last_move);
    if (HasKingCapture(list)) return MATE_EVAL - ply;
    PutHashMoveFirst(list, hash_index);

    PrefetchFirstChildren<false>(list);
    for (std::int32_t i = 0; i < list.count; ++i) {
        PrefetchChildAhead<false>(list, i);
        const Move& move = list.moves[i];
        MakeMove(move);
        const std::int32_t score = -QuiescenceSearch(-beta, -alpha, ply + QUARTER_PLIES, &move);
        UnMakeMove(move);
        if (search_info.stop) return STOPPED_EVAL;
        if (score > best) {
            best = score;
            best_index = i;
        }
        if (best > alpha) {
            alpha = best;
            bound = BOUND_EXACT;
        }
        if (alpha >= beta) {
            // On purpose the place as searched, here and below, as in the full-width search.
            StoreQuiescenceHashTable(zobrist_key, alpha, BOUND_LOWER, best_index);
            return alpha;
        }
    }
    StoreQuiescenceHashTable(zobrist_key, best, bound, best_index);
    return best;
}
