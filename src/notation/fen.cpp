#include "notation/fen.h"

#include "board/bitboard.h"
#include "board/move.h"
#include "board/position.h"
#include "eval/evaltables.h"
#include "game/gamestate.h"
#include "moves/attacks.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "platform/system.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <string>

namespace {

constexpr const char* FEN_LOG = "GameLog.fen";

// The counters of a FEN are clamped to this value, so that later increments cannot overflow.
constexpr std::int32_t MAX_COUNTER = 100'000;

constexpr int PAWN_RANK[COLOURS] = {RANK_2, RANK_7};

Piece PlacedPiece(char letter, int square) {
    const Colour colour = IsUpperCase(letter) ? WHITE : BLACK;
    const PieceType type = PieceByChar(letter);
    const bool is_unmoved = type == PAWN && RankOf(square) == PAWN_RANK[colour];
    const Piece unmoved = UnmovedPiece(colour, type);
    return is_unmoved ? unmoved : unmoved | MOVED_FLAG;
}

// Reads the pieces, from rank 8 to rank 1. Returns false if any rank does not have eight squares.
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

// Reads the castling rights: "-", or the letters KQkq, each at most once. Each letter marks the
// pieces on the home squares of king and rook as unmoved. An empty home square is accepted. Returns
// false if a home square contains an enemy piece, because the test for castling does not check the
// colour of unmoved pieces. Also returns false if a king is on the rook's home square, because
// the program assumes that an unmoved king is on its own home square.
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

// Reads the en passant square. Returns false if the last move cannot have been a double step over
// this square.
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

// Reads a number. Sets `value` to `missing` if the word is empty. Returns false if the word
// contains a character that is not a digit.
bool ReadCounter(std::string_view word, std::int32_t missing, std::int32_t& value) {
    value = missing;
    if (word.empty()) return true;
    if (!std::ranges::all_of(word, IsDigit) || !ReadNumber(word, value)) return false;
    value = std::min(value, MAX_COUNTER);
    return true;
}

void PlacePieces(const Fen& fen) {
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = fen.board[square];
        if (piece == NO_PIECE) continue;
        const Colour colour = ColourOf(piece);
        const PieceType type = TypeOf(piece);
        board.position[square] = piece;
        if (type != PAWN) ++board.pieces_on_board[colour];
        TogglePieceOnBitBoard(colour, type, square);
        board.zobrist_key ^= PieceKey(colour, type, square);
    }
    NewEvaluation();
}

// True if the side to move can capture the enemy king. Uses the board for the test, then restores
// it.
bool IsKingLeftInCheck(const Fen& fen) {
    const Position before = board;
    board = {};
    PlacePieces(fen);
    board.side_to_move = fen.side;
    const bool is_left = HaveKingCaptures();
    board = before;
    return is_left;
}

// Returns the reason why the position is not playable, or null if it is playable.
const char* FaultOfPosition(const Fen& fen) {
    int kings[COLOURS] = {0, 0};
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = fen.board[square];
        const bool is_back_rank = RankOf(square) == RANK_1 || RankOf(square) == RANK_8;
        if (TypeOf(piece) == PAWN && is_back_rank) return "a pawn is on the first or last rank";
        if (TypeOf(piece) == KING) ++kings[ColourOf(piece)];
    }
    if (kings[WHITE] != 1 || kings[BLACK] != 1) return "each side must have one king";
    if (IsKingLeftInCheck(fen)) return "the side that just moved is in check";
    return nullptr;
}

// Reads all fields. Returns a message about the first invalid field, or null on success.
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

// Records a pawn's double step over `square` as the last move. Sets the move's `piece` and
// `promoted` to the piece type without a colour, because readers of the last move use only the
// type. Adds the en passant key to the Zobrist key only if an en passant capture is legal.
void PlaceEnPassant(int square) {
    const Colour pusher = Opponent(board.side_to_move);
    Move& push = game_state.last_move;
    push.from = square - PAWN_STEP[pusher];
    push.to = square + PAWN_STEP[pusher];
    push.piece = PAWN;
    push.promoted = PAWN;
    game_state.no_last_move = 0;
    board.side_to_move = pusher;
    if (IsEnPassantEnablingMove(push)) {
        board.zobrist_xor = ZOBRIST_KEY_ENPASSANT[square];
        board.zobrist_key ^= board.zobrist_xor;
    }
    board.side_to_move = Opponent(pusher);
}

std::string WrittenPlacement() {
    std::string text;
    for (int rank = RANK_8; rank >= RANK_1; --rank) {
        int empty = 0;
        for (int file = FILE_A; file <= FILE_H; ++file) {
            const Piece piece = board.position[SquareOf(file, rank)];
            if (piece == NO_PIECE) {
                ++empty;
                continue;
            }
            if (empty > 0) text += static_cast<char>('0' + empty);
            empty = 0;
            const char letter = CharByPiece(TypeOf(piece));
            text += ColourOf(piece) == WHITE ? letter : LowerCase(letter);
        }
        if (empty > 0) text += static_cast<char>('0' + empty);
        if (rank > RANK_1) text += '/';
    }
    return text;
}

bool IsUnmoved(int square, PieceType type) {
    return TypeOf(board.position[square]) == type && !IsMoved(board.position[square]);
}

std::string WrittenCastling() {
    std::string text;
    for (const Colour colour : {WHITE, BLACK}) {
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            if (IsUnmoved(KING_HOME[colour], KING) && IsUnmoved(ROOK_HOME[colour][side], ROOK)) {
                text += CASTLING_LETTERS[colour][side];
            }
        }
    }
    return text.empty() ? "-" : text;
}

std::string WrittenEnPassant() {
    const Move* last = LastMove();
    if (!last || !IsPawnPushMove(*last) || !IsTwoRankMove(*last)) return "-";
    return {CharByFile(FileOf(last->from)),
            CharByRank((RankOf(last->from) + RankOf(last->to)) / 2)};
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

void PlacePosition(const Fen& fen) {
    board = {};
    PlacePieces(fen);
    board.side_to_move = fen.side;
    if (board.side_to_move == BLACK) board.zobrist_key ^= ZOBRIST_KEY_SIDE_SWITCH;
    for (const Colour colour : {WHITE, BLACK}) {
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            if (!fen.castling[colour][side]) continue;
            board.zobrist_key ^= ZOBRIST_KEY_CASTLE[CastleIndex(colour, side)];
        }
    }
    game_state.no_last_move = 1;
    if (fen.en_passant != NO_SQUARE) PlaceEnPassant(fen.en_passant);
    game_state.fifty_move_count = fen.half_moves;
    zobrist_keys[board.zobrist_ply_number] = board.zobrist_key;
    zobrist_xors[board.zobrist_ply_number] = board.zobrist_xor;
}

const char* GetBoardFen() {
    assert(!is_position_withheld);
    static char text[FEN_SIZE];
    const int full_move = (game_state.ply_count + pgn_game_info.first_ply - 1) / 2 + 1;
    std::snprintf(text, sizeof text, "%s %s %s %s %d %d", WrittenPlacement().c_str(),
                  board.side_to_move == WHITE ? "w" : "b", WrittenCastling().c_str(),
                  WrittenEnPassant().c_str(), game_state.fifty_move_count, full_move);
    return text;
}

void WriteFenBoard() {
    std::FILE* file = OpenFile(FEN_LOG, FileUse::LOG);
    if (!file) return;
    std::fprintf(file, "%s\n", GetBoardFen());
    std::fclose(file);
}
