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

// Stores a value under a name, in a new entry if necessary. Texts are cut to their fields; a new
// tag is dropped if the table is full.
void SetPgnTagValueByName(PgnGameInfo& info, std::string_view name, std::string_view value);

// Returns the value stored under a name, or "?", in a static buffer.
const char* GetPgnTagValueByName(const PgnGameInfo& info, std::string_view name);

// Exchanges the values of two tags; a missing one reads as "?".
void SwapPgnTagValuesByNames(PgnGameInfo& info, std::string_view a, std::string_view b);

void DefaultPgnTagValues(PgnGameInfo& info);

// Moves the tags of the players to their real colours. A second call would undo this.
void CorrectPgnTagValues(PgnGameInfo& info);

// Resets the header to the default tags.
void NewPgnGameInfo();

void WriteNextPgnTag(std::FILE* file, const char* name, const char* value);

// Writes a token after a blank, or on a new line if the line would reach the width. A null token
// makes the next one begin a line.
void WriteNextPgnToken(std::FILE* file, int width, const char* token);

// Returns the move number of a ply, "12." for White and "12..." for Black, in a static buffer.
const char* WrittenMoveNumber(std::int32_t ply);

// The layout of a move list.
struct MoveListStyle {
    std::int32_t first_ply; // ply number of the first move
    int width;
    const char* trailer; // written after the moves, such as the result; or null
    const char* (*written)(const Move& move);
};

// Writes the moves from the current position. Stops after a move that ends the game and before an
// illegal one. Restores the position and the game record; writes no line end.
void WritePgnMoveList(std::FILE* file, std::span<const Move> moves, const MoveListStyle& style);

// Returns the moves from the current position on one line, each after a blank. Stops like
// WritePgnMoveList.
std::string WrittenLine(std::span<const Move> moves);

// The log of games.
inline constexpr const char* PGN_LOG = "GameLog.pgn";

// Writes the moves of the game in play, without a line end.
void WriteGameSoFar(std::FILE* file);

// Appends the game in play to a PGN file, with this result. Returns false if it cannot be written.
bool AppendGameSoFar(const char* file_name, const char* result);

// Appends a game to the file. The board must show the game's starting position. Returns false if
// the file cannot be written.
bool WritePgnGame(const char* file_name, const PgnGameInfo& info, std::span<const Move> moves);

// Game files, PGN or plain lines of moves, are read tag by tag and token by token. Comments,
// variations and glyphs are not supported.

// Size of a move token with its NUL; a longer one is cut.
inline constexpr std::size_t MOVE_TOKEN_SIZE = 64;

// Skips white space and a byte-order mark before a game. Returns false at the end of the file.
bool SkipToNextGame(std::FILE* file);

// Reads the next tag of the header into the entry, cut to its fields. Returns false at the first
// line that does not begin with '[', such as an empty one; the moves begin there. Skips lines that
// begin with '[' but are not tags, and tags longer than the line buffer.
bool ReadNextPgnTag(std::FILE* file, PgnTag& tag);

// Skips move numbers and reads the next move token. Returns false at the end of the game: a result
// token or the end of the file.
bool ReadNextPgnMove(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token);

// Skips the rest of the line.
void SkipLine(std::FILE* file);
