// Positions in Forsyth-Edwards Notation (FEN) as values: a text is read and judged here, and the
// position in play is not touched.
#pragma once

#include "board/types.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Room of a FEN text with its closing NUL.
inline constexpr std::size_t FEN_SIZE = 256;

inline constexpr const char* INITIAL_FEN =
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

inline constexpr char CASTLING_LETTERS[COLOURS][CASTLE_SIDES] = {{'K', 'Q'}, {'k', 'q'}};

// What a FEN text says.
struct Fen {
    Piece board[SQUARES]; // pieces with castling rights and pawns at home are unmoved
    Colour side;
    bool castling[COLOURS][CASTLE_SIDES]; // the letter is there, its rook perhaps not
    int en_passant;                       // the square passed over, or NO_SQUARE
    std::int32_t half_moves;              // since the last pawn push or capture
    std::int32_t full_move;               // number of the next move
    char text[FEN_SIZE];                  // the text itself
};

// Reads a text, which is cut to FEN_SIZE. False when it is no playable position; the value then
// means nothing.
bool ReadFen(std::string_view text, Fen& fen);

// What is wrong with a text, in words for a person; null when it is a playable position.
const char* FindFenFault(std::string_view text);

// The text shows a board without any piece, which no game can begin from.
bool IsEmptyBoard(std::string_view text);
