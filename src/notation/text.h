// Bounded text: fixed fields, words and numbers.
#pragma once

#include "board/types.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Copies the text into the field with a closing NUL, cut to what fits; they may overlap.
void CopyText(std::span<char> field, std::string_view text);

std::string InLowerCase(std::string_view text);

// Takes the white space that the text begins with.
void SkipWhiteSpace(std::string_view& text);

// Takes the next word, of characters other than white space, from the text; empty at its end.
std::string_view NextWord(std::string_view& text);

// Takes the words up to the one that is given, which is dropped, or all; one blank stands between
// them.
std::string TakeWordsBefore(std::string_view& text, std::string_view end);

// Takes the decimal number, with or without sign, that the text begins with; a number beyond
// 32 bits is clamped. False, and both as they were, when the text begins with none.
bool TakeNumber(std::string_view& text, std::int32_t& value);

// Reads the number that the word begins with, whatever follows it.
bool ReadNumber(std::string_view word, std::int32_t& value);

// Reads a word that is a number without sign, and nothing else. False, and the value as it was, for
// any other.
bool ReadWholeNumber(std::string_view word, std::int32_t& value);

constexpr bool IsUpperCase(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsLowerCase(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char LowerCase(char c) { return IsUpperCase(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char UpperCase(char c) { return IsLowerCase(c) ? static_cast<char>(c - 'a' + 'A') : c; }

// By type; 'z' for a type that does not exist.
inline constexpr char PIECE_CHARACTERS[PIECE_TYPES] = {'z', 'P', 'N', 'K', 'z', 'B', 'R', 'Q'};

// The type that a letter of either case names, or NO_PIECE_TYPE.
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
