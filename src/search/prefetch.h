// Prefetching: table slots are asked for before they are needed. Memory takes about as long as the
// search of three quiet children, so the slots of three moves ahead are asked for.
#pragma once

#include "board/move.h"
#include "moves/makemove.h"
#include "search/hash.h"

#include <algorithm>
#include <cstdint>

inline constexpr std::int32_t PREFETCH_AHEAD = 3;

// Always inlined, because GCC drops calls of functions that only prefetch.
[[gnu::always_inline]] inline void PrefetchEntry(const HashEntry* table, std::uint64_t key) {
    const HashEntry& entry = table[SlotOf(key)];
    __builtin_prefetch(&entry.key);
    __builtin_prefetch(&entry.age); // some entries lie across two cache lines
}

// The slots of the position behind a move that will soon be made: in the quiescence table, which a
// child at the horizon needs too, and with `IS_FULL` in the full-width tables.
template <bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChild(const Move& move) {
    const std::uint64_t key = LikelyKeyAfter(move);
    if (IS_FULL) {
        PrefetchEntry(hash_table_2, key);
        PrefetchEntry(hash_table_1, key);
    }
    PrefetchEntry(hash_table_q, key);
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
