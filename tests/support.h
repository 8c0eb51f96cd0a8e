// What the tests share: positions, and the position's records at one moment.
#pragma once

#include "board/position.h"

#include <string>
#include <vector>

inline const std::string INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Starts a game from the position; the test fails when it is refused.
void StartAt(const std::string& fen);

// Plays moves given in either notation, blanks between; the test fails at an illegal one.
void Play(const std::string& moves);

// The legal moves, in generation order and coordinate notation, blanks between.
std::string LegalMoves();

// Everything that making and unmaking a move must restore.
struct Snapshot {
    Piece board[SQUARES];
    Bitboard by_type[PIECE_INDICES];
    Bitboard all[4][COLOURS];
    std::int32_t numbers[3][COLOURS];
    Colour side;
    std::int32_t ply;
    std::uint64_t key, en_passant_key;
    bool operator==(const Snapshot&) const = default;
};
Snapshot TakeSnapshot();

// The same, counted afresh from the board; what the board does not tell (castling keys, en-passant
// key, ply) is taken as given.
Snapshot ComputeSnapshot(std::uint64_t castling_keys);
