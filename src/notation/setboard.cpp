#include "notation/setboard.h"

#include "board/position.h"
#include "eval/evaltables.h"
#include "game/gamestate.h"
#include "moves/attacks.h"
#include "moves/predicates.h"
#include "notation/characters.h"
#include "notation/pgninfo.h"
#include "platform/system.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <string>

namespace {

constexpr const char* FEN_LOG = "GameLog.fen";

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

// The double step becomes the last move. Its pieces have no colour, as readers look at type and
// squares only. It is in the key only when it can be taken.
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
