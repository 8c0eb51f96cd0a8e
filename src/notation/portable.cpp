#include "notation/portable.h"

#include "board/move.h"
#include "board/types.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/text.h"
#include "platform/system.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>

PgnGameInfo pgn_game_info;

namespace {

constexpr int PGN_WIDTH = 80;
constexpr std::size_t MOVE_NUMBER_SIZE = 32;

// The tags of a game header, in the order of output.
constexpr const char* TAG_ORDER[] = {"Event",    "Site",      "Date",      "Round",
                                     "White",    "Black",     "Result",    "WhiteElo",
                                     "BlackElo", "WhiteType", "BlackType", "Time"};

// Plays the moves that PlayablePart returns. Before each move, calls visit(move, is_first) with the
// board at the position before that move. Restores the board and game_state at the end.
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

// Calls visit(moves) with the moves of the current game. During the call, the board is at the start
// of the game.
template <typename Visit>
void VisitFromStart(Visit visit) {
    const GameState saved = game_state;
    const std::span<const Move> moves = SpanOf(state_history.moves + 1, state_history.count);
    for (std::size_t i = moves.size(); i > 0; --i) {
        UnMakeMove(moves[i - 1]);
    }
    game_state = state_history.game_states[0];
    visit(moves);
    for (const Move& move : moves) {
        MakeMove(move);
    }
    game_state = saved;
}

constexpr std::size_t TIME_TEXT_SIZE = 64;

void WriteLocalTime(char (&text)[TIME_TEXT_SIZE], const char* format) {
    const std::time_t now = std::time(nullptr);
    text[0] = '\0';
    if (const std::tm* local = std::localtime(&now)) {
        std::strftime(text, TIME_TEXT_SIZE, format, local);
    }
}

// Returns the index of the tag with this name, or tag_count if there is none.
std::int32_t FindTag(const PgnGameInfo& info, std::string_view name) {
    std::int32_t i = 0;
    while (i < info.tag_count && info.tags[i].name != name) {
        ++i;
    }
    return i;
}

// A longer header line is cut and loses its closing bracket. ReadTag then rejects the line.
constexpr std::size_t HEADER_LINE_SIZE = 512;

constexpr std::string_view RESULTS[] = {"1-0", "0-1", "1/2-1/2", "*"};

bool IsWhiteSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Some files begin with the UTF-8 byte-order mark, which consists of these three bytes.
bool IsOfByteOrderMark(int c) { return c == 0xEF || c == 0xBB || c == 0xBF; }

int NextChar(std::FILE* file) { return std::getc(file); }

// Reads the rest of the line. Cuts it to the size of the buffer and removes trailing white space.
std::string_view ReadLine(std::FILE* file, std::span<char> buffer) {
    std::size_t length = 0;
    for (int c = NextChar(file); c != EOF && c != '\n'; c = NextChar(file)) {
        if (length < buffer.size()) buffer[length++] = static_cast<char>(c);
    }
    while (length > 0 && IsWhiteSpace(buffer[length - 1])) {
        --length;
    }
    return {buffer.data(), length};
}

// Returns the next character without consuming it.
int PeekChar(std::FILE* file) {
    const int c = NextChar(file);
    return std::ungetc(c, file);
}

// Reads a tag of the form [Name "Value"]. In the value, \" stands for a quote and \\ for a
// backslash. Returns false if the line is not a tag.
bool ReadTag(std::string_view line, PgnTag& tag) {
    constexpr std::string_view CLOSING = "\"]";
    const std::size_t blank = line.find(' ');
    const std::size_t quote = line.find('"', std::min(blank, line.size()));
    if (!line.starts_with('[') || quote == std::string_view::npos) return false;
    std::string_view value = line.substr(quote + 1);
    if (!value.ends_with(CLOSING)) return false;
    value.remove_suffix(CLOSING.size());
    CopyText(tag.name, line.substr(1, blank - 1));
    std::size_t length = 0;
    for (; !value.empty(); value.remove_prefix(1)) {
        if (value.front() == '\\' && value.size() > 1) value.remove_prefix(1);
        if (length < PGN_TEXT_SIZE - 1) tag.value[length++] = value.front();
    }
    tag.value[length] = '\0';
    return true;
}

// Reads the next token. Tokens end at white space. Cuts the token to the size of the buffer.
// Returns the token's length, or 0 at the end of the file.
std::size_t ReadToken(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token) {
    std::size_t length = 0;
    int c = NextChar(file);
    while (IsWhiteSpace(c)) {
        c = NextChar(file);
    }
    for (; c != EOF && !IsWhiteSpace(c); c = NextChar(file)) {
        if (length < token.size() - 1) token[length++] = static_cast<char>(c);
    }
    if (c != EOF) std::ungetc(c, file); // a line feed must remain for SkipLine
    token[length] = '\0';
    return length;
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
        WriteNextPgnToken(file, style.width, style.written(move));
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
    WritePgnMoveList(file, moves, {info.first_ply, PGN_WIDTH, result, WrittenMove});
    std::fputs("\n\n", file);
    return std::fclose(file) == 0;
}

void WriteGameSoFar(std::FILE* file) {
    VisitFromStart([&](std::span<const Move> moves) {
        WritePgnMoveList(file, moves, {pgn_game_info.first_ply, PGN_WIDTH, nullptr, WrittenSan});
    });
}

bool AppendGameSoFar(const char* file_name, const char* result) {
    PgnGameInfo info = pgn_game_info;
    CorrectPgnTagValues(info);
    SetPgnTagValueByName(info, "Result", result);
    bool is_written = false;
    VisitFromStart(
        [&](std::span<const Move> moves) { is_written = WritePgnGame(file_name, info, moves); });
    return is_written;
}

bool SkipToNextGame(std::FILE* file) {
    int c = NextChar(file);
    while (IsWhiteSpace(c) || IsOfByteOrderMark(c)) {
        c = NextChar(file);
    }
    return std::ungetc(c, file) != EOF;
}

bool ReadNextPgnTag(std::FILE* file, PgnTag& tag) {
    char line[HEADER_LINE_SIZE];
    while (PeekChar(file) == '[') {
        if (ReadTag(ReadLine(file, line), tag)) return true;
    }
    return false;
}

bool ReadNextPgnMove(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token) {
    for (;;) {
        const std::string_view text(token.data(), ReadToken(file, token));
        if (text.empty()) return false;
        if (IsDigit(text.front()) && text.back() == '.') continue;
        for (const std::string_view result : RESULTS) {
            if (text == result) return false;
        }
        return true;
    }
}

void SkipLine(std::FILE* file) {
    int c = NextChar(file);
    while (c != EOF && c != '\n') {
        c = NextChar(file);
    }
}
