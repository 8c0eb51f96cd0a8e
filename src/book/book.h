// The opening book in play: loaded at start-up, followed and played from while the game lasts in
// it.
#pragma once

#include "board/move.h"
#include "book/movetrie.h"

#include <cstdint>

inline constexpr const char* DEFAULT_BOOK_NAME = "korvane.bk";

// The root of the loaded book; its children are the book moves of the initial position.
extern MoveTrieNode book;

// Reads the book file. Returns null, or why it cannot be used; the book is then empty.
const char* InitializeBook(const char* file_name);
void FinalizeBook();

// Reads a book in place of the loaded one, which stays when the new one cannot be used. The
// position is the initial one afterwards. Returns null, or what is wrong.
const char* ReplaceBook(const char* file_name);

// Reads the trie of a book file whose every move can be played from the initial position; the
// position is the initial one afterwards. Returns null, or what is wrong; the root is then a leaf.
const char* ReadBook(MoveTrieNode& root, const char* file_name);

// Puts the game at the start of the book.
void NewBookState();

// The game is in the book, and the book has a move here.
bool IsFollowingBook();

// The game goes on without the book.
void LeaveBook();

// Picks a book move, each stored one with the same probability. Returns false if the book has none
// here. Seeds the random numbers from the time of day, because every run would pick the same
// otherwise.
bool PickBookMove(Move& move);

// Picks a book move and follows it; without one the game leaves the book.
bool GetNextBookMove(Move& move);

// Follows the move that the user played, or leaves the book.
void SetNextBookMove(const Move& move);

// The book moves of the position, a line each, or a short notice; in a static buffer.
const char* WrittenBookHelp();

// Writes that text into the game's book record, cut to whole lines that fit.
void UpdateBookHelp();
