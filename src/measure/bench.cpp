#include "measure/bench.h"

#include "board/score.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "notation/text.h"
#include "platform/system.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/records.h"
#include "search/rootsearch.h"

#include <algorithm>
#include <cassert>
#include <cinttypes>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace {

// A test position: a FEN, and the moves that are played from there before the search.
struct Start {
    const char* fen;
    const char* moves;
};

constexpr Start STARTS[] = {
    // openings
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", ""},
    {"r1bqkb1r/pp1p1ppp/2n1pn2/2p5/2P1P3/2N2N2/PP1P1PPP/R1BQKB1R w KQkq - 0 5", ""},
    {"rnbq1rk1/ppp1ppbp/3p1np1/8/2PPP3/2N2N2/PP2BPPP/R1BQK2R b KQ - 3 6", ""},
    // middlegames
    {"r2q1rk1/pp1bbppp/2n1pn2/3p4/3P1B2/2NBPN2/PP3PPP/R2Q1RK1 w - - 6 11", ""},
    {"r1b2rk1/1pqnbppp/p2ppn2/8/3NPP2/2N1B3/PPPQB1PP/R4RK1 b - - 4 11", ""},
    {"2rq1rk1/pb1n1ppp/1p2pn2/2b5/2P5/1PN1PN2/PB2BPPP/2RQ1RK1 w - - 2 13", ""},
    {"r3r1k1/1bq2pbp/p2p1np1/1p1Pp3/4P3/1PN2NPP/PB3PB1/R2QR1K1 w - - 0 18", ""},
    // tactical positions
    {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", ""},
    {"r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PPR/2KR4 w - - 0 1", ""},
    {"1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1", ""},
    {"2r3k1/1p2q1pp/2b1pr2/p1pp4/6Q1/1P1PP1R1/P1PN2PP/5RK1 w - - 0 1", ""},
    // endgames
    {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", ""},
    {"8/5pk1/6p1/3R3p/7P/6P1/r4PK1/8 w - - 4 41", ""},
    {"8/pp3k2/2p2p1p/3p1p2/1P1P1P2/P1P1KP1P/8/3b1B2 b - - 3 32", ""},
    {"6k1/1p3pp1/p1rb3p/3p4/3B1P2/1P2P1P1/P4K1P/2R5 b - - 0 28", ""},
    // games near a draw by repetition
    {"6k1/5p1p/6p1/8/4Q3/8/1r3PPP/q5BK w - - 0 30", "e4e8 g8g7 e8e5 g7g8 e5e8 g8g7 e8e5"},
    {"r1bqkb1r/pp1p1ppp/2n1pn2/2p5/2P1P3/2N2N2/PP1P1PPP/R1BQKB1R w KQkq - 0 5",
     "f1e2 f8e7 e2f1 e7f8 f1d3 f8d6 d3f1 d6f8 f1e2 f8e7"},
    {"8/5pk1/4p1p1/3bP2p/3B3P/r4PP1/4R1K1/8 w - - 4 41",
     "g2h2 g7h7 h2g2 h7g7 e2d2 a3a6 d2c2 a6a4 c2d2 a4a3 d2e2 d5c4 e2f2 c4d5 d4b2 a3b3 b2d4 b3d3 "
     "d4b2 d3b3 b2c1 b3a3 c1d2 a3b3 d2c1 b3c3 c1b2 c3a3 b2d4 a3a1 f2e2 a1a3"},
    // stalemate or mate near the root
    {"5rk1/5p1p/6pQ/8/8/2q3PK/5P1P/8 w - - 0 1", ""},
    {"7k/7P/5K2/8/8/8/5p2/5Q2 w - - 0 1", ""},
    {"8/8/8/8/8/5kq1/7R/7K w - - 0 1", ""},
    {"r1bqr1k1/ppp2ppp/8/4n3/2B1N2Q/8/PPP2PPP/2KR3R w - - 0 14", ""},
    // en passant at the root and deeper in the tree
    {"4k3/1p1p4/8/2P1P3/1pP5/8/P2P4/4K3 b - c3 0 1", ""},
    {"rnbqkbnr/ppp1pppp/8/8/3p4/4P3/PPPPNPPP/RNBQKB1R w KQkq - 0 4", "c2c4"},
    // pawn races and underpromotions
    {"8/P6k/8/1P6/6p1/8/K6p/8 w - - 0 1", ""},
    {"5n2/4P1P1/7k/8/8/1K6/2p5/1N6 w - - 0 1", ""},
    // endgames with at most five pieces
    {"8/8/8/3k4/8/8/3BN3/4K3 w - - 0 1", ""},
    {"8/8/8/8/4k3/8/3PK3/8 w - - 0 1", ""},
    {"8/8/1k6/8/8/8/1q6/5K1R b - - 0 1", ""},
    {"4k3/8/8/8/8/8/2n1n3/K1B5 w - - 0 1", ""},
};

struct Total {
    std::uint64_t nodes;
    std::uint64_t milliseconds;
};

// Sets up the position and plays its moves. Returns false if the position or a move is illegal.
bool PlayTo(const Start& start) {
    NewGame();
    if (!SetBoardFen(start.fen)) return false;
    std::string_view moves = start.moves;
    for (std::string_view word; !(word = NextWord(moves)).empty();) {
        Move move;
        if (!FindLegalMove(word, move)) return false;
        PlayMove(move);
    }
    return true;
}

std::uint64_t NodesPerSecond(const Total& total) {
    return total.nodes * 1000 / std::max<std::uint64_t>(total.milliseconds, 1);
}

void PrintHead() {
    std::printf("%5s %11s %8s %9s %8s  %-6s  %s\n", "depth", "nodes", "ms", "nodes/s", "score",
                "move", "position");
    FlushOutput();
}

// Searches one position with empty hash tables, prints a row and adds the nodes and the time to
// `total`. Returns false if the position or a move is illegal or the search was stopped.
bool SearchPosition(const Start& start, std::int32_t plies, Total& total) {
    if (!PlayTo(start)) {
        std::fprintf(stderr, "bench: illegal: %s %s\n", start.fen, start.moves);
        return false;
    }
    Move move;
    const std::uint64_t start_time = SystemTime();
    const std::int32_t score =
        FindBestMove(&move, nullptr, LastMove(), {.depth = Plies(plies), .clock = {}});
    if (search_info.stop) return false;
    const Total row{search_info.nodes, (SystemTime() - start_time) / TICKS_PER_MILLISECOND};
    std::printf("%5d %11" PRIu64 " %8" PRIu64 " %9" PRIu64 " %8d  %-6s  %s\n", analyze_info.depth,
                row.nodes, row.milliseconds, NodesPerSecond(row), score, WrittenMove(move),
                start.fen);
    FlushOutput();
    total.nodes += row.nodes;
    total.milliseconds += row.milliseconds;
    return true;
}

} // namespace

bool RunBench(std::int32_t plies) {
    assert(plies >= BENCH_MIN_DEPTH && plies <= BENCH_MAX_DEPTH);
    const EngineState engine = engine_state;
    const SearchHost host = search_host;
    engine_state.use_book = 0;
    engine_state.use_random = 0;
    search_host = {.must_stop = host.must_stop};
    Total total{0, 0};
    PrintHead();
    const bool is_done = std::ranges::all_of(
        STARTS, [&](const Start& start) { return SearchPosition(start, plies, total); });
    engine_state = engine;
    search_host = host;
    NewGame();
    if (!is_done) return false;
    std::printf("Nodes: %" PRIu64 "\n", total.nodes);
    std::printf("Time (ms): %" PRIu64 "\n", total.milliseconds);
    std::printf("Nodes/second: %" PRIu64 "\n", NodesPerSecond(total));
    FlushOutput();
    return true;
}
