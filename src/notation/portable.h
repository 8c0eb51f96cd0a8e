// Games in Portable Game Notation (PGN): the header of the current game, writing, and reading.
// Moves are written in the current notation.
#pragma once

#include "board/move.h"
#include "notation/fen.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

inline constexpr int MAX_PGN_TAGS = 32;
inline constexpr std::size_t PGN_TEXT_SIZE = 512;
inline constexpr std::size_t LEVEL_SIZE = 64;

struct PgnTag {
    char name[PGN_TEXT_SIZE];
    char value[PGN_TEXT_SIZE];
};

// During a game the White tags hold the engine's data and the Black tags the opponent's, whatever
// their colours.
struct PgnGameInfo {
    std::int32_t tag_count;
    PgnTag tags[MAX_PGN_TAGS];
    std::int32_t engine_color;
    char level[LEVEL_SIZE]; // the last "level" command, whole
    char result_comment[PGN_TEXT_SIZE];
    std::uint8_t set_up; // the game began from a FEN position
    char fen[FEN_SIZE];
    std::int32_t first_ply; // of the first move: 1 for White's move 1, 2 for Black's; at least -1
};
extern PgnGameInfo pgn_game_info;

// The local date "2001.12.31" and time "23:59:59", in static buffers.
const char* PgnDate();
const char* PgnTime();

// Stores a value under a name, in a new entry if need be. Texts are cut to their fields; a tag for
// which there is no room is dropped.
void SetPgnTagValueByName(PgnGameInfo& info, std::string_view name, std::string_view value);

// The value stored under a name, or "?", in a static buffer.
const char* GetPgnTagValueByName(const PgnGameInfo& info, std::string_view name);

// Exchanges the values of two tags; a missing one reads as "?".
void SwapPgnTagValuesByNames(PgnGameInfo& info, std::string_view a, std::string_view b);

void DefaultPgnTagValues(PgnGameInfo& info);

// Puts the tags of the two players under their real colours. Once only: a second call undoes it.
void CorrectPgnTagValues(PgnGameInfo& info);

// An empty header with the default tags.
void NewPgnGameInfo();

void WriteNextPgnTag(std::FILE* file, const char* name, const char* value);

// Writes a token after a blank, or on a new line where the width would be reached. Null: the next
// token begins a line.
void WriteNextPgnToken(std::FILE* file, int width, const char* token);

// The number of a ply's move, "12." for white and "12..." for black, in a static buffer.
const char* WrittenMoveNumber(std::int32_t ply);

// The layout of a move list.
struct MoveListStyle {
    std::int32_t first_ply; // ply number of the first move
    int width;
    const char* trailer; // a last token, or null
    const char* (*written)(const Move& move);
};

// Writes the moves, which start from the position. Ends after a move that ends the game, and
// before one that is illegal. Position and game record are the same afterwards; no line end is
// written.
void WritePgnMoveList(std::FILE* file, std::span<const Move> moves, const MoveListStyle& style);

// The moves, which start from the position, on one line, each after a blank. It ends where
// WritePgnMoveList ends.
std::string WrittenLine(std::span<const Move> moves);

// The log of games.
inline constexpr const char* PGN_LOG = "GameLog.pgn";

// Writes the moves of the game in play, without a line end.
void WriteGameSoFar(std::FILE* file);

// Appends the game in play to a PGN file, with this result. Returns false if it cannot be written.
bool AppendGameSoFar(const char* file_name, const char* result);

// Appends a game to the file. The board shows the game's starting position. False when the file
// cannot be written.
bool WritePgnGame(const char* file_name, const PgnGameInfo& info, std::span<const Move> moves);

// Reading of game files, PGN or plain lines of moves, tag by tag and token by token. Comments,
// variations and glyphs are not understood.

// Size of a move token with its NUL; a longer one is cut.
inline constexpr std::size_t MOVE_TOKEN_SIZE = 64;

// Skips white space and a byte-order mark before a game; false at the end of the file.
bool SkipToNextGame(std::FILE* file);

// Reads the header's next tag line into the entry, cut to its fields. False at the first line
// that does not begin with '[', an empty one for instance; it belongs to the moves. Lines that
// begin with '[' but are not tags are skipped, and so is a tag longer than the line buffer.
bool ReadNextPgnTag(std::FILE* file, PgnTag& tag);

// Reads the next move token, past move numbers; false at a result token or the end of the file,
// which end the game.
bool ReadNextPgnMove(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token);

// Drops the rest of the line.
void SkipLine(std::FILE* file);
