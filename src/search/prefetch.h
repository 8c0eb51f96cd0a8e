// Prefetching: table slots are asked for before they are needed. Memory takes about as long as the
// search of a few quiet children, and works for several at once.
#pragma once

#include "board/move.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "search/hash.h"

#include <algorithm>
#include <cstdint>

inline constexpr std::int32_t PREFETCH_AHEAD = 8;

// The slots of a position that will soon be searched: in the quiescence table, which a child at the
// horizon needs too, and with `IS_FULL` in the full-width tables. Always inlined, because GCC drops
// calls of functions that only prefetch.
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

// Before the first move of a list is made: the first children, but for the first `asked`, which
// have been asked for. Before each move: one more.
template <Colour US, bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchFirstChildren(const MoveList& list, std::int32_t asked) {
    for (std::int32_t i = asked; i < std::min(list.count, PREFETCH_AHEAD); ++i) {
        PrefetchChild<US, IS_FULL>(list.moves[i]);
    }
}
template <Colour US, bool IS_FULL>
[[gnu::always_inline]] inline void PrefetchChildAhead(const MoveList& list, std::int32_t i) {
    if (i + PREFETCH_AHEAD < list.count) {
        PrefetchChild<US, IS_FULL>(list.moves[i + PREFETCH_AHEAD]);
    }
}

// Generates the captures. The first one's child is asked for before the others are looked for, as
// there is little else to do while memory works for it. Returns how many have been asked for.
template <Colour US, bool IS_FULL>
[[gnu::always_inline]] inline std::int32_t GenerateCapturesAhead(MoveList& list,
                                                                 const Move* last_move) {
    const Victims others = GenerateFirstCaptures<US>(list);
    const bool has_first = list.count > 0;
    if (has_first) PrefetchChild<US, IS_FULL>(list.moves[0]);
    GenerateOtherCaptures<US>(list, others, last_move);
    return has_first ? 1 : 0;
}
