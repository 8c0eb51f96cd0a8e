// Text utilities: fixed-size fields, words, numbers and piece letters.
#pragma once

#include "board/types.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Copies the text into the field and adds a NUL. Cuts the text if it is too long. Text and field
// may overlap.
void CopyText(std::span<char> field, std::string_view text);

std::string InLowerCase(std::string_view text);

// Removes white space from the start of the text.
void SkipWhiteSpace(std::string_view& text);

// Removes the next word from the text and returns it. Words are separated by white space. Returns
// an empty word if none is left.
std::string_view NextWord(std::string_view& text);

// Removes all words up to and including the word `end` from the text. If the text does not contain
// `end`, removes all words. Returns the words before `end`, joined by single blanks.
std::string TakeWordsBefore(std::string_view& text, std::string_view end);

// Removes the decimal number from the start of the text and stores its value. The number may have a
// sign. A value beyond 32 bits is clamped. Returns false and changes nothing if the text does not
// start with a number.
bool TakeNumber(std::string_view& text, std::int32_t& value);

// Reads the number at the start of the word. Ignores the characters after the number. Returns false
// and leaves the value unchanged if there is no number.
bool ReadNumber(std::string_view word, std::int32_t& value);

// Reads a word of digits only. Returns false and leaves the value unchanged for any other word.
bool ReadWholeNumber(std::string_view word, std::int32_t& value);

constexpr bool IsUpperCase(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsLowerCase(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char LowerCase(char c) { return IsUpperCase(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char UpperCase(char c) { return IsLowerCase(c) ? static_cast<char>(c - 'a' + 'A') : c; }

// Indexed by piece type; 'z' marks unused types.
inline constexpr char PIECE_CHARACTERS[PIECE_TYPES] = {'z', 'P', 'N', 'K', 'z', 'B', 'R', 'Q'};

// Returns the type of an upper-case or lower-case piece letter, or NO_PIECE_TYPE.
constexpr PieceType PieceByChar(char c) {
    for (const PieceType type : {PAWN, KNIGHT, KING, BISHOP, ROOK, QUEEN}) {
        if (PIECE_CHARACTERS[type] == UpperCase(c)) return type;
    }
    return NO_PIECE_TYPE;
}

constexpr char CharByPiece(PieceType type) { return PIECE_CHARACTERS[type]; }
constexpr int RankByChar(char c) { return c - '1'; }
constexpr int FileByChar(char c) { return c - 'a'; }
constexpr char CharByRank(int rank) { return static_cast<char>('1' + rank); }
constexpr char CharByFile(int file) { return static_cast<char>('a' + file); }
