#include "notation/setboard.h"

#include "board/position.h"
#include "eval/evaltables.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/attacks.h"
#include "moves/predicates.h"
#include "notation/characters.h"
#include "notation/pgninfo.h"
#include "notation/text.h"
#include "platform/system.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

constexpr const char* FEN_LOG = "GameLog.fen";

// Counters beyond this are clamped, so that a game's moves can be counted on from them.
constexpr std::int32_t MAX_COUNTER = 100'000;

constexpr char CASTLING_LETTERS[COLOURS][2] = {{'K', 'Q'}, {'k', 'q'}};
constexpr int CASTLING_ROOK_FILE[2] = {FILE_H, FILE_A};
constexpr int HOME_RANK[COLOURS] = {RANK_1, RANK_8};
constexpr int PAWN_RANK[COLOURS] = {RANK_2, RANK_7};
constexpr int PAWN_FORWARD[COLOURS] = {BOARD_SIDE, -BOARD_SIDE};

constexpr int CornerOf(Colour colour, CastleSide side) {
    return SquareOf(CASTLING_ROOK_FILE[side], HOME_RANK[colour]);
}

// A FEN text, read but not yet set up.
struct FenFields {
    Piece board[SQUARES]; // codes with their moved flags before castling rights are granted
    Colour side;
    bool castling[COLOURS][2];
    int en_passant; // the square passed over, or NO_SQUARE
    std::int32_t half_moves;
    std::int32_t full_move;
};

Piece PlacedPiece(char letter, int square) {
    const Colour colour = IsUpperCase(letter) ? WHITE : BLACK;
    const PieceType type = PieceByChar(letter);
    const bool is_unmoved = type == PAWN && RankOf(square) == PAWN_RANK[colour];
    return static_cast<Piece>(COLOUR_BIT[colour] | type | (is_unmoved ? 0 : MOVED_FLAG));
}

// Eight ranks of eight squares, from rank 8 down.
bool ReadPlacement(std::string_view text, FenFields& fen) {
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

bool ReadSide(std::string_view text, FenFields& fen) {
    fen.side = text == "w" ? WHITE : BLACK;
    return text == "w" || text == "b";
}

// A letter each at most once; its king's and rook's squares hold nothing of the enemy's.
bool ReadCastling(std::string_view text, FenFields& fen) {
    std::size_t read = text == "-" ? 1 : 0;
    for (const Colour colour : {WHITE, BLACK}) {
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            const char letter = CASTLING_LETTERS[colour][side];
            fen.castling[colour][side] = text.find(letter) != std::string_view::npos;
            if (!fen.castling[colour][side]) continue;
            ++read;
            for (const int square : {KING_HOME[colour], CornerOf(colour, side)}) {
                const Piece piece = fen.board[square];
                if (piece != NO_PIECE && ColourOf(piece) != colour) return false;
            }
            // An unmoved king stands on its home square, and nowhere else.
            if (TypeOf(fen.board[CornerOf(colour, side)]) == KING) return false;
        }
    }
    return read > 0 && read == text.size();
}

