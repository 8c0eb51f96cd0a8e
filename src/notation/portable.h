// Games as text after the PGN standard: tags, numbered and wrapped move text, and the game log. The
// moves are written in the current notation.
#pragma once

#include "board/move.h"
#include "notation/pgninfo.h"

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

void WriteNextPgnTag(std::FILE* file, const char* name, const char* value);

// Writes a token, after a blank or in a new line, so that lines stay shorter than the width. Null:
// the next token begins a line.
void WriteNextPgnToken(std::FILE* file, int width, const char* token);

// The number of a ply's move, "12." for white and "12..." for black, in a static buffer.
const char* WrittenMoveNumber(std::int32_t ply);

// What stands around the moves of a move list.
struct MoveListStyle {
    std::int32_t first_ply; // ply number of the first move
    int width;
    const char* trailer; // a last token, or null
};

// Writes the moves, which start from the position. Ends behind a move that ends the game, and
// before one that is illegal. Position and game record are the same afterwards; no line end is
// written.
void WritePgnMoveList(std::FILE* file, std::span<const Move> moves, const MoveListStyle& style);

// The moves, which start from the position, in one row, each behind a blank. It ends where
// WritePgnMoveList ends.
std::string WrittenLine(std::span<const Move> moves);

// The log of games.
inline constexpr const char* PGN_LOG = "GameLog.pgn";

// Appends a game to the file. The board shows the game's starting position. False when the file
// cannot be written.
bool WritePgnGame(const char* file_name, const PgnGameInfo& info, std::span<const Move> moves);
