#include "protocol/poll.h"

#include "board/position.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "platform/channel.h"
#include "platform/system.h"
#include "protocol/interpreter.h"
#include "search/records.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <span>
#include <string_view>

namespace {

constexpr int THINKING_WIDTH = 1'000'000; // so large that a thinking line is never wrapped

// Total time for all searches after the front end has closed a pipe, in centiseconds. The engine
// still searches because a program may write all commands at once, close its pipe to the engine and
// read the moves afterwards.
constexpr std::uint64_t LAST_THOUGHT = 50;

// The last line that PollCommands examined.
std::int32_t last_timestamp = 0; // number of the line
std::uint8_t last_pondering = 0; // value of engine_state.pondering when the line was examined
std::uint8_t last_answer = 0;    // 1 if the treatment of the line was STOP

// Time at which the front end was found to be gone, in centiseconds. 0 while the front end is
// present.
std::uint64_t hung_up_at = 0;

CommandLine line; // the line that PollCommands examines

// True if the search must end because the front end has hung up or the input has ended. Pondering
// and analysis end at once. Other searches end when LAST_THOUGHT centiseconds have passed.
bool IsFrontEndGone() {
    if (WaitingInput() != INPUT_UNKNOWN && !IsHungUp()) {
        hung_up_at = 0;
        return false;
    }
    const std::uint64_t now = CurrentTimeU64();
    if (hung_up_at == 0) hung_up_at = now;
    return engine_state.pondering || engine_state.analyze_mode || now - hung_up_at > LAST_THOUGHT;
}

// Returns the command's treatment in the current search: pondering, analysis or a search for the
// engine's move.
Hearing HearingOf(const Command& command) {
    const DuringSearch& during = command.during_search;
    if (engine_state.pondering) return during.pondering;
    return engine_state.analyze_mode ? during.analysing : during.on_own_time;
}

// Returns the first matching command whose treatment is not WAIT, or null.
const Command* FindCommand() {
    const std::span<const Command> commands = CommandTable();
    const auto command = std::ranges::find_if(commands, [](const Command& row) {
        return HearingOf(row) != Hearing::WAIT && IsMatch(line, row.name, row.during_search.match);
    });
    return command == commands.end() ? nullptr : &*command;
}

void Answer(const Command& command) {
    const std::string_view arguments = std::string_view(line).substr(command.name.size());
    is_position_withheld = true;
    (command.answer ? command.answer : command.carry_out)(arguments);
    is_position_withheld = false;
}

} // namespace

bool PollCommands() {
    for (;;) {
        std::int32_t timestamp = 0;
        if (!NextCommand(line, &timestamp, false)) return false;
        if (timestamp == last_timestamp && engine_state.pondering == last_pondering) {
            return last_answer || IsFrontEndGone();
        }
        last_timestamp = timestamp;
        last_pondering = engine_state.pondering;
        const Command* const command = FindCommand();
        const Hearing hearing = command ? HearingOf(*command) : Hearing::WAIT;
        last_answer = hearing == Hearing::STOP;
        if (hearing == Hearing::STOP) return true;
        if (hearing == Hearing::WAIT) return IsFrontEndGone();
        ReceiveCommand(line); // removes the line from the input
        if (hearing != Hearing::DROP) Answer(*command);
        if (hearing == Hearing::ANSWER_AND_STOP) return true;
    }
}

void PrintThinking(const SearchLine& found) {
    if (!engine_state.post_thinking) return;
    std::printf("%2d%8d%8" PRIu64 "%11" PRIu64 "   ", found.plies, found.score,
                CurrentTimeU64() - search_info.start_time, search_info.nodes);
    const std::int32_t first_ply = game_state.ply_count + pgn_game_info.first_ply;
    WritePgnMoveList(stdout, found.moves, {first_ply, THINKING_WIDTH, nullptr, WrittenMove});
    std::printf("\n");
    FlushOutput();
}

bool NoteRootMove(const Move& move) {
    CopyText(analyze_info.move_text, WrittenMove(move));
    return true;
}
