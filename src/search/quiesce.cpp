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
#include <utility>

std::int32_t QuiescenceSearch(std::int32_t alpha, std::int32_t beta, std::int32_t depth,
                              std::int32_t ply, const Move* last_move) {
    assert(alpha < beta);
    assert(ply > 0);
    ++search_info.node_counter;

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

    Move moves[MAX_MOVES];
    std::int32_t count = 0;
    GenerateCaptures(moves, count, last_move);
    if (count > 0 && TypeOf(moves[0].captured) == KING) return MATE_EVAL - ply;
    if (0 < hash_index && hash_index < count) std::swap(moves[0], moves[hash_index]);

    PrefetchChildren<false>(moves, std::min(count, PREFETCH_AHEAD));
    for (std::int32_t i = 0; i < count; ++i) {
        if (i + PREFETCH_AHEAD < count) PrefetchChildren<false>(moves + i + PREFETCH_AHEAD, 1);
        MakeMove(moves[i]);
        const std::int32_t score =
            -QuiescenceSearch(-beta, -alpha, depth - QUARTER_PLIES, ply + QUARTER_PLIES, &moves[i]);
        UnMakeMove(moves[i]);
        if (score > best) {
            best = score;
            best_index = i;
        }
        if (best > alpha) {
            alpha = best;
            bound = BOUND_EXACT;
        }
        if (alpha >= beta) {
            // The place in the list as searched, not in generation order.
            StoreQuiescenceHashTable(zobrist_key, alpha, BOUND_LOWER, best_index);
            return alpha;
        }
    }
    StoreQuiescenceHashTable(zobrist_key, best, bound, best_index);
    return best;
}
