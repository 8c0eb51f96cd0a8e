#include "game/enginestate.h"

#include "board/score.h"
#include "platform/system.h"

#include <cstdio>

EngineState engine_state;

namespace {

constexpr std::int32_t DEFAULT_DEPTH_LIMIT = Plies(50);

} // namespace

void InitializeEngineState() {
    engine_state.analyze_mode = 0;
    engine_state.san_notation = 0;
    engine_state.use_book = 1;
    engine_state.post_thinking = 1;
    engine_state.ponder = 1;
    engine_state.use_random = 1;
    engine_state.use_resign = 1;
    engine_state.verbose = 0;
    engine_state.hash_size = DEFAULT_HASH_SIZE;
}

void NewEngineState() {
    engine_state.depth_limit = DEFAULT_DEPTH_LIMIT;
    engine_state.pondering = 0;
}

void PrintVerbose(std::string_view text) {
    if (!engine_state.verbose) return;
    std::printf("verbose: %.*s\n", static_cast<int>(text.size()), text.data());
    FlushOutput();
}
