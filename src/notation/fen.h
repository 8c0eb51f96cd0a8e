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
    // Pawns on their starting rank are marked as unmoved (MOVED_FLAG is clear). For each castling
    // right, the pieces on the home squares of king and rook are marked as unmoved. All other
    // pieces are marked as moved.
    Piece board[SQUARES];
    Colour side;
    bool castling[COLOURS][CASTLE_SIDES]; // rights as given, even if king or rook is missing
    int en_passant;                       // square that a pawn has just passed, or NO_SQUARE
    std::int32_t half_moves;              // plies since the last pawn move or capture
    std::int32_t full_move;
    char text[FEN_SIZE]; // the text that was read
};

// Reads a FEN text. Does not change the board. Returns false if the text is invalid or the position
// is not playable; `fen` is then undefined. Ignores characters after the first FEN_SIZE - 1.
bool ReadFen(std::string_view text, Fen& fen);

// Returns an error message for the user if the text is invalid or the position is not playable.
// Returns null otherwise.
const char* FindFenFault(std::string_view text);

// True if the text describes a board without pieces.
bool IsEmptyBoard(std::string_view text);

// Sets up the board and restarts the history of Zobrist keys. If the FEN has an en passant square,
// records the pawn's double step as the last move of game_state. Also sets fifty_move_count. The
// caller resets the rest of game_state.
void PlacePosition(const Fen& fen);

// Returns the FEN of the current position, in a static buffer.
const char* GetBoardFen();

// Appends the FEN of the current position to GameLog.fen, the log of final positions.
void WriteFenBoard();
