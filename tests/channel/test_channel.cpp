// Tests of the command channel (platform/channel.h) on a console. The functions below simulate the
// console.
#include "platform/channel.h"
#include "platform/system.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string typed;   // console input that has not been read yet
int events = 0;      // number of unread events (such as key presses) of the console
int quiet_calls = 0; // number of calls of QuietConsole
bool is_asked = false;

// Polls the channel and returns the waiting line, which stays in the channel. Returns "untouched"
// if no line is waiting.
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

// A single waiting event can be the press of one key. The channel must not read in this case,
// because the read would block until the line is complete.
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
