#include "search/hash.h"

#include "board/score.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "platform/enforce.h"
#include "platform/system.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <cstring>

HashEntryPair* hash_tables_1_2;
HashEntry* hash_table_q;
std::uint32_t hash_table_size;
std::uint32_t HASH_TABLE_MASK;

namespace {

constexpr std::uint32_t MEGABYTE = 1 << 20;
constexpr std::uint32_t TABLES = 3;

constexpr std::int32_t MATE_BOUND = MATE_EVAL_THRESHOLD + 1;
constexpr std::int32_t MATE_BOUND_DEPTH = 2000; // above every search depth
constexpr std::int32_t MAX_AGE_DIFFERENCE = 4;  // in plies played in the game

constexpr std::size_t TEXT_SIZE = 128;

// True between the allocation of the tables and the next call of NewHashTable. The tables are then
// still all zeros, so NewHashTable need not clear them.
bool is_fresh = false;

// A bit field of an entry's data word. All fields are signed. Together they fill the word.
struct Field {
    int shift;
    int bits;
};
constexpr Field Behind(Field before, int bits) { return {before.shift + before.bits, bits}; }
constexpr Field AGE = {0, 16};
constexpr Field BOUND = Behind(AGE, 3);
constexpr Field MOVE_INDEX = Behind(BOUND, 11);
constexpr Field DEPTH = Behind(MOVE_INDEX, 12);
constexpr Field SCORE = Behind(DEPTH, 22);
static_assert(SCORE.shift + SCORE.bits == 64);

constexpr bool Fits(Field field, std::int32_t value) { return value < 1 << (field.bits - 1); }
static_assert(Fits(BOUND, BOUND_LOWER) && Fits(MOVE_INDEX, MAX_MOVES - 1) &&
              Fits(DEPTH, MATE_BOUND_DEPTH) && Fits(SCORE, MATE_EVAL));

constexpr std::int32_t Read(Field field, std::uint64_t data) {
    const std::uint64_t at_top = data << (64 - field.bits - field.shift);
    return static_cast<std::int32_t>(static_cast<std::int64_t>(at_top) >> (64 - field.bits));
}

constexpr std::uint64_t Packed(Field field, std::int32_t value) {
    const std::uint64_t at_top = static_cast<std::uint64_t>(value) << (64 - field.bits);
    const std::uint64_t data = at_top >> (64 - field.bits - field.shift);
    assert(Read(field, data) == value);
    return data;
}

constexpr std::uint64_t Packed(std::int32_t score, std::int32_t depth, Bound bound,
                               std::int32_t move_index, std::int32_t age) {
    return Packed(SCORE, score) | Packed(DEPTH, depth) | Packed(BOUND, bound) |
           Packed(MOVE_INDEX, move_index) | Packed(AGE, age);
}

// Key of an empty entry in slot 0. Empty entries in the other slots have key 0. An empty entry thus
// matches no position, because a position with key 0 uses slot 0, and a position with key 1 uses
// slot 1.
constexpr std::uint64_t UNUSED_KEY = 1;

std::size_t PairBytes() { return std::size_t{hash_table_size} * sizeof(HashEntryPair); }
std::size_t EntryBytes() { return std::size_t{hash_table_size} * sizeof(HashEntry); }

// Returns the score of the entry if the score is usable for the window and depth, else
// UNKNOWN_EVAL. Sets `move_index` if the key matches and the bound is exact or lower.
std::int32_t ProbeEntry(const HashEntry& entry, std::uint64_t key, std::int32_t alpha,
                        std::int32_t beta, std::int32_t depth, std::int32_t& move_index) {
    if (entry.key != key) return UNKNOWN_EVAL;
    const std::int32_t bound = Read(BOUND, entry.data);
    if (bound != BOUND_UPPER) move_index = Read(MOVE_INDEX, entry.data);
    if (Read(DEPTH, entry.data) < depth) return UNKNOWN_EVAL;
    const std::int32_t score = Read(SCORE, entry.data);
    switch (bound) {
    case BOUND_EXACT: return score;
    case BOUND_LOWER: return score >= beta ? score : UNKNOWN_EVAL;
    default: return score <= alpha ? score : UNKNOWN_EVAL;
    }
}

// True if the entry must not be replaced. Such an entry is deeper than `depth`, and either has the
// same key or is at most MAX_AGE_DIFFERENCE plies old.
bool IsToKeep(const HashEntry& entry, std::uint64_t key, std::int32_t depth) {
    if (Read(DEPTH, entry.data) <= depth) return false;
    return entry.key == key ||
           std::abs(Read(AGE, entry.data) - game_state.ply_count) <= MAX_AGE_DIFFERENCE;
}

// Allocates all tables. Returns false if there is not enough memory.
bool AllocateTables(std::int32_t megabytes) {
    assert(megabytes >= MIN_HASH_SIZE && megabytes <= MAX_HASH_SIZE);
    const std::uint32_t bytes = static_cast<std::uint32_t>(megabytes) * MEGABYTE;
    hash_table_size = std::bit_floor(bytes / (TABLES * NOMINAL_ENTRY_SIZE));
    HASH_TABLE_MASK = hash_table_size - 1;
    hash_tables_1_2 = static_cast<HashEntryPair*>(AllocateTable(PairBytes()));
    hash_table_q = static_cast<HashEntry*>(AllocateTable(EntryBytes()));
    assert(reinterpret_cast<std::uintptr_t>(hash_tables_1_2) % alignof(HashEntryPair) == 0);
    is_fresh = true;
    return hash_tables_1_2 && hash_table_q;
}

} // namespace

