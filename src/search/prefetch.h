// Asking for table slots before they are needed. Memory takes about as long as the search of three
// quiet children, so the keys of that many moves ahead are worth asking for.
#pragma once

#include "board/move.h"
#include "moves/makemove.h"
#include "search/hash.h"

#include <cstdint>

inline constexpr std::int32_t PREFETCH_AHEAD = 3;

// Inlined always: a compiler takes a call that only prefetches for one without effect.
[[gnu::always_inline]] inline void PrefetchEntry(const HashEntry* table, std::uint64_t key) {
    const HashEntry& entry = table[static_cast<std::uint32_t>(key) & HASH_TABLE_MASK];
    __builtin_prefetch(&entry.key);
    __builtin_prefetch(&entry.age); // some entries lie across two cache lines
}

// The slots of the positions behind `count` moves that will soon be made: in the quiescence table,
// which a child at the horizon needs too, and with `IS_FULL` in the full-width tables.
template <bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChildren(const Move* moves, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        const std::uint64_t key = LikelyKeyAfter(moves[i]);
        if (IS_FULL) {
            PrefetchEntry(hash_table_2, key);
            PrefetchEntry(hash_table_1, key);
        }
        PrefetchEntry(hash_table_q, key);
    }
}
