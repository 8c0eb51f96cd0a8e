// Games in Portable Game Notation (PGN): header tags, writing games, and reading games.
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

// During a game, the White tags describe the engine and the Black tags describe the opponent,
// regardless of the colours played.
struct PgnGameInfo {
    std::int32_t tag_count;
    PgnTag tags[MAX_PGN_TAGS];
    std::int32_t engine_color;
    char level[LEVEL_SIZE]; // text of the last "level" command
    char result_comment[PGN_TEXT_SIZE];
    std::uint8_t set_up; // set if the game began from a FEN position
    char fen[FEN_SIZE];
    // Ply number of the first move: 1 for White's move 1, 2 for Black's move 1. The value is -1 or
    // 0 if the FEN has move number 0.
    std::int32_t first_ply;
};
extern PgnGameInfo pgn_game_info;

// Return the local date as "2001.12.31" and the local time as "23:59:59", in static buffers.
const char* PgnDate();
const char* PgnTime();

// Sets the value of a tag, and adds the tag if it is missing. Name and value are cut to
// PGN_TEXT_SIZE. A new tag is not added if the table is full.
void SetPgnTagValueByName(PgnGameInfo& info, std::string_view name, std::string_view value);

// Returns the value of a tag, or "?" if the tag is missing. The text is in a static buffer.
const char* GetPgnTagValueByName(const PgnGameInfo& info, std::string_view name);

// Swaps the values of two tags. A missing tag has the value "?".
void SwapPgnTagValuesByNames(PgnGameInfo& info, std::string_view a, std::string_view b);

void DefaultPgnTagValues(PgnGameInfo& info);

// Swaps the White and Black tags if the engine played black, so that the tags match the colours
// played. Call only once for each game: a second call would swap the tags back.
void CorrectPgnTagValues(PgnGameInfo& info);

// Resets pgn_game_info for a new game, with the default tags.
void NewPgnGameInfo();

void WriteNextPgnTag(std::FILE* file, const char* name, const char* value);

// Writes a token, separated from the previous token by a blank. Starts a new line instead if the
// current line would reach `width` characters. Call with a null token before the first token of a
// text.
void WriteNextPgnToken(std::FILE* file, int width, const char* token);

// Returns the move number of a ply, "12." for White and "12..." for Black, in a static buffer.
const char* WrittenMoveNumber(std::int32_t ply);

// The layout of a move list.
struct MoveListStyle {
    std::int32_t first_ply; // ply number of the first move
    int width;
    const char* trailer; // text after the moves (such as the result), or null
    const char* (*written)(const Move& move);
};

// Writes the moves without a final line feed. The first move is played from the current position.
// Stops after a move that ends the game, or before the first illegal move. Restores the board and
// game_state.
void WritePgnMoveList(std::FILE* file, std::span<const Move> moves, const MoveListStyle& style);

// Returns the moves as text, each with a blank before it. The first move is played from the current
// position. Stops after a move that ends the game, or before the first illegal move.
std::string WrittenLine(std::span<const Move> moves);

// File name of the log of finished games.
inline constexpr const char* PGN_LOG = "GameLog.pgn";

// Writes the moves of the current game in SAN, without a final line feed.
void WriteGameSoFar(std::FILE* file);

// Appends the current game with this result to a PGN file. Returns false if the file cannot be
// written.
bool AppendGameSoFar(const char* file_name, const char* result);

// Appends a game to a PGN file. The board must be at the start of the game. Returns false if the
// file cannot be written.
bool WritePgnGame(const char* file_name, const PgnGameInfo& info, std::span<const Move> moves);

// The functions below read games from a PGN file, or from a file that contains moves without tags.
// PGN comments, variations and annotation glyphs are not supported.

// Maximum size of a move token, including the NUL. Longer tokens are cut.
inline constexpr std::size_t MOVE_TOKEN_SIZE = 64;

// Skips white space and a byte-order mark before a game. Returns false at the end of the file.
bool SkipToNextGame(std::FILE* file);

// Reads the next tag of the header. Name and value are cut to PGN_TEXT_SIZE. Skips invalid tags.
// The header ends at the first line that does not begin with '['. Returns false at this line.
bool ReadNextPgnTag(std::FILE* file, PgnTag& tag);

// Reads the next move token. Skips tokens that are move numbers, such as "12.". Returns false at a
// result token or at the end of the file.
bool ReadNextPgnMove(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token);

void SkipLine(std::FILE* file);