// The square behind a pawn that has just made its double step.
bool ReadEnPassant(std::string_view text, FenFields& fen) {
    fen.en_passant = NO_SQUARE;
    if (text == "-") return true;
    if (text.size() != 2 || !IsOnBoard(FileByChar(text[0]), RankByChar(text[1]))) return false;
    const Colour pusher = Opponent(fen.side);
    const int square = SquareOf(FileByChar(text[0]), RankByChar(text[1]));
    const int from = square - PAWN_FORWARD[pusher];
    const int to = square + PAWN_FORWARD[pusher];
    if (RankOf(from) != PAWN_RANK[pusher]) return false;
    fen.en_passant = square;
    return fen.board[square] == NO_PIECE && fen.board[from] == NO_PIECE &&
           fen.board[to] == (COLOUR_BIT[pusher] | PAWN | MOVED_FLAG);
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
Piece FirstPieceOnLine(const FenFields& fen, int square, int file_step, int rank_step, int reach) {
    for (int i = 1; i <= reach; ++i) {
        const int file = FileOf(square) + i * file_step;
        const int rank = RankOf(square) + i * rank_step;
        if (!IsOnBoard(file, rank)) break;
        const Piece piece = fen.board[SquareOf(file, rank)];
        if (piece != NO_PIECE) return piece;
    }
    return NO_PIECE;
}

// The side to move could take the piece on the square.
bool IsAttackedBySide(const FenFields& fen, int square) {
    const auto is_own = [&](Piece piece) {
        return piece != NO_PIECE && ColourOf(piece) == fen.side;
    };
    for (int i = 0; i < 8; ++i) {
        const bool is_diagonal = KING_X[i] != 0 && KING_Y[i] != 0;
        const Piece slider = FirstPieceOnLine(fen, square, KING_X[i], KING_Y[i], BOARD_SIDE);
        const PieceType type = TypeOf(slider);
        if (is_own(slider) && (type == QUEEN || type == (is_diagonal ? BISHOP : ROOK))) return true;
        const Piece king = FirstPieceOnLine(fen, square, KING_X[i], KING_Y[i], 1);
        if (is_own(king) && TypeOf(king) == KING) return true;
        if (is_own(king) && TypeOf(king) == PAWN && is_diagonal &&
            KING_Y[i] == (fen.side == WHITE ? -1 : 1)) {
            return true;
        }
        const Piece knight = FirstPieceOnLine(fen, square, KNIGHT_X[i], KNIGHT_Y[i], 1);
        if (is_own(knight) && TypeOf(knight) == KNIGHT) return true;
    }
    return false;
}

// One king each, no pawn on the first or last rank, and the side not to move not in check.
bool IsPlayable(const FenFields& fen) {
    int kings[COLOURS] = {0, 0};
    int enemy_king = NO_SQUARE;
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = fen.board[square];
        const bool is_back_rank = RankOf(square) == RANK_1 || RankOf(square) == RANK_8;
        if (TypeOf(piece) == PAWN && is_back_rank) return false;
        if (TypeOf(piece) != KING) continue;
        ++kings[ColourOf(piece)];
        if (ColourOf(piece) != fen.side) enemy_king = square;
    }
    return kings[WHITE] == 1 && kings[BLACK] == 1 && !IsAttackedBySide(fen, enemy_king);
}

bool ReadFen(std::string_view text, FenFields& fen) {
    return ReadPlacement(NextWord(text), fen) && ReadSide(NextWord(text), fen) &&
           ReadCastling(NextWord(text), fen) && ReadEnPassant(NextWord(text), fen) &&
           ReadCounter(NextWord(text), 0, fen.half_moves) &&
           ReadCounter(NextWord(text), 1, fen.full_move) && IsPlayable(fen);
}

void ClearPosition() {
    side_to_move = WHITE;
    std::ranges::fill(position, NO_PIECE);
    std::ranges::fill(pieces_on_board, 0);
    std::ranges::fill(pieces_all_rank, 0);
    std::ranges::fill(pieces_all_file, 0);
    std::ranges::fill(pieces_all_a1h8, 0);
    std::ranges::fill(pieces_all_a8h1, 0);
    std::ranges::fill(pieces_by_type, 0);
    zobrist_key = 0;
    zobrist_xor = 0;
    zobrist_ply_number = 0;
}

void PlacePieces(const FenFields& fen) {
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = fen.board[square];
        if (piece == NO_PIECE) continue;
        const Colour colour = ColourOf(piece);
        const PieceType type = TypeOf(piece);
        position[square] = piece;
        if (type != PAWN) ++pieces_on_board[colour];
        TogglePieceOnBitBoard(colour, type, square);
        zobrist_key ^= PieceKey(colour, type, square);
    }
    NewEvaluation();
}

