// Reading of game files, PGN or plain lines of moves, tag by tag and token by token. Comments,
// variations and glyphs are not understood.
#pragma once

#include "notation/pgninfo.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>

// Room of a move token; what a longer one has beyond is dropped.
inline constexpr std::size_t MOVE_TOKEN_SIZE = 64;

// Skips white space and a byte-order mark before a game; false at the end of the file.
bool SkipToNextGame(std::FILE* file);

// Reads the header's next tag line into the entry, cut to its fields. False at the first line
// that does not begin with '[', an empty one for instance; it belongs to the moves. Lines that
// begin so and are no tags are skipped, and so is a tag longer than the buffer of a line.
bool ReadNextPgnTag(std::FILE* file, PgnTag& tag);

// Reads the next move token, past move numbers; false at a result token or the end of the file,
// which end the game.
bool ReadNextPgnMove(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token);

// Drops the rest of the line.
void SkipLine(std::FILE* file);
