// Tests the command channel on a console. The functions below simulate the console.
#include "platform/channel.h"
#include "platform/system.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string typed;   // input that is typed but not yet read
int events = 0;      // number of events that are waiting in the console
int quiet_calls = 0; // number of calls of QuietConsole
bool is_asked = false;

// Polls for a line and leaves it in the channel. Returns the line, or "untouched" if none is
// waiting.
std::string Look(int waiting_events) {
    events = waiting_events;
    CommandLine line = "untouched";
    NextCommand(line, nullptr, false);
    return line;
}

} // namespace

bool IsConsoleInput() {
    EXPECT_FALSE(is_asked) << "the kind of standard input is found out once";
    return is_asked = true;
}

void QuietConsole() { ++quiet_calls; }

int WaitingInput() { return events; }

std::size_t ReadInput(std::span<char> room) {
    const std::size_t count = typed.copy(room.data(), room.size());
    typed.erase(0, count);
    return count;
}

void WriteOutput(std::string_view) {}

// One waiting event can be a single key press. The channel must not read then, because a read waits
// for a whole line.
TEST(Console, WaitsForMoreThanOneEvent) {
    typed = "go\r\nnew\r\n";
    EXPECT_EQ(Look(0), "untouched");
    EXPECT_EQ(Look(1), "untouched");
    EXPECT_EQ(Look(2), "go");
    EXPECT_EQ(Look(0), "go") << "a line is held";
    CommandLine line;
    ReceiveCommand(line);
    EXPECT_EQ(Look(1), "untouched");
    EXPECT_EQ(Look(INPUT_UNKNOWN), "new");
    EXPECT_EQ(quiet_calls, 1);
}
