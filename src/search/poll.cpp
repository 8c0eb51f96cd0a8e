#include "search/poll.h"

#include "board/utility.h"
#include "game/enginestate.h"
#include "platform/channel.h"
#include "platform/system.h"
#include "search/records.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <string_view>

namespace {

// Answered during a search when the whole line equals the entry.
constexpr std::string_view TO_REPLY[] = {"post", "nopost", "easy", "hard"};

// End a search when the line begins with the entry.
constexpr std::string_view TO_STOP[] = {"new",      "force",   "time",     "otim",
                                        "usermove", "result",  "setboard", "undo",
                                        "remove",   "analyze", "exit",     "quit"};

constexpr std::size_t STATUS_SIZE = 160;

constexpr std::uint64_t LAST_THOUGHT = 50; // centiseconds

// What the poll does with a line.
enum class Verdict {
    REPEAT,     // taken and dealt with; look for the next line
    STOP_TAKEN, // taken, and the search ends
    STOP,       // left for the main loop, and the search ends
    WAIT        // left for the main loop, after the search
};

CommandHandler command_handler = nullptr;
std::int32_t last_timestamp = 0; // of the waiting line judged last
std::uint8_t last_pondering = 0; // whether that was while pondering
std::uint8_t last_answer = 0;    // that line ended the search

std::uint64_t hung_up_at = 0; // when the front end was first seen to be gone; 0: it is there

CommandLine command; // the line being judged

void Take() { ReceiveCommand(command); }

Verdict Answer(bool is_heard) {
    Take();
    if (is_heard) command_handler(command);
    return Verdict::REPEAT;
}

void SendStatus() {
    analyze_info.elapsed = CurrentTimeU64() - search_info.start_time;
    analyze_info.nodes = search_info.nodes;
    char line[STATUS_SIZE];
    std::snprintf(line, sizeof line, "stat01:%8" PRIu64 "%11" PRIu64 "%3d%4d%4d%8s",
                  analyze_info.elapsed, analyze_info.nodes, analyze_info.depth,
                  analyze_info.moves_left, analyze_info.moves_total, analyze_info.move_text);
    SendCommand(line);
}

// A line that waits hides what comes behind it, but not that the front end has gone: it has hung
// up, or nothing is left to read. A search without a limit then ends at once; those on the engine's
// clock have a moment together, in which lines that were piped in still get a good answer.
bool IsFrontEndGone() {
    if (WaitingInput() != INPUT_UNKNOWN && !IsHungUp()) {
        hung_up_at = 0;
        return false;
    }
    const std::uint64_t now = CurrentTimeU64();
    if (hung_up_at == 0) hung_up_at = now;
    return engine_state.pondering || engine_state.analyze_mode || now - hung_up_at > LAST_THOUGHT;
}

Verdict Judge(std::string_view line) {
    const bool is_pondering = engine_state.pondering != 0;
    if (line.starts_with('?')) {
        Take();
        return is_pondering ? Verdict::REPEAT : Verdict::STOP_TAKEN;
    }
    if (line.starts_with('.')) {
        Take();
        SendStatus();
        return Verdict::REPEAT;
    }
    if (is_pondering && (line.starts_with("ping") || line == "draw")) return Answer(true);
    if (is_pondering && line == "easy") {
        Answer(true);
        return Verdict::STOP_TAKEN;
    }
    if (line == "pause") {
        Take();
        Take(); // whatever comes next ends the pause
        return Verdict::REPEAT;
    }
    if (std::ranges::find(TO_REPLY, line) != std::end(TO_REPLY)) return Answer(true);
    if (std::ranges::any_of(TO_STOP, [&](std::string_view s) { return line.starts_with(s); })) {
        return Verdict::STOP;
    }
    if (line == "bk") return Answer(is_pondering || engine_state.analyze_mode);
    if (line == "hint") return Answer(is_pondering);
    return Verdict::WAIT;
}

} // namespace

void SetCommandHandler(CommandHandler handler) { command_handler = handler; }

std::uint8_t PollCommands() {
    if (!command_handler) return 0;
    for (;;) {
        std::int32_t timestamp = 0;
        if (!NextCommand(command, &timestamp, false)) return 0;
        if (timestamp == last_timestamp && engine_state.pondering == last_pondering) {
            return last_answer || IsFrontEndGone();
        }
        last_timestamp = timestamp;
        last_pondering = engine_state.pondering;
        switch (Judge(command)) {
        case Verdict::REPEAT: break;
        case Verdict::STOP_TAKEN: return 1;
        case Verdict::STOP: last_answer = 1; return 1;
        case Verdict::WAIT: last_answer = 0; return IsFrontEndGone();
        }
    }
}
