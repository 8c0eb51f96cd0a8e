// The move trie (a prefix tree of lines of moves) and its file format. Each node represents the
// position after the moves on the path from the root.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>
#include <string_view>

struct MoveTrieNode {
    Move move;          // the move that leads to this node; undefined in the root
    std::int32_t count; // number of games that contain this node; UNWEIGHTED_COUNT if not from PGN
    MoveTrieNode* children;
    MoveTrieNode* next; // next child of the same parent
    std::int32_t child_count;
};

// Count of a node that does not come from PGN games. Larger than every minimum count, so that the
// node is always kept.
inline constexpr std::int32_t UNWEIGHTED_COUNT = 1'000'000;

// Maximum length of a line in a book file, in plies.
inline constexpr int MAX_TRIE_PLIES = 512;

// Error message of ReadMoveTrie if there is not enough memory.
inline constexpr std::string_view NO_MEMORY_FOR_BOOK = "there is no memory for it";

// Initializes a node without children. Keeps the node's move and count.
void InitMoveTrie(MoveTrieNode& node);

// Adds a line of moves that starts at the root. A new node becomes the first child of its parent.
// If `is_weighted` is true, adds 1 to the count of each node of the line. If it is false, the count
// of a new node is UNWEIGHTED_COUNT, and existing counts do not change.
void InsertIntoMoveTrie(MoveTrieNode& root, std::span<const Move> moves, bool is_weighted);

// Writes the trie to a book file. Omits nodes with a count below the minimum, and their subtrees.
// Returns the number of nodes written, including the root. On failure, returns 0 and leaves an
// existing file unchanged.
std::int32_t WriteMoveTrie(const MoveTrieNode& root, const char* file_name,
                           std::int32_t minimum_count);

// Reads a book file into the trie. Children are stored in reverse file order. Returns null on
// success. On failure, returns an error message and leaves the root without children. A missing
// file is a fatal error.
const char* ReadMoveTrie(MoveTrieNode& root, const char* file_name);

// Frees all descendants of the node. Does not change the node itself.
void FreeMoveTrie(MoveTrieNode& node);