void InitializeHashTable(std::int32_t megabytes) {
    const bool is_allocated = AllocateTables(megabytes);
    char size[TEXT_SIZE];
    char message[2 * TEXT_SIZE];
    const std::uint32_t nominal_bytes = hash_table_size * NOMINAL_ENTRY_SIZE;
    std::snprintf(size, sizeof size, "%d MB total, %d MB with %d entries each",
                  static_cast<int>(nominal_bytes * TABLES / MEGABYTE),
                  static_cast<int>(nominal_bytes / MEGABYTE), static_cast<int>(hash_table_size));
    if (!is_allocated) {
        std::snprintf(message, sizeof message, "Error (cannot create hash tables): %s", size);
        FatalError(message);
    }
    std::snprintf(message, sizeof message, "Created hash tables: %s.", size);
    PrintVerbose(message);
}

bool ResizeHashTable(std::int32_t megabytes) {
    FinalizeHashTable();
    const bool is_resized = AllocateTables(megabytes);
    if (is_resized) {
        engine_state.hash_size = megabytes;
    } else {
        FinalizeHashTable();
        InitializeHashTable(engine_state.hash_size);
    }
    NewHashTable();
    return is_resized;
}

std::int32_t HashFullness() {
    constexpr std::uint32_t SAMPLE = 1000; // number of slots to inspect; every table has more
    return static_cast<std::int32_t>(
        std::count_if(hash_tables_1_2, hash_tables_1_2 + SAMPLE,
                      [](const HashEntryPair& pair) { return pair.in_table_1.key > UNUSED_KEY; }));
}

void FinalizeHashTable() {
    FreeTable(hash_tables_1_2, PairBytes());
    FreeTable(hash_table_q, EntryBytes());
    hash_tables_1_2 = nullptr;
    hash_table_q = nullptr;
}

void NewHashTable() {
    if (!is_fresh) {
        std::memset(hash_tables_1_2, 0, PairBytes());
        std::memset(hash_table_q, 0, EntryBytes());
    }
    hash_tables_1_2->in_table_1.key = hash_tables_1_2->in_table_2.key = UNUSED_KEY;
    hash_table_q->key = UNUSED_KEY;
    is_fresh = false;
}

bool ConvertMateEvalToHashBound(std::int32_t& score, std::int32_t* depth, Bound& bound) {
    if (!IsMateEval(score)) return true;
    const bool is_won = score > 0;
    if (bound == (is_won ? BOUND_UPPER : BOUND_LOWER)) return false;
    score = is_won ? MATE_BOUND : -MATE_BOUND;
    bound = is_won ? BOUND_LOWER : BOUND_UPPER;
    if (depth) *depth = MATE_BOUND_DEPTH;
    return true;
}

std::int32_t ProbeHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                            std::int32_t depth, std::int32_t& move_index) {
    move_index = NO_MOVE_INDEX;
    const HashEntryPair& pair = hash_tables_1_2[SlotOf(key)];
    const std::int32_t score = ProbeEntry(pair.in_table_2, key, alpha, beta, depth, move_index);
    if (score != UNKNOWN_EVAL) return score;
    return ProbeEntry(pair.in_table_1, key, alpha, beta, depth, move_index);
}

void StoreHashTable(std::uint64_t key, std::int32_t score, std::int32_t depth, Bound bound,
                    std::int32_t move_index) {
    if (!ConvertMateEvalToHashBound(score, &depth, bound)) return;
    const std::int32_t age = static_cast<std::int16_t>(game_state.ply_count);
    const HashEntry entry{key, Packed(score, depth, bound, move_index, age)};
    HashEntryPair& pair = hash_tables_1_2[SlotOf(key)];
    pair.in_table_1 = entry;
    if (!IsToKeep(pair.in_table_2, key, depth)) pair.in_table_2 = entry;
}

std::int32_t ProbeQuiescenceHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                                      std::int32_t& move_index) {
    move_index = NO_MOVE_INDEX;
    return ProbeEntry(hash_table_q[SlotOf(key)], key, alpha, beta, 0, move_index);
}

void StoreQuiescenceHashTable(std::uint64_t key, std::int32_t score, Bound bound,
                              std::int32_t move_index) {
    if (!ConvertMateEvalToHashBound(score, nullptr, bound)) return;
    hash_table_q[SlotOf(key)] = {key, Packed(score, 0, bound, move_index, 0)};
}

void ForceHashTable(std::uint64_t key, std::int32_t score) {
    HashEntryPair& pair = hash_tables_1_2[SlotOf(key)];
    for (HashEntry* entry : {&pair.in_table_1, &pair.in_table_2}) {
        if (entry->key != key) continue;
        entry->data = Packed(score, Read(DEPTH, entry->data), BOUND_EXACT,
                             Read(MOVE_INDEX, entry->data), Read(AGE, entry->data));
    }
}
