#include "notation/portable.h"

#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "moves/predicates.h"
#include "notation/notation.h"
#include "platform/system.h"

#include <cstring>
#include <string_view>

namespace {

constexpr int PGN_WIDTH = 80;
constexpr std::size_t MOVE_NUMBER_SIZE = 32;

// The order of the tags in a header.
constexpr const char* TAG_ORDER[] = {"Event",    "Site",      "Date",      "Round",
                                     "White",    "Black",     "Result",    "WhiteElo",
                                     "BlackElo", "WhiteType", "BlackType", "Time"};

// Calls for every move of the playable part, in its position, with whether it is the first.
template <typename Visit>
void ForEachMove(std::span<const Move> moves, Visit visit) {
    const GameState saved = game_state;
    const std::span<const Move> played = PlayablePart(moves);
    for (const Move& move : played) {
        visit(move, &move == played.data());
        MakeForceMove(move);
    }
    for (std::size_t i = played.size(); i > 0; --i) {
        UnMakeMove(played[i - 1]);
    }
    game_state = saved;
}

} // namespace

void WriteNextPgnTag(std::FILE* file, const char* name, const char* value) {
    std::fprintf(file, "[%s \"", name);
    for (; *value; ++value) {
        if (*value == '\\' || *value == '"') std::fputc('\\', file);
        std::fputc(*value, file);
    }
    std::fputs("\"]\n", file);
}

void WriteNextPgnToken(std::FILE* file, int width, const char* token) {
    static int line_length = 0;
    if (!token) {
        line_length = 0;
        return;
    }
    const int length = static_cast<int>(std::strlen(token));
    if (line_length != 0 && line_length + 1 + length >= width) {
        std::fputc('\n', file);
        line_length = 0;
    } else if (line_length != 0) {
        std::fputc(' ', file);
        ++line_length;
    }
    std::fputs(token, file);
    line_length += length;
}

const char* WrittenMoveNumber(std::int32_t ply) {
    static char text[MOVE_NUMBER_SIZE];
    std::snprintf(text, sizeof text, "%d%s", (ply - 1) / 2 + 1, ply % 2 != 0 ? "." : "...");
    return text;
}

void WritePgnMoveList(std::FILE* file, std::span<const Move> moves, const MoveListStyle& style) {
    WriteNextPgnToken(file, style.width, nullptr);
    std::int32_t ply = style.first_ply;
    ForEachMove(moves, [&](const Move& move, bool is_first) {
        if (is_first || IsWhiteMove(move)) {
            WriteNextPgnToken(file, style.width, WrittenMoveNumber(ply));
        }
        WriteNextPgnToken(file, style.width, WrittenMove(move));
        ++ply;
    });
    if (style.trailer) WriteNextPgnToken(file, style.width, style.trailer);
}

std::string WrittenLine(std::span<const Move> moves) {
    std::string text;
    ForEachMove(moves, [&](const Move& move, bool) { (text += ' ') += WrittenMove(move); });
    return text;
}

bool WritePgnGame(const char* file_name, const PgnGameInfo& info, std::span<const Move> moves) {
    std::FILE* file = OpenFile(file_name, FileUse::LOG);
    if (!file) return false;
    for (const char* name : TAG_ORDER) {
        WriteNextPgnTag(file, name, GetPgnTagValueByName(info, name));
    }
    if (info.set_up) {
        WriteNextPgnTag(file, "SetUp", "1");
        WriteNextPgnTag(file, "FEN", info.fen);
    }
    std::fputc('\n', file);
    const char* result = GetPgnTagValueByName(info, "Result");
    WritePgnMoveList(file, moves, {info.first_ply, PGN_WIDTH, result});
    std::fputs("\n\n", file);
    return std::fclose(file) == 0;
}
