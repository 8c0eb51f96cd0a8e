// bench: searches fixed positions and prints the speed and the total number of nodes, which is the
// signature of the search (see measure/bench.h).
#include "measure/bench.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "notation/text.h"
#include "search/hash.h"

#include <cstdio>
#include <cstdlib>

namespace {

void PrintUsage(std::FILE* out) {
    std::fprintf(out, "usage: bench [DEPTH], from %d to %d plies (default: %d)\n", BENCH_MIN_DEPTH,
                 BENCH_MAX_DEPTH, BENCH_DEFAULT_DEPTH);
}

} // namespace

int main(int argument_count, char** arguments) {
    if (argument_count == 2 && IsHelpOption(arguments[1])) {
        PrintUsage(stdout);
        return EXIT_SUCCESS;
    }
    std::int32_t plies = BENCH_DEFAULT_DEPTH;
    if (argument_count > 2 || (argument_count == 2 && !ReadNumber(arguments[1], plies)) ||
        plies < BENCH_MIN_DEPTH || plies > BENCH_MAX_DEPTH) {
        PrintUsage(stderr);
        return EXIT_FAILURE;
    }
    InitializeTables();
    InitializeHashTable(engine_state.hash_size);
    const bool is_done = RunBench(plies);
    FinalizeHashTable();
    return is_done ? EXIT_SUCCESS : EXIT_FAILURE;
}
