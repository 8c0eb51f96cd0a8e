// Positions in Forsyth-Edwards Notation (FEN): read into a record, put on the board, and written.
#pragma once

#include "board/types.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Size of a FEN text with its closing NUL.
inline constexpr std::size_t FEN_SIZE = 256;

inline constexpr const char* INITIAL_FEN =
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

inline constexpr char CASTLING_LETTERS[COLOURS][CASTLE_SIDES] = {{'K', 'Q'}, {'k', 'q'}};

// The contents of a FEN text.
struct Fen {
    // The moved flag is clear on pawns at home and on kings and rooks that may castle.
    Piece board[SQUARES];
    Colour side;
    bool castling[COLOURS][CASTLE_SIDES]; // as the letters claim; the rook may be missing
    int en_passant;                       // the square passed over, or NO_SQUARE
    std::int32_t half_moves;              // since the last pawn push or capture
    std::int32_t full_move;               // number of the next move
    char text[FEN_SIZE];                  // the text itself
};

// Reads a text, which is cut to FEN_SIZE, without changing the board. Returns false, with an
// undefined record, if the text is not a playable position.
bool ReadFen(std::string_view text, Fen& fen);

// Returns a message for a person on why the text is not a playable position, or null if it is one.
const char* FindFenFault(std::string_view text);

// True if the text describes a board without pieces.
bool IsEmptyBoard(std::string_view text);

// Sets up the board and starts the key history with its key. Sets the en passant double step and
// the fifty-move count in the game record. The caller sets all other records of the game.
void PlacePosition(const Fen& fen);

// Returns the position as FEN, in a static buffer.
const char* GetBoardFen();

// Appends the position to the log of final positions.
void WriteFenBoard();
