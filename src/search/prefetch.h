// Prefetching: table slots are asked for before they are needed. Memory takes about as long as the
// search of three quiet children, so the slots of three moves ahead are asked for.
#pragma once

#include "board/move.h"
#include "moves/makemove.h"
#include "search/hash.h"

#include <algorithm>
#include <cstdint>

inline constexpr std::int32_t PREFETCH_AHEAD = 3;

// The slots of the position behind a move that will soon be made: in the quiescence table, which a
// child at the horizon needs too, and with `IS_FULL` in the full-width tables. Always inlined,
// because GCC drops calls of functions that only prefetch.
template <bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChild(const Move& move) {
    const std::uint32_t slot = SlotOf(LikelyKeyAfter(move));
    if (IS_FULL) __builtin_prefetch(&hash_tables_1_2[slot]);
    __builtin_prefetch(&hash_table_q[slot]);
}

// Before the first move of a list is made, and before each.
template <bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchFirstChildren(const MoveList& list) {
    for (std::int32_t i = 0; i < std::min(list.count, PREFETCH_AHEAD); ++i) {
        PrefetchChild<IS_FULL>(list.moves[i]);
    }
}
template <bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChildAhead(const MoveList& list, std::int32_t i) {
    if (i + PREFETCH_AHEAD < list.count) PrefetchChild<IS_FULL>(list.moves[i + PREFETCH_AHEAD]);
}
