// The opening book: loading the book file, and following the book during a game.
#pragma once

#include "board/move.h"
#include "book/movetrie.h"

#include <cstdint>

inline constexpr const char* DEFAULT_BOOK_NAME = "korvane.bk";

// Root of the loaded book. Its children are the book moves of the initial position.
extern MoveTrieNode book;

// Reads the book file into `book` and checks that the moves are legal. Returns null on success. On
// failure, returns an error message and leaves the book empty. The check overwrites the board and
// game_state.
const char* InitializeBook(const char* file_name);
void FinalizeBook();

// Reads a book file, checks that the moves are legal, and replaces the loaded book. Returns null on
// success. On failure, returns an error message and keeps the old book. The check overwrites the
// board and game_state.
const char* ReplaceBook(const char* file_name);

// Reads a book file and checks that the moves are legal. Drops illegal moves after a promotion. Any
// other illegal move is a failure. Returns null on success. On failure, returns an error message
// and leaves the root without children. Sets up the initial position, which resets the board and
// game_state.
const char* ReadBook(MoveTrieNode& root, const char* file_name);

// Sets book_state to the root of the book. Call at the start of a game.
void NewBookState();

// True if the book is enabled and has a move for the current position.
bool IsFollowingBook();

void LeaveBook();

// Picks one of the book moves at random, all with equal probability. Returns false if the book has
// no move for the position, or if the picked move is illegal. A book move can be illegal after a
// promotion, because promotions to different pieces share a node. Seeds the random number generator
// from the current time, so that the picks differ from run to run.
bool PickBookMove(Move& move);

// Picks a book move as PickBookMove does, and advances book_state to the position after that move.
// If PickBookMove would return false, returns false and leaves the book.
bool GetNextBookMove(Move& move);

// Advances book_state to the position after a move that was played. Leaves the book if the book
// does not contain the move.
void SetNextBookMove(const Move& move);

// Returns the book moves of the current position, one per line, or a notice if there are none. The
// text is in a static buffer.
const char* WrittenBookHelp();

// Stores the text of WrittenBookHelp in book_state.help. Drops the last lines if the text is too
// long.
void UpdateBookHelp();
