// Positions in Forsyth-Edwards Notation (FEN): read into a record, put on the board, and written.
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

// The contents of a FEN text.
struct Fen {
    Piece board[SQUARES]; // pieces with castling rights and pawns at home are unmoved
    Colour side;
    bool castling[COLOURS][CASTLE_SIDES]; // the letter is there, its rook perhaps not
    int en_passant;                       // the square passed over, or NO_SQUARE
    std::int32_t half_moves;              // since the last pawn push or capture
    std::int32_t full_move;               // number of the next move
    char text[FEN_SIZE];                  // the text itself
};

// Reads a text, which is cut to FEN_SIZE, and leaves the board as it was. Returns false, with an
// undefined record, if it is not a playable position.
bool ReadFen(std::string_view text, Fen& fen);

// What is wrong with a text, in words for a person; null when it is a playable position.
const char* FindFenFault(std::string_view text);

// The text shows a board without any piece, which no game can begin from.
bool IsEmptyBoard(std::string_view text);

// Puts the position on the board, with its key as the first of the key history, and with what the
// game record knows of it: the double step that led here, if one did, and the fifty-move count.
// Everything else of the game is the caller's.
void PlacePosition(const Fen& fen);

// The position as FEN, in a static buffer.
const char* GetBoardFen();

// Appends the position to the log of final positions.
void WriteFenBoard();
