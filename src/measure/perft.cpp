#include "measure/perft.h"

#include "game/gamestate.h"
#include "moves/attacks.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "platform/system.h"
#include "search/records.h"

#include <cassert>
#include <cinttypes>
#include <cstdio>

namespace {

constexpr std::int32_t POLL_DEPTH = 3; // remaining plies at a node that polls the host

bool is_stopped = false;

template <Colour US>
std::uint64_t CountLeavesOf(std::int32_t depth, const Move* last_move) {
    constexpr Colour THEM = Opponent(US);
    if (depth == 0) return 1;
    if (depth == POLL_DEPTH && search_host.must_stop && search_host.must_stop()) is_stopped = true;
    if (is_stopped) return 0;
    MoveList list;
    GenerateCaptures<US>(list, last_move);
    GenerateNonCaptures<US>(list);
    const Bitboard maybe_illegal = MaybeIllegalFrom<US>();
    std::uint64_t nodes = 0;
    for (const Move& move : list) {
        const bool is_safe = !IsMaybeIllegal(move, maybe_illegal);
        if (depth == 1 && is_safe) {
            ++nodes;
            continue;
        }
        MakeMove<US>(move);
        assert(!is_safe || !IsKingCapturableBy<THEM>());
        if (is_safe || !IsKingCapturableBy<THEM>()) {
            nodes += CountLeavesOf<THEM>(depth - 1, &move);
        }
        UnMakeMove<US>(move);
    }
    return nodes;
}

} // namespace

std::uint64_t CountLeaves(std::int32_t depth, const Move* last_move) {
    return board.side_to_move == WHITE ? CountLeavesOf<WHITE>(depth, last_move)
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