// A right stands in the moved flags of king and rook; an empty square stays empty.
void GrantCastling(Colour colour, CastleSide side) {
    position[KING_HOME[colour]] &= static_cast<Piece>(~MOVED_FLAG);
    position[CornerOf(colour, side)] &= static_cast<Piece>(~MOVED_FLAG);
    zobrist_key ^= ZOBRIST_KEY_CASTLE[CastleIndex(colour, side)];
}

// The double step becomes the last move; it is in the key only when it can be taken.
void PlaceEnPassant(int square) {
    const Colour pusher = Opponent(side_to_move);
    Move& push = game_state.last_move;
    push.from = square - PAWN_FORWARD[pusher];
    push.to = square + PAWN_FORWARD[pusher];
    push.piece = PAWN;
    push.promoted = PAWN;
    game_state.no_last_move = 0;
    side_to_move = pusher;
    if (IsEnPassantEnablingMove(push)) {
        zobrist_xor = ZOBRIST_KEY_ENPASSANT[square];
        zobrist_key ^= zobrist_xor;
    }
    side_to_move = Opponent(pusher);
}

void PlacePosition(const FenFields& fen) {
    ClearPosition();
    PlacePieces(fen);
    side_to_move = fen.side;
    if (side_to_move == BLACK) zobrist_key ^= ZOBRIST_KEY_SIDE_SWITCH;
    for (const Colour colour : {WHITE, BLACK}) {
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            if (fen.castling[colour][side]) GrantCastling(colour, side);
        }
    }
    game_state.no_last_move = 1;
    if (fen.en_passant != NO_SQUARE) PlaceEnPassant(fen.en_passant);
}

// The position becomes the start of the game.
void RecordSetUp(const FenFields& fen, std::string_view text) {
    pgn_game_info.set_up = 1;
    pgn_game_info.first_ply = side_to_move + 2 * std::max(fen.full_move, 1) - 1;
    CopyText(pgn_game_info.fen, text);
    game_state.fifty_move_count = fen.half_moves;
    book_state.in_book = 0;
    SaveStartState();
    zobrist_keys[zobrist_ply_number] = zobrist_key;
    zobrist_xors[zobrist_ply_number] = zobrist_xor;
}

std::string WrittenPlacement() {
    std::string text;
    for (int rank = RANK_8; rank >= RANK_1; --rank) {
        int empty = 0;
        for (int file = FILE_A; file <= FILE_H; ++file) {
            const Piece piece = position[SquareOf(file, rank)];
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
    return TypeOf(position[square]) == type && !IsMoved(position[square]);
}

std::string WrittenCastling() {
    std::string text;
    for (const Colour colour : {WHITE, BLACK}) {
        for (const CastleSide side : {KING_SIDE, QUEEN_SIDE}) {
            if (IsUnmoved(KING_HOME[colour], KING) && IsUnmoved(CornerOf(colour, side), ROOK)) {
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

std::uint8_t SetBoardFen(std::string_view text) {
    text = text.substr(0, FEN_SIZE - 1);
    FenFields fen;
    if (!ReadFen(text, fen)) return 0;
    PlacePosition(fen);
    RecordSetUp(fen, text);
    return 1;
}

const char* GetBoardFen() {
    static char text[FEN_SIZE];
    const int full_move = (game_state.ply_count + pgn_game_info.first_ply - 1) / 2 + 1;
    std::snprintf(text, sizeof text, "%s %s %s %s %d %d", WrittenPlacement().c_str(),
                  side_to_move == WHITE ? "w" : "b", WrittenCastling().c_str(),
                  WrittenEnPassant().c_str(), game_state.fifty_move_count, full_move);
    return text;
}

void WriteFenBoard() {
    std::FILE* file = OpenLog(FEN_LOG);
    if (!file) return;
    std::fprintf(file, "%s\n", GetBoardFen());
    std::fclose(file);
}
