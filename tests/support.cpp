#include "support.h"

#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/hash.h"

#include <gtest/gtest.h>
#include <sstream>

void StartAt(const std::string& fen) {
    engine_state.san_notation = 0;
    NewGame();
    ASSERT_TRUE(SetBoardFen(fen)) << fen;
}

void Play(const std::string& moves) {
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        ASSERT_TRUE(PlayMove(word)) << word;
    }
}

std::string LegalMoves() {
    MoveList list;
    std::string text;
    GenerateAllLegalMoves(list, LastMove());
    for (std::int32_t i = 0; i < list.count; ++i) {
        if (i > 0) text += ' ';
        text += WrittenMove(list.moves[i]);
    }
    return text;
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
