// bench: the signature and the speed of the search, see measure/bench.h.
#include "measure/bench.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "notation/text.h"
#include "search/hash.h"

#include <cstdio>
#include <cstdlib>

int main(int argument_count, char** arguments) {
    std::int32_t plies = BENCH_DEFAULT_DEPTH;
    if (argument_count > 2 || (argument_count == 2 && !ReadNumber(arguments[1], plies)) ||
        plies < BENCH_MIN_DEPTH || plies > BENCH_MAX_DEPTH) {
        std::fprintf(stderr, "usage: bench [DEPTH], from %d to %d plies\n", BENCH_MIN_DEPTH,
                     BENCH_MAX_DEPTH);
        return EXIT_FAILURE;
    }
    InitializeTables();
    InitializeHashTable(engine_state.hash_size);
    const bool is_done = RunBench(plies);
    FinalizeHashTable();
    return is_done ? EXIT_SUCCESS : EXIT_FAILURE;
}
