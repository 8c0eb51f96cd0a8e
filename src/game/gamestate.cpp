#include "game/gamestate.h"

#include "board/position.h"
#include "eval/evaltables.h"

GameState game_state;
BookState book_state;

void ForgetMoves() {
    game_state.no_last_move = 1;
    game_state.game_over = 0;
    game_state.ply_count = 0;
    game_state.last_eval = 0;
    SetFakeMove(game_state.expected_move);
    game_state.fifty_move_count = 0;
    game_state.hopeless = 0;
}

void NewGameState() {
    ForgetMoves();
    game_state.engine_time = UNKNOWN_CLOCK;
    game_state.opponent_time = UNKNOWN_CLOCK;
    game_state.time_increment = 0;
}

void SetUpInitialPosition() {
    NewGameState();
    NewRepresentation();
    NewEvaluation();
}
