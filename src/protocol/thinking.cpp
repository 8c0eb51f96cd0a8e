#include "protocol/thinking.h"

#include "board/utility.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "notation/pgninfo.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "platform/system.h"
#include "search/records.h"

#include <cinttypes>
#include <cstdio>

namespace {

constexpr int THINKING_WIDTH = 1'000'000; // a thinking line is never wrapped

} // namespace

void PrintThinking(const SearchLine& line) {
    if (!engine_state.post_thinking) return;
    std::printf("%2d%8d%8" PRIu64 "%11" PRIu64 "   ", line.plies, line.score,
                CurrentTimeU64() - search_info.start_time, search_info.nodes);
    const std::int32_t first_ply = game_state.ply_count + pgn_game_info.first_ply;
    WritePgnMoveList(stdout, line.moves, {first_ply, THINKING_WIDTH, nullptr});
    std::printf("\n");
    FlushOutput();
}

bool NoteRootMove(const Move& move) {
    CopyText(analyze_info.move_text, WrittenMove(move));
    return true;
}
