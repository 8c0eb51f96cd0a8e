#include "support.h"

#include "eval/evaltables.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/setboard.h"
#include "protocol/newgame.h"
#include "search/hash.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sstream>

void StartAt(const std::string& fen) {
    engine_state.san_notation = 0;
    NewGame();
    ASSERT_TRUE(SetBoardFen(fen)) << fen;
    RestartGame();
}

void Play(const std::string& moves) {
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        Move move;
        ASSERT_TRUE(ParseMove(word, move) && IsLegalMove(move)) << word;
        MakeForceMove(move);
        SaveIntoStateHistory(state_history, move, game_state, book_state);
    }
}

std::string LegalMoves() {
    Move moves[MAX_MOVES];
    std::int32_t count = 0;
    std::string text;
    GenerateAllLegalMoves(moves, count, LastMove());
    for (std::int32_t i = 0; i < count; ++i) {
        if (i > 0) text += ' ';
        text += WrittenMove(moves[i]);
    }
    return text;
}

Snapshot TakeSnapshot() {
    Snapshot now;
    std::memcpy(now.board, position, sizeof now.board);
    std::memcpy(now.by_type, pieces_by_type, sizeof now.by_type);
    for (const Colour colour : {WHITE, BLACK}) {
        now.all[0][colour] = pieces_all_rank[colour];
        now.all[1][colour] = pieces_all_file[colour];
        now.all[2][colour] = pieces_all_a1h8[colour];
        now.all[3][colour] = pieces_all_a8h1[colour];
        now.numbers[0][colour] = pieces_on_board[colour];
        now.numbers[1][colour] = piece_weight_eval[colour];
        now.numbers[2][colour] = piece_square_eval[colour];
    }
    now.side = side_to_move;
    now.ply = zobrist_ply_number;
    now.key = zobrist_key;
    now.en_passant_key = zobrist_xor;
    return now;
}

Snapshot ComputeSnapshot(std::uint64_t castling_keys) {
    Snapshot now{};
    now.key = castling_keys ^ zobrist_xor;
    for (int square = 0; square < SQUARES; ++square) {
        const Piece piece = position[square];
        now.board[square] = piece;
        if (piece == NO_PIECE) continue;
        const int colour = piece & 0x80 ? 1 : 0;
        const int type = piece & 7;
        const int row = colour * 8 + type;
        now.by_type[row] |= BIT_RANK[square];
        now.all[0][colour] |= BIT_RANK[square];
        now.all[1][colour] |= BIT_FILE[square];
        now.all[2][colour] |= BIT_A1H8[square];
        now.all[3][colour] |= BIT_A8H1[square];
        now.numbers[0][colour] += type != PAWN;
        now.numbers[1][colour] += type == KING ? 0 : PIECE_WEIGHT[type];
        now.numbers[2][colour] += PIECE_SQUARE_EVAL[row * 64 + square];
        now.key ^= ZOBRIST_KEY_GLOBAL[row * 64 + square];
    }
    if (side_to_move == BLACK) now.key ^= ZOBRIST_KEY_SIDE_SWITCH;
    now.side = side_to_move;
    now.ply = zobrist_ply_number;
    now.en_passant_key = zobrist_xor;
    return now;
}

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    InitializeTables();
    engine_state.use_book = 0;
    InitializeHashTable(engine_state.hash_size);
    NewGame();
    const int result = RUN_ALL_TESTS();
    FinalizeHashTable();
    return result;
}
