#include "notation/pgninfo.h"

#include "board/types.h"
#include "game/enginestate.h"
#include "notation/text.h"

#include <cstring>
#include <ctime>
#include <string>

PgnGameInfo pgn_game_info;

namespace {

constexpr std::size_t TIME_TEXT_SIZE = 64;

void WriteLocalTime(char (&text)[TIME_TEXT_SIZE], const char* format) {
    const std::time_t now = std::time(nullptr);
    text[0] = '\0';
    if (const std::tm* local = std::localtime(&now)) {
        std::strftime(text, TIME_TEXT_SIZE, format, local);
    }
}

// The index of the tag of that name, or tag_count.
std::int32_t FindTag(const PgnGameInfo& info, std::string_view name) {
    std::int32_t i = 0;
    while (i < info.tag_count && info.tags[i].name != name) {
        ++i;
    }
    return i;
}

} // namespace

const char* PgnDate() {
    static char text[TIME_TEXT_SIZE];
    WriteLocalTime(text, "%Y.%m.%d");
    return text;
}

const char* PgnTime() {
    static char text[TIME_TEXT_SIZE];
    WriteLocalTime(text, "%H:%M:%S");
    return text;
}

void SetPgnTagValueByName(PgnGameInfo& info, std::string_view name, std::string_view value) {
    name = name.substr(0, PGN_TEXT_SIZE - 1);
    const std::int32_t index = FindTag(info, name);
    if (index == MAX_PGN_TAGS) return;
    PgnTag& tag = info.tags[index];
    if (index == info.tag_count) {
        CopyText(tag.name, name);
        ++info.tag_count;
    }
    CopyText(tag.value, value);
}

const char* GetPgnTagValueByName(const PgnGameInfo& info, std::string_view name) {
    static char value[PGN_TEXT_SIZE];
    const std::int32_t index = FindTag(info, name);
    CopyText(value, index < info.tag_count ? info.tags[index].value : "?");
    return value;
}

void SwapPgnTagValuesByNames(PgnGameInfo& info, std::string_view a, std::string_view b) {
    const std::string value_a = GetPgnTagValueByName(info, a);
    const std::string value_b = GetPgnTagValueByName(info, b);
    SetPgnTagValueByName(info, a, value_b);
    SetPgnTagValueByName(info, b, value_a);
}

void DefaultPgnTagValues(PgnGameInfo& info) {
    const std::string program = std::string(PROGRAM_NAME) + " " + std::string(PROGRAM_VERSION);
    SetPgnTagValueByName(info, "Date", PgnDate());
    SetPgnTagValueByName(info, "Time", PgnTime());
    SetPgnTagValueByName(info, "White", program);
    SetPgnTagValueByName(info, "WhiteType", "program");
    SetPgnTagValueByName(info, "BlackType", "human");
}

void CorrectPgnTagValues(PgnGameInfo& info) {
    if (info.engine_color != BLACK) return;
    SwapPgnTagValuesByNames(info, "White", "Black");
    SwapPgnTagValuesByNames(info, "WhiteElo", "BlackElo");
    SwapPgnTagValuesByNames(info, "WhiteType", "BlackType");
}

void NewPgnGameInfo() {
    std::memset(&pgn_game_info, 0, sizeof pgn_game_info);
    DefaultPgnTagValues(pgn_game_info);
    pgn_game_info.first_ply = 1;
}
