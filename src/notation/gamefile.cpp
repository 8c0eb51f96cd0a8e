#include "notation/gamefile.h"

#include "notation/characters.h"
#include "notation/text.h"

#include <algorithm>
#include <string_view>

namespace {

// The longest header line that is read. A longer one loses its end, and so is no tag.
constexpr std::size_t HEADER_LINE_SIZE = 512;

constexpr std::string_view RESULTS[] = {"1-0", "0-1", "1/2-1/2", "*"};

bool IsWhiteSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// UTF-8 files of some systems begin with these three bytes.
bool IsOfByteOrderMark(int c) { return c == 0xEF || c == 0xBB || c == 0xBF; }

int NextChar(std::FILE* file) { return std::getc(file); }

// Reads the rest of a line into the buffer, cut to it and without white space at its end.
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

// Looks at the next character and leaves it there.
int PeekChar(std::FILE* file) {
    const int c = NextChar(file);
    return std::ungetc(c, file);
}

// [Name "Value"], with a backslash before a quote or backslash in the value.
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

// Reads a token of characters other than white space; its length in the buffer, 0 at the file's
// end.
std::size_t ReadToken(std::FILE* file, std::span<char, MOVE_TOKEN_SIZE> token) {
    std::size_t length = 0;
    int c = NextChar(file);
    while (IsWhiteSpace(c)) {
        c = NextChar(file);
    }
    for (; c != EOF && !IsWhiteSpace(c); c = NextChar(file)) {
        if (length < token.size() - 1) token[length++] = static_cast<char>(c);
    }
    if (c != EOF) std::ungetc(c, file); // the line's end may be asked for
    token[length] = '\0';
    return length;
}

} // namespace

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
