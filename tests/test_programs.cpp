// Tests that run the programs and talk to them over pipes. Most cases are in files under
// tests/cases/.
#include "conversation.h"

#include "search/hash.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

const bool HAS_PROGRAM_CASES[] = {
    RegisterConversations("protocol.txt"),    RegisterConversations("logs.txt"),
    RegisterConversations("uci.txt"),         RegisterConversations("exits.txt"),
    RegisterConversations("commandline.txt"), RegisterConversations("play.txt"),
};

// Limits the memory so that only one of the two allocations in InitializeHashTable succeeds.
void StartWithLittleMemory() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t most = pages * static_cast<rlim_t>(getpagesize()) + (rlim_t{350} << 20);
    const rlimit limit{most, most};
    EXPECT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    InitializeHashTable(1024);
}

TEST(CommandLine, RefusesTablesWithoutMemoryForThem) {
    EXPECT_EXIT(StartWithLittleMemory(), testing::ExitedWithCode(1),
                "^Error \\(cannot create hash tables\\): 576 MB total, 192 MB with 8388608 "
                "entries each\n$");
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__
#endif
#endif
#ifndef __SANITIZE_ADDRESS__ // the sanitizer itself ends a program without memory
TEST(UciOnLinux, ReportsWhenItRunsOutOfMemory) {
    CheckConversation("!run korvane-uci; isready; < readyok; "
                      "$ prlimit --pid $PID --as=$(grep VmSize /proc/$PID/status |tr -cd 0-9)000; "
                      "!send {1048576 \\s}; !end",
                      "readyok; error: Error (out of memory); exit 1");
}
#endif

} // namespace
