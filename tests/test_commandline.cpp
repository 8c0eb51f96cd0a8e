// The command line: options, messages, exit statuses and the texts printed.
#include "cases.h"
#include "engine_process.h"

#include "search/hash.h"

#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <unistd.h>

namespace {

// Runs the engine without input.
Ending RunEngine(const std::string& words, const std::string& invocation = "some/korvane") {
    EngineProcess engine(words, invocation);
    CloseInput(engine);
    return WaitForExit(engine);
}

void ExpectRun(const std::string& words, int status, const std::string& errors,
               const std::string& output) {
    const Ending ending = RunEngine(words);
    EXPECT_EQ(ending.status, status) << words;
    EXPECT_EQ(ending.output, output) << words;
    EXPECT_EQ(ending.errors, errors) << words;
}

void ExpectError(const std::string& words, const std::string& message) {
    ExpectRun(words, 1, "korvane: " + message + "\n", "");
}

TEST(CommandLine, RefusesUnknownOptions) {
    for (const std::string word : {"x", "--hash", "--no-books=1", "-", "-of"}) {
        ExpectError("--version -f y " + word, "unrecognized option \"" + word + "\"");
    }
    if (WINDOWS_PROGRAMS) return; // whose names are those of their files
    EXPECT_EQ(RunEngine("x", "/some\\" + std::string(40, 'k')).errors,
              std::string(31, 'k') + ": unrecognized option \"x\"\n");
}

TEST(CommandLine, RefusesOptionsWithoutValue) {
    for (const std::string option : {"--hash-size", "--format", "-f", "-o"}) {
        for (const std::string next : {"", " --verbose", " -f=x", " --hash-size 1"}) {
            ExpectError(option + next, "option value not specified (\"" + option + "\")");
        }
    }
}

TEST(CommandLine, RefusesOptionsThatDoNotGoTogether) {
    for (const std::string words :
         {"--version --verbose", "--help --version", "--help -f x", "--make-book",
          "--make-book --format=pgn", "--make-book -f x", "--make-book --format=PGN -f x --no-book",
          "--make-book --show-book --format=pgn -f x -o y", "--show-book",
          "--show-book -o x --format pgn", "--show-book -o x --hash-size=0"}) {
        ExpectError(words, "invalid option configuration");
    }
}

TEST(CommandLine, RefusesOddValues) {
    ExpectError("--make-book -f x --format PGN", "invalid option value (\"--format=PGN\")");
    for (const std::string value : {"0", "-1", "4096", "4294967297", "many", ""}) {
        ExpectError("--hash-size 1 --hash-size=" + value,
                    "invalid option value (\"--hash-size=" + value + "\")");
    }
}

TEST(CommandLine, RefusesMissingFiles) {
    ExpectRun("--make-book --format txt -f=a=b", 1, "Error (file does not exist): a=b\n", "");
    ExpectRun("--show-book -o x", 1, "Error (file does not exist): korvane.bk\n", "");
}

// With room for one of the two areas of memory.
void StartWithLittleMemory() {
    LimitMemory(getpid(), std::size_t{350} << 20);
    InitializeHashTable(1024);
}

TEST(CommandLine, RefusesTablesWithoutMemoryForThem) {
    EXPECT_EXIT(StartWithLittleMemory(), testing::ExitedWithCode(1),
                "^Error \\(cannot create hash tables\\): 576 MB total, 192 MB with 8388608 "
                "entries each\n$");
}

// Thirty plies of a line; of games the moves that five have.
TEST(CommandLine, BuildsAndListsBooks) {
    std::string line = "a3 a6";
    for (int i = 0; i < 15; ++i) {
        line += i % 2 == 0 ? " Nf3 Nf6" : " Ng1 Ng8";
    }
    const std::string build = "--make-book --format=pgn -f games";
    EngineProcess lister("--show-book -o lines", KORVANE_BINARY,
                         LayBook(line) + "; cat korvane.bk | " KORVANE_BINARY
                                         " --show-book -f /dev/stdin -o piped");
    EXPECT_EQ(WaitForExit(lister).status, 0);
    EXPECT_EQ(ReadFile(lister, "piped"), ReadFile(lister, "lines"));
    EXPECT_TRUE(ReadFile(lister, "lines").ends_with(" Ng8 14. Nf3 Nf6 15. Ng1 Ng8 *\n"));
    EngineProcess builder(build, KORVANE_BINARY,
                          "for i in 1 2 3 4 5; do echo 1. e4 '*'; done > games; "
                          "for i in 1 2 3 4; do echo 1. d4 '*'; done >> games");
    EXPECT_EQ(WaitForExit(builder).status, 0);
    EXPECT_EQ(ReadFile(builder, "korvane.bk").size(), 40u + 36); // the root and e4
}

TEST(CommandLine, IsSilentUnlessVerbose) {
    const std::string tables = "verbose: Created hash tables: ";
    ExpectRun("--no-book --no-random --no-resign -f x.pgn -o= --format=any", 0, "", "");
    ExpectRun("--verbose", 0, "",
              tables + "72 MB total, 24 MB with 1048576 entries each.\n"
                       "verbose: Cannot find file \"korvane.bk\".\n");
    ExpectRun("--hash-size=0 --no-book --hash-size 5 --verbose=no", 0, "",
              tables + "4 MB total, 1 MB with 65536 entries each.\n");
}

TEST(CommandLine, PrintsVersionAndUsage) {
    const std::string version = RunEngine("--version").output;
    EXPECT_TRUE(std::regex_match(version, std::regex("Korvane 1\\.0\\.3 [^\n]+\n"))) << version;
    ExpectRun("--version", 0, "", version);
    // Lines are padded with blanks: to 79, or to 69 where the name counts as two characters.
    std::string usage = version + "\n";
    std::istringstream lines(ReadCases("usage.txt"));
    for (std::string line; std::getline(lines, line);) {
        line.resize(line.find("korvane") == std::string::npos ? 79 : 69 - 2 + 7, ' ');
        usage += line + "\n";
    }
    ExpectRun("--help", 0, "", usage);
}

} // namespace
