// A position to set up in the first line, and moves to play from it, a number each.
#include "notation/fen.h"
#include "consistency.h"
#include "game/gamestate.h"
#include "harness.h"
#include "moves/makemove.h"
#include "mutate.h"
#include "play/newgame.h"

#include <algorithm>

std::string MutateInput(std::string_view text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    return (Roll(8) == 0 ? SomeFen() : ChangedFen(text.substr(0, end))) +
           std::string(text.substr(end));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(text.find('\n'), text.size());
    ResetEngine(false);
    const Position before = board;
    if (!SetBoardFen(text.substr(0, end))) {
        Require(board == before, "a refused position changes nothing");
        return 0;
    }
    CheckFen();
    const Position start = board;
    for (const char choice : text.substr(end)) {
        MoveList list;
        GenerateAllLegalMoves(list, LastMove());
        if (list.count == 0) break;
        PlayLegalMove(list.moves[static_cast<unsigned char>(choice) % list.count]);
    }
    const std::string last = GetBoardFen();
    CheckUndo();
    Require(board == start, "undo of everything leads back to the start");
    Require(SetBoardFen(last), "the last position is accepted");
    CheckFen();
    return 0;
}
