// The PGN header of the current game: its tag pairs and how it began.
#pragma once

#include "notation/fen.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

inline constexpr int MAX_PGN_TAGS = 32;
inline constexpr std::size_t PGN_TEXT_SIZE = 512;
inline constexpr std::size_t LEVEL_SIZE = 64;

struct PgnTag {
    char name[PGN_TEXT_SIZE];
    char value[PGN_TEXT_SIZE];
};

// While the game runs, the engine's data stand in the White tags and the opponent's in the Black
// ones, whoever has which colour.
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
