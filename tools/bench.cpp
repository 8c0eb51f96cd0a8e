// bench: searches a fixed set of positions to a fixed depth. The number of nodes is the signature
// of the search, the same on every run and machine; the speed is the machine's.
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "notation/text.h"
#include "platform/system.h"
#include "play/newgame.h"
#include "search/hash.h"
#include "search/records.h"
#include "search/rootsearch.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::int32_t DEFAULT_DEPTH = 7; // plies
constexpr std::int32_t MIN_DEPTH = 3;
constexpr std::int32_t MAX_DEPTH = 50;
constexpr std::uint64_t TICKS_PER_MILLISECOND = 10'000;

constexpr const char* POSITIONS[] = {
    // openings
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r1bqkb1r/pp1p1ppp/2n1pn2/2p5/2P1P3/2N2N2/PP1P1PPP/R1BQKB1R w KQkq - 0 5",
    "rnbq1rk1/ppp1ppbp/3p1np1/8/2PPP3/2N2N2/PP2BPPP/R1BQK2R b KQ - 3 6",
    // middlegames
    "r2q1rk1/pp1bbppp/2n1pn2/3p4/3P1B2/2NBPN2/PP3PPP/R2Q1RK1 w - - 6 11",
    "r1b2rk1/1pqnbppp/p2ppn2/8/3NPP2/2N1B3/PPPQB1PP/R4RK1 b - - 4 11",
    "2rq1rk1/pb1n1ppp/1p2pn2/2b5/2P5/1PN1PN2/PB2BPPP/2RQ1RK1 w - - 2 13",
    "r3r1k1/1bq2pbp/p2p1np1/1p1Pp3/4P3/1PN2NPP/PB3PB1/R2QR1K1 w - - 0 18",
    // tactical ones
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PPR/2KR4 w - - 0 1",
    "1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1",
    "2r3k1/1p2q1pp/2b1pr2/p1pp4/6Q1/1P1PP1R1/P1PN2PP/5RK1 w - - 0 1",
    // endgames
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "8/5pk1/6p1/3R3p/7P/6P1/r4PK1/8 w - - 4 41",
    "8/pp3k2/2p2p1p/3p1p2/1P1P1P2/P1P1KP1P/8/3b1B2 b - - 3 32",
    "6k1/1p3pp1/p1rb3p/3p4/3B1P2/1P2P1P1/P4K1P/2R5 b - - 0 28",
};

struct Total {
    std::uint64_t nodes;
    std::uint64_t milliseconds;
};

// Searches one position from cleared tables and prints its line.
bool SearchPosition(const char* fen, std::int32_t plies, Total& total) {
    NewGame();
    if (!SetBoardFen(fen)) {
        std::fprintf(stderr, "bench: illegal position: %s\n", fen);
        return false;
    }
    engine_state.depth_limit = plies * QUARTER_PLIES;
    Move move;
    const std::uint64_t start = SystemTime();
    const std::int32_t score = FindBestMove(&move, nullptr, LastMove());
    const std::uint64_t milliseconds = (SystemTime() - start) / TICKS_PER_MILLISECOND;
    std::printf("%10" PRIu64 " nodes %6" PRIu64 " ms to depth %2d %8d %-6s %s\n", search_info.nodes,
                milliseconds, analyze_info.depth, score, WrittenMove(move), fen);
    total.nodes += search_info.nodes;
    total.milliseconds += milliseconds;
    return true;
}

} // namespace

int main(int argument_count, char** arguments) {
    std::int32_t plies = DEFAULT_DEPTH;
    if (argument_count > 2 || (argument_count == 2 && !ReadNumber(arguments[1], plies)) ||
        plies < MIN_DEPTH || plies > MAX_DEPTH) {
        std::fprintf(stderr, "usage: bench [DEPTH], from %d to %d plies\n", MIN_DEPTH, MAX_DEPTH);
        return EXIT_FAILURE;
    }
    InitializeTables();
    engine_state.use_book = 0;
    engine_state.use_random = 0;
    engine_state.post_thinking = 0;
    InitializeHashTable(engine_state.hash_size);
    Total total{0, 0};
    for (const char* fen : POSITIONS) {
        if (!SearchPosition(fen, plies, total)) return EXIT_FAILURE;
    }
    const std::uint64_t time = total.milliseconds > 0 ? total.milliseconds : 1;
    std::printf("Nodes: %" PRIu64 "\n", total.nodes);
    std::printf("Time (ms): %" PRIu64 "\n", total.milliseconds);
    std::printf("Nodes/second: %" PRIu64 "\n", total.nodes * 1000 / time);
    FinalizeHashTable();
    return EXIT_SUCCESS;
}
