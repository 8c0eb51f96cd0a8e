#include "notation/text.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>

namespace {

constexpr std::string_view WHITE_SPACE = " \t\n\v\f\r";

} // namespace

void CopyText(std::span<char> field, std::string_view text) {
    assert(!field.empty());
    const std::size_t length = std::min(text.size(), field.size() - 1);
    std::memmove(field.data(), text.data(), length);
    field[length] = '\0';
}

std::string InLowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), LowerCase);
    return lower;
}

void SkipWhiteSpace(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(WHITE_SPACE), text.size()));
}

std::string_view NextWord(std::string_view& text) {
    SkipWhiteSpace(text);
    const std::string_view word = text.substr(0, text.find_first_of(WHITE_SPACE));
    text.remove_prefix(word.size());
    return word;
}

std::string TakeWordsBefore(std::string_view& text, std::string_view end) {
    std::string words;
    for (std::string_view word; !(word = NextWord(text)).empty() && word != end;) {
        if (!words.empty()) words += ' ';
        words += word;
    }
    return words;
}

bool ReadWholeNumber(std::string_view word, std::int32_t& value) {
    return std::ranges::all_of(word, IsDigit) && ReadNumber(word, value);
}

bool TakeNumber(std::string_view& text, std::int32_t& value) {
    std::string_view rest = text;
    if (rest.starts_with('+') && !rest.starts_with("+-")) rest.remove_prefix(1);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (error == std::errc::invalid_argument) return false;
    if (error == std::errc::result_out_of_range) {
        number = rest.starts_with('-') ? std::numeric_limits<std::int32_t>::min()
                                       : std::numeric_limits<std::int32_t>::max();
    }
    value = number;
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    text = rest;
    return true;
}

bool ReadNumber(std::string_view word, std::int32_t& value) { return TakeNumber(word, value); }
