// The transposition tables: what the search learnt about positions, found again by their keys.
#pragma once

#include "board/move.h"
#include "board/score.h"

#include <cstdint>
#include <utility>

enum Bound : std::uint8_t {
    BOUND_UPPER = 0, // the true score is at most the stored one
    BOUND_EXACT = 1,
    BOUND_LOWER = 2 // the true score is at least the stored one
};

// A move index stands for a move by its place in the node's move list in generation order.
inline constexpr std::int32_t NO_MOVE_INDEX = -1;

// What is known of one position.
struct HashEntry {
    std::uint64_t key;
    std::uint64_t data; // score, depth, bound, move index and age, packed
};

// A size in megabytes counts so many bytes for an entry, which takes less. The number of entries,
// and with it the tree of the search, is thus the same whatever the layout.
inline constexpr std::uint32_t NOMINAL_ENTRY_SIZE = 24;

// A key's entries in the two tables of the full-width search, side by side in one cache line.
struct alignas(2 * sizeof(HashEntry)) HashEntryPair {
    HashEntry in_table_2; // deeper entries are kept for a while
    HashEntry in_table_1; // always replaced
};

extern HashEntryPair* hash_tables_1_2; // of the full-width search
extern HashEntry* hash_table_q;        // of the quiescence search: always replaced
extern std::uint32_t hash_table_size;  // entries in each table, a power of two
extern std::uint32_t HASH_TABLE_MASK;

// The slot of a key, the same in all tables.
inline std::uint32_t SlotOf(std::uint64_t key) {
    return static_cast<std::uint32_t>(key) & HASH_TABLE_MASK;
}

// Megabytes of the tables together.
inline constexpr std::int32_t MIN_HASH_SIZE = 1;
inline constexpr std::int32_t MAX_HASH_SIZE = 4095;

// Allocates the tables; a fatal error on failure.
void InitializeHashTable(std::int32_t megabytes);
void FinalizeHashTable();

// Empty tables of another size in place of the present ones. False when there is no memory for
// them; the tables then have the size of before, and are empty too.
bool ResizeHashTable(std::int32_t megabytes);

// How full the tables are, as thousandths of a sample of the full-width entries.
std::int32_t HashFullness();

// Empties the tables.
void NewHashTable();

// A score that answers the window at the depth, or UNKNOWN_EVAL; an exact one may lie outside the
// window. `move_index` gets the best move's or NO_MOVE_INDEX.
std::int32_t ProbeHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                            std::int32_t depth, std::int32_t& move_index);
void StoreHashTable(std::uint64_t key, std::int32_t score, std::int32_t depth, Bound bound,
                    std::int32_t move_index);

// The same for the quiescence search, which knows no depth.
std::int32_t ProbeQuiescenceHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                                      std::int32_t& move_index);
void StoreQuiescenceHashTable(std::uint64_t key, std::int32_t score, Bound bound,
                              std::int32_t move_index);

// Swaps the move at the index with the first. An index outside the list (a key collision) is
// ignored.
inline void PutHashMoveFirst(MoveList& list, std::int32_t index) {
    if (index <= 0 || index >= list.count) return;
    std::swap(list.moves[0], list.moves[index]);
    list.prefetched = 0;
}

// Makes the score exact in the full-width entries of the key, where there are any.
void ForceHashTable(std::uint64_t key, std::int32_t score);

// Turns a mate score into a bound that holds at every depth; false when it must not be stored.
// `depth` may be null.
bool ConvertMateEvalToHashBound(std::int32_t& score, std::int32_t* depth, Bound& bound);
