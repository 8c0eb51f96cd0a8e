#include "uci/setup.h"

#include "game/history.h"
#include "moves/makemove.h"
#include "notation/fen.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "uci/lines.h"

#include <cassert>
#include <cstddef>
#include <string>

namespace {

struct Setup {
    std::string fen; // empty for the initial position
    std::string moves;
};
Setup in_force;

bool Begin(const std::string& fen) {
    if (!fen.empty()) return SetBoardFen(fen);
    NewPgnGameInfo();
    RestartGame();
    return true;
}

// Plays the moves in order. Returns the first move that is illegal or exceeds the maximum length of
// the game. Returns an empty text if all moves were played.
std::string_view PlayMoves(std::string_view moves) {
    for (std::string_view word; !(word = NextWord(moves)).empty();) {
        Move move;
        if (!FindMove(word, move) || IsHistoryFull()) return word;
        PlayMove(move);
    }
    return {};
}

// True if `setup` extends the current game, so that only the new moves must be played.
bool IsContinued(const Setup& setup) {
    return setup.fen == in_force.fen && setup.moves.starts_with(in_force.moves) &&
           (in_force.moves.empty() || setup.moves.size() == in_force.moves.size() ||
            setup.moves[in_force.moves.size()] == ' ');
}

// Sets up the game. Returns an error message, or an empty text on success.
std::string Apply(const Setup& setup) {
    std::string_view moves = setup.moves;
    if (IsContinued(setup)) {
        moves.remove_prefix(in_force.moves.size());
    } else if (!Begin(setup.fen)) {
        return "Illegal position: " + setup.fen;
    }
    const std::string_view wrong = PlayMoves(moves);
    if (wrong.empty()) return "";
    return (IsHistoryFull() ? "Too long a game: " : "Illegal move: ") + std::string(wrong);
}

} // namespace

bool FindMove(std::string_view word, Move& move) {
    return ParseMove(word, move) && IsLegalMove(move) && word == WrittenCoordinates(move);
}

void SetUpGame(std::string_view arguments) {
    Setup setup;
    const std::string_view kind = NextWord(arguments);
    if (kind == "fen") {
        setup.fen = TakeWordsBefore(arguments, "moves");
        if (setup.fen.empty()) {
            TellInfo("Illegal position: ");
            return;
        }
        // The FEN of the initial position counts as "startpos", because the book is not used in a
        // game that starts from a FEN.
        if (setup.fen == INITIAL_FEN) setup.fen.clear();
    } else if (kind == "startpos") {
        TakeWordsBefore(arguments, "moves");
    } else {
        TellInfo("Neither startpos nor fen: " + std::string(kind));
        return;
    }
    setup.moves = TakeWordsBefore(arguments, "");
    const std::string error = Apply(setup);
    if (error.empty()) {
        in_force = setup;
        return;
    }
    TellInfo(error);
    RestoreGame();
}

void ForgetGame() {
    in_force = {};
    NewGame();
}

void RestoreGame() {
    const Setup setup = in_force;
    in_force = {};
    Begin("");
    [[maybe_unused]] const std::string error = Apply(setup);
    assert(error.empty()); // SetUpGame has already accepted this setup
    in_force = setup;
}
