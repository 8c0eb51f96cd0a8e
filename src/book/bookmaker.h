// Builds a book file from games, and lists a book file as text.
#pragma once

#include <cstdint>

// Builds a book file from the first `max_plies` plies of every game in the input. The input is a
// PGN file, or lines of moves if `is_pgn` is false. From PGN games, only moves that were played at
// least `minimum_count` times are kept. Games are read up to ply 512, and every move must be legal.
// Any failure is a fatal error and leaves an existing book unchanged. On a console, progress and a
// summary are printed to standard error.
void MakeBook(const char* book_name, const char* input_name, bool is_pgn, std::int32_t max_plies,
              std::int32_t minimum_count);

// Writes every line of a book to a text file. A line leads from the initial position to a leaf.
void ShowBook(const char* book_name, const char* text_name);
