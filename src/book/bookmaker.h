// The offline actions on books: building one from games, listing one as text.
#pragma once

#include <cstdint>

// Builds a book file from a PGN file or, without `is_pgn`, from a text of move lines: the first
// `max_plies` of each game, and of PGN games the moves played at least `minimum_count` times.
// Every move of every game, up to ply 512, is read and must be legal. Any failure is a fatal error
// and leaves an existing book as it was. On a console, progress and a summary go to standard error.
void MakeBook(const char* book_name, const char* input_name, bool is_pgn, std::int32_t max_plies,
              std::int32_t minimum_count);

// Writes every line of a book, from the initial position to a leaf, into a text file.
void ShowBook(const char* book_name, const char* text_name);
