// The hash tables (transposition tables) store search results of positions by hash key.
#pragma once

#include "board/move.h"
#include "board/score.h"

#include <cstdint>
#include <utility>

enum Bound : std::uint8_t {
    BOUND_UPPER = 0, // the true score is at most the stored score
    BOUND_EXACT = 1,
    BOUND_LOWER = 2 // the true score is at least the stored score
};

// Means that there is no move. All other indices count the moves of a node from 0: in generation
// order, or after a cutoff and in the quiescence search in the order of the searched list.
inline constexpr std::int32_t NO_MOVE_INDEX = -1;

struct HashEntry {
    std::uint64_t key;
    std::uint64_t data; // score, depth, bound, move index and age
};

// Entry size in bytes for the conversion of megabytes to a number of entries. The real entry size
// is 16 bytes. With a fixed nominal size, a change of the entry layout changes neither the number
// of entries nor the results of the search.
inline constexpr std::uint32_t NOMINAL_ENTRY_SIZE = 24;

// The two tables of the full-width search are interleaved: the two entries of a slot share a cache
// line.
struct alignas(2 * sizeof(HashEntry)) HashEntryPair {
    HashEntry in_table_2; // depth-preferred; old entries are replaced
    HashEntry in_table_1; // always replaced
};

extern HashEntryPair* hash_tables_1_2; // the two tables of the full-width search
extern HashEntry* hash_table_q;        // table of the quiescence search; always replaced
extern std::uint32_t hash_table_size;  // number of entries in each table, a power of two
extern std::uint32_t HASH_TABLE_MASK;

// Returns the slot of a key. The slot is the same in all tables.
inline std::uint32_t SlotOf(std::uint64_t key) {
    return static_cast<std::uint32_t>(key) & HASH_TABLE_MASK;
}

// Limits for the total size of the tables, in megabytes.
inline constexpr std::int32_t MIN_HASH_SIZE = 1;
inline constexpr std::int32_t MAX_HASH_SIZE = 4095;

// Allocates the tables. Ends the program with an error message if there is not enough memory.
void InitializeHashTable(std::int32_t megabytes);
void FinalizeHashTable();

// Replaces the tables by empty tables of another size. Returns false if there is not enough memory.
// In this case, the tables keep their old size, but their contents are lost.
bool ResizeHashTable(std::int32_t megabytes);

// Returns the fill level of the full-width tables in thousandths, measured on a sample.
std::int32_t HashFullness();

// Empties the tables.
void NewHashTable();

// Returns a stored score that is usable for the window and depth, or UNKNOWN_EVAL if there is none.
// An exact score is usable even outside the window. Sets `move_index` to the index of the stored
// best move, or to NO_MOVE_INDEX.
std::int32_t ProbeHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                            std::int32_t depth, std::int32_t& move_index);
void StoreHashTable(std::uint64_t key, std::int32_t score, std::int32_t depth, Bound bound,
                    std::int32_t move_index);

// Probe and store entries of the quiescence table. These entries have no depth.
std::int32_t ProbeQuiescenceHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                                      std::int32_t& move_index);
void StoreQuiescenceHashTable(std::uint64_t key, std::int32_t score, Bound bound,
                              std::int32_t move_index);

// Swaps the move at the index with the first move. Ignores an index outside the list: such an index
// can come from an entry of another position with the same key.
inline void PutHashMoveFirst(MoveList& list, std::int32_t index) {
    if (index <= 0 || index >= list.count) return;
    std::swap(list.moves[0], list.moves[index]);
    list.prefetched = 0;
}

// Stores an exact score in the full-width entries of this key. Does nothing if there is no such
// entry.
void ForceHashTable(std::uint64_t key, std::int32_t score);

// Prepares a score for the table. Replaces a mate score by a less precise one that is valid at
// every search depth: a lower bound for a win, an upper bound for a loss. Also sets `bound`, and
// sets `depth` (if not null) above every search depth. Leaves other scores unchanged. Returns false
// if the score must not be stored: a win that is only an upper bound or a loss that is only a lower
// bound does not prove a mate.
bool ConvertMateEvalToHashBound(std::int32_t& score, std::int32_t* depth, Bound& bound);
