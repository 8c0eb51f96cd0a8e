#include "diag/dump.h"

#include "board/position.h"

#include <cstdio>

namespace {

constexpr char PIECE_NAMES[PIECE_TYPES][32] = {"", "PAWN",   "KNIGHT", "KING",
                                               "", "BISHOP", "ROOK",   "QUEEN"};
constexpr char PIECE_COLORS[COLOURS][32] = {"WHITE", "BLACK"};

char FileLetter(int square) { return static_cast<char>('A' + FileOf(square)); }
int RankNumber(int square) { return RankOf(square) + 1; }

void PrintPiece(int square, Piece piece) {
    std::fprintf(stderr, "Piece at %c%d is a %s %s (MF=%d)", FileLetter(square), RankNumber(square),
                 PIECE_COLORS[ColourOf(piece)], PIECE_NAMES[TypeOf(piece)], IsMoved(piece) ? 1 : 0);
}

void EndLine() {
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

} // namespace

void DumpMessage(const char* text) {
    std::fputs(text, stderr);
    EndLine();
}

void DumpPiece(int square, Piece piece) {
    PrintPiece(square, piece);
    EndLine();
}

void DumpPosition() {
    DumpMessage("DumpPosition(): BEGIN");
    for (int square = 0; square < SQUARES; ++square) {
        if (board.position[square] != NO_PIECE) DumpPiece(square, board.position[square]);
    }
    DumpMessage("DumpPosition(): END");
}

void DumpU64(std::uint64_t value) {
    for (int bit = 63; bit >= 0; --bit) {
        std::fputc(value >> bit & 1 ? '1' : '0', stderr);
    }
    EndLine();
}

void DumpZobristKey(std::uint64_t key) { DumpU64(key); }

void DumpBitBoard(Bitboard set) {
    for (int rank = RANK_8; rank >= RANK_1; --rank) {
        for (int file = FILE_A; file <= FILE_H; ++file) {
            std::fputs(set >> SquareOf(file, rank) & 1 ? "X " : "- ", stderr);
        }
        EndLine();
    }
    EndLine();
}

void DumpMove(const Move& move) {
    PrintPiece(move.from, board.position[move.from]);
    std::fprintf(stderr, " which moves to %c%d", FileLetter(move.to), RankNumber(move.to));
    if (TypeOf(move.promoted) != TypeOf(move.piece)) {
        std::fprintf(stderr, " (and promotes to %s)", PIECE_NAMES[TypeOf(move.promoted)]);
    }
    EndLine();
}

void DumpMoveList(std::span<const Move> moves) {
    DumpMessage("DumpMoveList(): BEGIN");
    std::fprintf(stderr, "%d\n", static_cast<int>(moves.size()));
    for (const Move& move : moves) {
        DumpMove(move);
    }
    DumpMessage("DumpMoveList(): END");
}
