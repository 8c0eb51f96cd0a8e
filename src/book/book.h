// The opening book in play: loaded at start-up and followed until the game leaves it.
#pragma once

#include "board/move.h"
#include "book/movetrie.h"

#include <cstdint>

inline constexpr const char* DEFAULT_BOOK_NAME = "korvane.bk";

// The root of the loaded book; its children are the book moves of the initial position.
extern MoveTrieNode book;

// Reads the book file. Returns null, or the error; the book is then empty.
const char* InitializeBook(const char* file_name);
void FinalizeBook();

// Replaces the book. Returns null, or the error; the old book is then kept. Sets up the initial
// position.
const char* ReplaceBook(const char* file_name);

// Reads a book file and checks that all its moves are legal. Returns null, or the error; the root
// is then a leaf. Sets up the initial position.
const char* ReadBook(MoveTrieNode& root, const char* file_name);

// Puts the game at the start of the book.
void NewBookState();

// True if the book is in use and has a move for the position.
bool IsFollowingBook();

void LeaveBook();

// Picks a book move, each stored one with the same probability. Returns false if the book has none
// here. Seeds the random numbers from the time of day; otherwise every run would pick the same.
bool PickBookMove(Move& move);

// Picks a book move and follows it; without one the game leaves the book.
bool GetNextBookMove(Move& move);

// Follows the move that the user played, or leaves the book.
void SetNextBookMove(const Move& move);

// The book moves of the position, a line each, or a short notice; in a static buffer.
const char* WrittenBookHelp();

// Stores the text of WrittenBookHelp in book_state.help, without the lines that do not fit.
void UpdateBookHelp();
