// Builds a book file from games, and writes a book as text.
#pragma once

#include <cstdint>

// Builds a book file from the first `max_plies` plies of every game in the input file. If `is_pgn`
// is true, the input is a PGN file, and only moves that were played at least `minimum_count` times
// are kept. If `is_pgn` is false, the input contains games without tags (moves, then a result such
// as "*"), and all moves are kept. The first 512 plies of each game must be legal; later plies are
// ignored. Any failure is a fatal error and leaves an existing book unchanged. If standard error is
// a console, progress and a summary are printed there.
void MakeBook(const char* book_name, const char* input_name, bool is_pgn, std::int32_t max_plies,
              std::int32_t minimum_count);

// Writes every line of a book to a text file. A line leads from the initial position to a leaf. Any
// failure is a fatal error.
void ShowBook(const char* book_name, const char* text_name);
