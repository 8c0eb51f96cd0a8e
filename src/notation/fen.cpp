#include "notation/fen.h"

#include "board/bitboard.h"
#include "board/move.h"
#include "notation/characters.h"
#include "notation/text.h"

#include <algorithm>

namespace {

// Larger counters become this one, so that counting on from them cannot overflow.
constexpr std::int32_t MAX_COUNTER = 100'000;

constexpr int PAWN_RANK[COLOURS] = {RANK_2, RANK_7};

Piece PlacedPiece(char letter, int square) {
    const Colour colour = IsUpperCase(letter) ? WHITE : BLACK;
    const PieceType type = PieceByChar(letter);
    const bool is_unmoved = type == PAWN && RankOf(square) == PAWN_RANK[colour];
    const Piece unmoved = UnmovedPiece(colour, type);
    return is_unmoved ? unmoved : unmoved | MOVED_FLAG;
}

// Eight ranks of eight squares, from rank 8 down.
bool ReadPlacement(std::string_view text, Fen& fen) {
    std::ranges::fill(fen.board, NO_PIECE);
    int file = FILE_A;
    int rank = RANK_8;
    for (const char c : text) {
        if (c == '/') {
            if (file != BOARD_SIDE || rank == RANK_1) return false;
            file = FILE_A;
            --rank;
        } else if (c >= '1' && c <= '8') {
            file += c - '0';
        } else if (PieceByChar(c) != NO_PIECE_TYPE && file < BOARD_SIDE) {
            const int square = SquareOf(file++, rank);
            fen.board[square] = PlacedPiece(c, square);
        } else {
            return false;
        }
        if (file > BOARD_SIDE) return false;
    }
    return rank == RANK_1 && file == BOARD_SIDE;
}

bool ReadSide(std::string_view text, Fen& fen) {
    fen.side = text == "w" ? WHITE : BLACK;
    return text == "w" || text == "b";
}

// Each letter at most once. Its king's and its rook's square may be empty. An enemy piece on them
// is refused, because castling does not look at the colour of unmoved pieces. So is a king on the
// rook's square, because an unmoved king is taken to stand on its home square.
bool ReadCastling(std::string_view text, Fen& fen) {
    std::size_t read = text == "-" ? 1 : 0;
    for (const Colour colour : {WHITE, BLACK}) {
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            const char letter = CASTLING_LETTERS[colour][side];
            fen.castling[colour][side] = text.find(letter) != std::string_view::npos;
            if (!fen.castling[colour][side]) continue;
            ++read;
            for (const int square : {KING_HOME[colour], ROOK_HOME[colour][side]}) {
                const Piece piece = fen.board[square];
                if (piece != NO_PIECE && ColourOf(piece) != colour) return false;
                fen.board[square] = piece & static_cast<Piece>(~MOVED_FLAG);
            }
            if (TypeOf(fen.board[ROOK_HOME[colour][side]]) == KING) return false;
        }
    }
    return read > 0 && read == text.size();
}

// The square behind a pawn that has just made its double step.
bool ReadEnPassant(std::string_view text, Fen& fen) {
    fen.en_passant = NO_SQUARE;
    if (text == "-") return true;
    if (text.size() != 2 || !IsOnBoard(FileByChar(text[0]), RankByChar(text[1]))) return false;
    const Colour pusher = Opponent(fen.side);
    const int square = SquareOf(FileByChar(text[0]), RankByChar(text[1]));
    const int from = square - PAWN_STEP[pusher];
    const int to = square + PAWN_STEP[pusher];
    if (RankOf(from) != PAWN_RANK[pusher]) return false;
    fen.en_passant = square;
    return fen.board[square] == NO_PIECE && fen.board[from] == NO_PIECE &&
           fen.board[to] == (UnmovedPiece(pusher, PAWN) | MOVED_FLAG);
}

// A number that is missing gets its default.
bool ReadCounter(std::string_view word, std::int32_t missing, std::int32_t& value) {
    value = missing;
    if (word.empty()) return true;
    if (!std::ranges::all_of(word, IsDigit) || !ReadNumber(word, value)) return false;
    value = std::min(value, MAX_COUNTER);
    return true;
}

