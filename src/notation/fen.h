// Positions in Forsyth-Edwards Notation (FEN): reading, setting up the board, and writing.
#pragma once

#include "board/types.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Maximum size of a FEN text, including the NUL.
inline constexpr std::size_t FEN_SIZE = 256;

inline constexpr const char* INITIAL_FEN =
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

inline constexpr char CASTLING_LETTERS[COLOURS][CASTLE_SIDES] = {{'K', 'Q'}, {'k', 'q'}};

// The fields of a FEN text.
struct Fen {
    // The moved flag is clear on pawns on their starting rank. It is also clear on the home squares
    // of king and rook for each castling right.
    Piece board[SQUARES];
    Colour side;
    bool castling[COLOURS][CASTLE_SIDES]; // rights in the FEN; king or rook may be missing
    int en_passant;                       // square passed by a pawn in the last move, or NO_SQUARE
    std::int32_t half_moves;              // plies since the last pawn move or capture
    std::int32_t full_move;
    char text[FEN_SIZE]; // the text that was read
};

// Reads a FEN text. Does not change the board. Returns false if the text is invalid or the position
// is not playable; `fen` is then undefined. A text longer than FEN_SIZE is cut.
bool ReadFen(std::string_view text, Fen& fen);

// Returns an error message for the user if the text is invalid or the position is not playable.
// Returns null otherwise.
const char* FindFenFault(std::string_view text);

// True if the text describes a board without pieces.
bool IsEmptyBoard(std::string_view text);

// Sets up the board and restarts the key history. Records the double step before a possible en
// passant capture as the last move. Also sets fifty_move_count. The caller resets all other state
// of the game.
void PlacePosition(const Fen& fen);

// Returns the FEN of the current position, in a static buffer.
const char* GetBoardFen();

// Appends the FEN of the current position to GameLog.fen, the log of final positions.
void WriteFenBoard();
