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

// Begins a game at a FEN position. Leaves the book, because all book lines begin at the initial
// position.
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
    assert(is_read); // SetBoardFen stores only valid texts in pgn_game_info.fen
    BeginAt(fen);
}
