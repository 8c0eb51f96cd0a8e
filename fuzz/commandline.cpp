// Command lines: the arguments, an argument to a line, and the offline actions that they start.
#include "frame/startup.h"
#include "harness.h"
#include "mutate.h"
#include "search/hash.h"

#include <filesystem>
#include <vector>

namespace {

constexpr std::string_view ARGUMENTS[] = {"--hash-size",
                                          "--hash-size=%n",
                                          "--no-book",
                                          "--no-random",
                                          "--no-resign",
                                          "--verbose",
                                          "--version",
                                          "--help",
                                          "--make-book",
                                          "--show-book",
                                          "--format",
                                          "--format=pgn",
                                          "--format=txt",
                                          "-f",
                                          "-o",
                                          "-f=games",
                                          "-o=listing",
                                          "games",
                                          "korvane.bk",
                                          "listing",
                                          "%n",
                                          "--format=%n",
                                          "-",
                                          "--"};

} // namespace

std::string MutateInput(std::string_view text) {
    Parts arguments = SplitText(text, '\n');
    ChangeParts(arguments, [](auto) { return FilledText(Pick(ARGUMENTS)); });
    return JoinedText(arguments, '\n');
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    if (text.find('/') != std::string::npos) return 0; // stay in the directory
    std::vector<const char*> arguments = {text.data()};
    for (char& c : text) {
        if (c != '\n') continue;
        c = '\0';
        arguments.push_back(&c + 1);
    }
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        std::filesystem::remove_all(entry); // what the input before this one wrote
    }
    WriteText("games", "e4 e5 *\n");
    WriteText("korvane.bk", std::string(size % 2 * 36, '\0')); // damaged, or the root alone
    FinalizeHashTable();
    const int status =
        RunToExit([&] { ParseParameters(arguments.data(), static_cast<int>(arguments.size())); });
    Require(status >= -1 && status <= 1, "the exit status tells success from failure");
    if (status < 0) Finalize();
    return 0;
}