// The first piece that a step's line from the square meets, within `reach` squares.
Piece FirstPieceOnLine(const Fen& fen, int square, int file_step, int rank_step, int reach) {
    for (int i = 1; i <= reach; ++i) {
        const int file = FileOf(square) + i * file_step;
        const int rank = RankOf(square) + i * rank_step;
        if (!IsOnBoard(file, rank)) break;
        const Piece piece = fen.board[SquareOf(file, rank)];
        if (piece != NO_PIECE) return piece;
    }
    return NO_PIECE;
}

// The side to move could take the piece on the square. The move machinery cannot be asked: this
// board is not the position in play, and may never be.
bool IsAttackedBySide(const Fen& fen, int square) {
    const auto is_own = [&](Piece piece) {
        return piece != NO_PIECE && ColourOf(piece) == fen.side;
    };
    for (int i = 0; i < 8; ++i) {
        const bool is_diagonal = KING_X[i] != 0 && KING_Y[i] != 0;
        const Piece slider = FirstPieceOnLine(fen, square, KING_X[i], KING_Y[i], BOARD_SIDE);
        const PieceType type = TypeOf(slider);
        if (is_own(slider) && (type == QUEEN || type == (is_diagonal ? BISHOP : ROOK))) return true;
        const Piece neighbour = FirstPieceOnLine(fen, square, KING_X[i], KING_Y[i], 1);
        if (is_own(neighbour) && TypeOf(neighbour) == KING) return true;
        if (is_own(neighbour) && TypeOf(neighbour) == PAWN && is_diagonal &&
            KING_Y[i] * BOARD_SIDE == -PAWN_STEP[fen.side]) {
            return true;
        }
        const Piece jumper = FirstPieceOnLine(fen, square, KNIGHT_X[i], KNIGHT_Y[i], 1);
        if (is_own(jumper) && TypeOf(jumper) == KNIGHT) return true;
    }
    return false;
}

// What keeps a game from being played from the position, or null.
const char* FaultOfPosition(const Fen& fen) {
    int kings[COLOURS] = {0, 0};
    int enemy_king = NO_SQUARE;
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = fen.board[square];
        const bool is_back_rank = RankOf(square) == RANK_1 || RankOf(square) == RANK_8;
        if (TypeOf(piece) == PAWN && is_back_rank) return "a pawn is on the first or last rank";
        if (TypeOf(piece) != KING) continue;
        ++kings[ColourOf(piece)];
        if (ColourOf(piece) != fen.side) enemy_king = square;
    }
    if (kings[WHITE] != 1 || kings[BLACK] != 1) return "each side must have one king";
    if (IsAttackedBySide(fen, enemy_king)) return "the side that just moved is in check";
    return nullptr;
}

// Reads the fields in turn, up to the first that is at fault.
const char* ReadFields(std::string_view text, Fen& fen) {
    text = text.substr(0, FEN_SIZE - 1);
    CopyText(fen.text, text);
    if (!ReadPlacement(NextWord(text), fen)) return "the board must be 8 ranks of 8 squares";
    if (!ReadSide(NextWord(text), fen)) return "the side to move, w or b, must follow the board";
    if (!ReadCastling(NextWord(text), fen)) {
        return "the castling rights must be - or letters of KQkq that fit the board";
    }
    if (!ReadEnPassant(NextWord(text), fen)) {
        return "the en-passant square must be - or the one that a pawn has just passed";
    }
    if (!ReadCounter(NextWord(text), 0, fen.half_moves) ||
        !ReadCounter(NextWord(text), 1, fen.full_move)) {
        return "the counters of half-moves and moves must be numbers";
    }
    return FaultOfPosition(fen);
}

} // namespace

bool ReadFen(std::string_view text, Fen& fen) { return ReadFields(text, fen) == nullptr; }

const char* FindFenFault(std::string_view text) {
    Fen fen;
    return ReadFields(text, fen);
}

bool IsEmptyBoard(std::string_view text) {
    Fen fen;
    return ReadPlacement(NextWord(text), fen) &&
           std::ranges::all_of(fen.board, [](Piece piece) { return piece == NO_PIECE; });
}
