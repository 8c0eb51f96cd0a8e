// Where the game stands in the opening book.
#pragma once

#include <cstddef>
#include <cstdint>

struct MoveTrieNode;

inline constexpr std::size_t BOOK_HELP_SIZE = 512;

struct BookState {
    std::uint8_t in_book;      // the game still follows the book
    const MoveTrieNode* node;  // the position's node
    char help[BOOK_HELP_SIZE]; // the book's moves in this position, as told to the user
};
extern BookState book_state;
