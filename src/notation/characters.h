// The characters of pieces, files and ranks.
#pragma once

#include "board/types.h"

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
