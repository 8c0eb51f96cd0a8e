#include "play/newgame.h"

#include "book/book.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/fen.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "search/hash.h"

#include <cassert>

namespace {

void BeginAtInitialPosition() {
    SetUpInitialPosition();
    NewBookState();
    NewStateHistory();
}

// All book lines begin at the initial position, so a game from a FEN position leaves the book.
void BeginAt(const Fen& fen) {
    ForgetMoves();
    PlacePosition(fen);
    LeaveBook();
    NewStateHistory();
}

} // namespace

void NewGame() {
    NewPgnGameInfo();
    NewEngineState();
    BeginAtInitialPosition();
    NewHashTable();
}

bool SetBoardFen(std::string_view text) {
    Fen fen;
    if (!ReadFen(text, fen)) return false;
    pgn_game_info.set_up = 1;
    pgn_game_info.first_ply = fen.side + 2 * fen.full_move - 1;
    CopyText(pgn_game_info.fen, fen.text);
    BeginAt(fen);
    return true;
}

void RestartGame() {
    if (!pgn_game_info.set_up) {
        BeginAtInitialPosition();
        return;
    }
    Fen fen;
    [[maybe_unused]] const bool is_read = ReadFen(pgn_game_info.fen, fen);
    assert(is_read); // SetBoardFen stores only valid texts
    BeginAt(fen);
}
