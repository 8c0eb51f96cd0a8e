// Prefetching of hash-table slots. A cache miss costs about as much time as the search of a few
// quiet positions. Prefetching loads slots before they are probed, several at the same time.
#pragma once

#include "board/move.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "search/hash.h"

#include <algorithm>
#include <cstdint>

inline constexpr std::int32_t PREFETCH_AHEAD = 8;

// Prefetches the hash slots of a key that will soon be probed. The slot in the quiescence table is
// always included, because any child may be at the horizon. `IS_FULL` adds the full-width tables.
// Always inlined, because GCC removes calls of functions that only prefetch.
template <bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchKey(std::uint64_t key) {
    const std::uint32_t slot = SlotOf(key);
    if (IS_FULL) __builtin_prefetch(&hash_tables_1_2[slot]);
    __builtin_prefetch(&hash_table_q[slot]);
}
template <Colour US, bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChild(const Move& move) {
    PrefetchKey<IS_FULL>(LikelyKeyAfter<US>(move));
}

// Prefetches the hash slots of the child PREFETCH_AHEAD moves after index `i`. At index 0, also
// prefetches the slots of all children before that child. Call before the move at index `i` is
// made.
template <Colour US, bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChildren(const MoveList& list, std::int32_t i) {
    if (i == 0) {
        for (std::int32_t j = list.prefetched; j < std::min(list.count, PREFETCH_AHEAD); ++j) {
            PrefetchChild<US, IS_FULL>(list.moves[j]);
        }
    }
    if (i + PREFETCH_AHEAD < list.count) PrefetchChild<US, IS_FULL>(list.moves[i + PREFETCH_AHEAD]);
}

// Generates the captures. Prefetches the hash slots of the first capture's child early, so that the
// slots are loaded while the other captures are generated.
template <Colour US, bool IS_FULL>
[[gnu::always_inline]] inline void GenerateCapturesAhead(MoveList& list, const Move* last_move) {
    const Victims others = GenerateFirstCaptures<US>(list);
    if (list.count > 0) PrefetchChild<US, IS_FULL>(list.moves[list.prefetched++]);
    GenerateOtherCaptures<US>(list, others, last_move);
}
