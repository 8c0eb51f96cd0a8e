// The move trie and its file. Each node stands for the position that the moves from the root to it
// reach.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>
#include <string_view>

struct MoveTrieNode {
    Move move;          // from the parent; the root's is undefined
    std::int32_t count; // games that passed through the node, or UNWEIGHTED_COUNT
    MoveTrieNode* children;
    MoveTrieNode* next; // sibling
    std::int32_t child_count;
};

// Weight of a node that comes from lines or from a file, which passes any minimum.
inline constexpr std::int32_t UNWEIGHTED_COUNT = 1'000'000;

// The longest line of a trie, in plies.
inline constexpr int MAX_TRIE_PLIES = 512;

// The error for a book file too large for the memory.
inline constexpr std::string_view NO_MEMORY_FOR_BOOK = "there is no memory for it";

// Makes a node a leaf; keeps its move and count.
void InitMoveTrie(MoveTrieNode& node);

// Follows the moves from the root and adds missing nodes, each as its parent's first child.
// Weighted insertions count the games that pass through a node.
void InsertIntoMoveTrie(MoveTrieNode& root, std::span<const Move> moves, bool is_weighted);

// Writes the trie, without nodes whose count is below the minimum and their subtrees. The file gets
// its name only when it is complete. Returns the number of nodes written, root included. On failure
// returns 0 and leaves an existing file unchanged.
std::int32_t WriteMoveTrie(const MoveTrieNode& root, const char* file_name,
                           std::int32_t minimum_count);

// Reads a trie under the root, children in reverse file order; a missing file is a fatal error.
// Returns null, or the error; the root is then a leaf.
const char* ReadMoveTrie(MoveTrieNode& root, const char* file_name);

// Frees all nodes below this one.
void FreeMoveTrie(MoveTrieNode& node);
