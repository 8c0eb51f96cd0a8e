// The transposition tables: search results of positions, by hash key.
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

// Index of a move in its node's move list, in generation order.
inline constexpr std::int32_t NO_MOVE_INDEX = -1;

struct HashEntry {
    std::uint64_t key;
    std::uint64_t data; // score, depth, bound, move index and age, packed
};

// Megabytes are converted as if an entry took 24 bytes (it takes 16), so that the tree does not
// depend on the layout.
inline constexpr std::uint32_t NOMINAL_ENTRY_SIZE = 24;

// A key's entries in the two tables of the full-width search, side by side in one cache line.
struct alignas(2 * sizeof(HashEntry)) HashEntryPair {
    HashEntry in_table_2; // replaced by deeper entries, and after a few plies of the game
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

// Replaces the tables by empty ones of another size. False if there is no memory; the tables then
// keep their size, but are empty too.
bool ResizeHashTable(std::int32_t megabytes);

// Fill level in thousandths, from a sample of the full-width entries.
std::int32_t HashFullness();

// Empties the tables.
void NewHashTable();

// Returns a score usable for the window at the depth, or UNKNOWN_EVAL; an exact score may be
// outside the window. Sets `move_index` to the best move's index or NO_MOVE_INDEX.
std::int32_t ProbeHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                            std::int32_t depth, std::int32_t& move_index);
void StoreHashTable(std::uint64_t key, std::int32_t score, std::int32_t depth, Bound bound,
                    std::int32_t move_index);

// The same for the quiescence search, without depths.
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

// Stores the score as exact in the full-width entries of the key, if there are any.
void ForceHashTable(std::uint64_t key, std::int32_t score);

// Turns a mate score into a bound that holds at every depth; false if it must not be stored.
// `depth` may be null.
bool ConvertMateEvalToHashBound(std::int32_t& score, std::int32_t* depth, Bound& bound);
