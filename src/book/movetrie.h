// The move trie and its file. Each node stands for the position that the moves from the root to it
// reach.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>
#include <string_view>

struct MoveTrieNode {
    Move move;          // leads from the parent's position here; the root's names no move
    std::int32_t count; // games that passed through the node, or UNWEIGHTED_COUNT
    MoveTrieNode* children;
    MoveTrieNode* next; // sibling
    std::int32_t child_count;
};

// Weight of a node that comes from lines or from a file, which passes any minimum.
inline constexpr std::int32_t UNWEIGHTED_COUNT = 1'000'000;

// The longest line of a trie, in plies.
inline constexpr int MAX_TRIE_PLIES = 512;

// What is wrong with a book file that there is no room for.
inline constexpr std::string_view NO_MEMORY_FOR_BOOK = "there is no memory for it";

// Makes a node a leaf; move and count are left as they are.
void InitMoveTrie(MoveTrieNode& node);

// Walks the moves down from the root and adds the nodes that are missing, each as its parent's
// first child. Weighted insertions count the games that pass through a node.
void InsertIntoMoveTrie(MoveTrieNode& root, std::span<const Move> moves, bool is_weighted);

// Writes the trie without the nodes, and what hangs on them, whose count is below the minimum. The
// file gets its name only when it is whole. Returns the number of nodes written, the root included;
// 0, and any file of that name as it was, when it cannot be written.
std::int32_t WriteMoveTrie(const MoveTrieNode& root, const char* file_name,
                           std::int32_t minimum_count);

// Reads a trie under the root, children in reverse file order; a missing file is a fatal error.
// Returns null, or what is wrong with the file; the root is then a leaf.
const char* ReadMoveTrie(MoveTrieNode& root, const char* file_name);

// Frees all nodes below this one.
void FreeMoveTrie(MoveTrieNode& node);
