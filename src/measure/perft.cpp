#include "measure/perft.h"

#include "game/gamestate.h"
#include "moves/attacks.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "platform/system.h"

#include <cinttypes>
#include <cstdio>

bool (*must_stop_counting)() = nullptr;

namespace {

constexpr std::int32_t ASKING_DEPTH = 3; // plies; some thousand leaves

bool is_stopped = false;

template <Colour US>
std::uint64_t CountLeavesOf(std::int32_t depth, const Move* last_move) {
    constexpr Colour THEM = Opponent(US);
    if (depth == 0) return 1;
    MoveList list;
    std::uint64_t nodes = 0;
    GenerateAllMoves(list, last_move);
    const Bitboard risky = RiskySquares<US>();
    if (depth == ASKING_DEPTH && must_stop_counting && must_stop_counting()) is_stopped = true;
    if (is_stopped) return 0;
    for (const Move& move : list) {
        const bool is_legal = !IsRiskyMove(move, risky);
        MakeMoveOf<US>(move);
        if (is_legal || !IsKingCapturableBy<THEM>()) nodes += CountLeavesOf<THEM>(depth - 1, &move);
        UnMakeMoveOf<US>(move);
    }
    return nodes;
}

} // namespace

std::uint64_t CountLeaves(std::int32_t depth, const Move* last_move) {
    return side_to_move == WHITE ? CountLeavesOf<WHITE>(depth, last_move)
                                 : CountLeavesOf<BLACK>(depth, last_move);
}

void Divide(std::int32_t depth) {
    std::uint64_t nodes = depth == 0 ? 1 : 0;
    MoveList list;
    is_stopped = false;
    if (depth > 0) GenerateAllLegalMoves(list, LastMove());
    for (const Move& move : list) {
        MakeMove(move);
        const std::uint64_t below = CountLeaves(depth - 1, &move);
        UnMakeMove(move);
        if (is_stopped) return;
        std::printf("%s: %" PRIu64 "\n", WrittenMove(move), below);
        FlushOutput();
        nodes += below;
    }
    std::printf("nodes %" PRIu64 "\n", nodes);
    FlushOutput();
}
