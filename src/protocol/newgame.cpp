#include "protocol/newgame.h"

#include "board/position.h"
#include "book/book.h"
#include "eval/evaltables.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/pgninfo.h"
#include "search/hash.h"

void NewGame() {
    NewPgnGameInfo();
    NewEngineState();
    NewGameState();
    NewRepresentation();
    NewBookState();
    NewStateHistory();
    NewHashTable();
    NewEvaluation();
}

void RestartGame() {
    game_state.game_over = 0;
    game_state.ply_count = 0;
    game_state.last_eval = 0;
    game_state.hopeless = 0;
    SetFakeMove(game_state.expected_move);
    UpdateBookHelp();
    NewStateHistory();
}
