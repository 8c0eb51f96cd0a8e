#include "search/hash.h"

#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "platform/enforce.h"
#include "platform/system.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <cstring>

HashEntry* hash_table_1;
HashEntry* hash_table_2;
HashEntry* hash_table_q;
std::uint32_t hash_table_size;
std::uint32_t HASH_TABLE_MASK;

namespace {

constexpr std::uint32_t MEGABYTE = 1 << 20;
constexpr std::uint32_t ENTRY_SIZE = sizeof(HashEntry);
constexpr std::uint32_t TABLES = 3;

constexpr std::int32_t MATE_BOUND = MATE_EVAL_THRESHOLD + 1;
constexpr std::int32_t MATE_BOUND_DEPTH = 2000; // more than any search asks for
constexpr std::int32_t MAX_AGE_DIFFERENCE = 4;  // plies for which a deeper entry is kept

constexpr std::size_t TEXT_SIZE = 128;

// The tables are all zeros, as they were allocated. The first NewHashTable comes before any search
// and need not touch their memory.
bool is_fresh = false;

std::size_t TableBytes() { return std::size_t{hash_table_size} * ENTRY_SIZE; }

// A cleared slot must not match any position. Its key 0 can only be looked for in slot 0, so that
// slot gets key 1, which can only be looked for in slot 1.
void ClearTable(HashEntry* table) {
    if (!is_fresh) std::memset(table, 0, TableBytes());
    table[0].key = 1;
}

void Fill(HashEntry& entry, std::uint64_t key, std::int32_t score, std::int32_t depth, Bound bound,
          std::int32_t move_index) {
    entry.key = key;
    entry.score = score;
    entry.depth = static_cast<std::uint16_t>(depth);
    entry.bound = bound;
    entry.move_index = static_cast<std::int16_t>(move_index);
}

// One table's part of a probe.
std::int32_t ProbeEntry(const HashEntry& entry, std::uint64_t key, std::int32_t alpha,
                        std::int32_t beta, std::int32_t depth, std::int32_t& move_index) {
    if (entry.key != key) return UNKNOWN_EVAL;
    const bool is_deep_enough = entry.depth >= depth;
    switch (entry.bound) {
    case BOUND_EXACT:
        move_index = entry.move_index;
        return is_deep_enough ? entry.score : UNKNOWN_EVAL;
    case BOUND_LOWER:
        move_index = entry.move_index;
        return is_deep_enough && entry.score >= beta ? entry.score : UNKNOWN_EVAL;
    case BOUND_UPPER: return is_deep_enough && entry.score <= alpha ? entry.score : UNKNOWN_EVAL;
    default: return UNKNOWN_EVAL;
    }
}

// A deeper entry stays for its own position, and for a few plies of the game for any.
bool IsToKeep(const HashEntry& entry, std::uint64_t key, std::int32_t depth) {
    return entry.depth > depth &&
           (entry.key == key || std::abs(entry.age - game_state.ply_count) <= MAX_AGE_DIFFERENCE);
}

// False when there is no memory for one of them.
bool AllocateTables(std::int32_t megabytes) {
    assert(megabytes >= MIN_HASH_SIZE && megabytes <= MAX_HASH_SIZE);
    const std::uint32_t bytes = static_cast<std::uint32_t>(megabytes) * MEGABYTE;
    hash_table_size = std::bit_floor(bytes / (TABLES * ENTRY_SIZE));
    HASH_TABLE_MASK = hash_table_size - 1;
    for (HashEntry** table : {&hash_table_1, &hash_table_2, &hash_table_q}) {
        *table = static_cast<HashEntry*>(AllocateTable(TableBytes()));
    }
    is_fresh = true;
    return hash_table_1 && hash_table_2 && hash_table_q;
}

} // namespace

void InitializeHashTable(std::int32_t megabytes) {
    const bool is_allocated = AllocateTables(megabytes);
    char size[TEXT_SIZE];
    char message[2 * TEXT_SIZE];
    std::snprintf(size, sizeof size, "%d MB total, %d MB with %d entries each",
                  static_cast<int>((TableBytes() * TABLES) >> 20),
                  static_cast<int>(TableBytes() >> 20), static_cast<int>(hash_table_size));
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
    constexpr std::uint32_t SAMPLE = 1000; // no table is smaller
    return static_cast<std::int32_t>(std::count_if(
        hash_table_1, hash_table_1 + SAMPLE, [](const HashEntry& entry) { return entry.key > 1; }));
}

void FinalizeHashTable() {
    for (HashEntry** table : {&hash_table_1, &hash_table_2, &hash_table_q}) {
        FreeTable(*table, TableBytes());
        *table = nullptr;
    }
}

void NewHashTable() {
    ClearTable(hash_table_1);
    ClearTable(hash_table_2);
    ClearTable(hash_table_q);
    is_fresh = false;
}

std::uint8_t ConvertMateEvalToHashBound(std::int32_t& score, std::int32_t* depth, Bound& bound) {
    if (!IsMateEval(score)) return 1;
    const bool is_won = score > 0;
    if (bound == (is_won ? BOUND_UPPER : BOUND_LOWER)) return 0;
    score = is_won ? MATE_BOUND : -MATE_BOUND;
    bound = is_won ? BOUND_LOWER : BOUND_UPPER;
    if (depth) *depth = MATE_BOUND_DEPTH;
    return 1;
}

std::int32_t ProbeHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                            std::int32_t depth, std::int32_t& move_index) {
    move_index = NO_MOVE_INDEX;
    const std::uint32_t slot = SlotOf(key);
    const std::int32_t score = ProbeEntry(hash_table_2[slot], key, alpha, beta, depth, move_index);
    if (score != UNKNOWN_EVAL) return score;
    return ProbeEntry(hash_table_1[slot], key, alpha, beta, depth, move_index);
}

void StoreHashTable(std::uint64_t key, std::int32_t score, std::int32_t depth, Bound bound,
                    std::int32_t move_index) {
    if (!ConvertMateEvalToHashBound(score, &depth, bound)) return;
    const std::uint32_t slot = SlotOf(key);
    Fill(hash_table_1[slot], key, score, depth, bound, move_index);
    HashEntry& kept = hash_table_2[slot];
    if (IsToKeep(kept, key, depth)) return;
    Fill(kept, key, score, depth, bound, move_index);
    kept.age = static_cast<std::int16_t>(game_state.ply_count);
}

std::int32_t ProbeQuiescenceHashTable(std::uint64_t key, std::int32_t alpha, std::int32_t beta,
                                      std::int32_t& move_index) {
    move_index = NO_MOVE_INDEX;
    return ProbeEntry(hash_table_q[SlotOf(key)], key, alpha, beta, 0, move_index);
}

void StoreQuiescenceHashTable(std::uint64_t key, std::int32_t score, Bound bound,
                              std::int32_t move_index) {
    if (!ConvertMateEvalToHashBound(score, nullptr, bound)) return;
    HashEntry& entry = hash_table_q[SlotOf(key)];
    Fill(entry, key, score, entry.depth, bound, move_index);
}

void ForceHashTable(std::uint64_t key, std::int32_t score) {
    for (HashEntry* table : {hash_table_1, hash_table_2}) {
        HashEntry& entry = table[SlotOf(key)];
        if (entry.key != key) continue;
        entry.bound = BOUND_EXACT;
        entry.score = score;
    }
}
