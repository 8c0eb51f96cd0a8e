// Tests of the platform layer on Windows.
#include "platform/enforce.h"
#include "platform/system.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include <windows.h>

namespace {

// A file name in UTF-8. No code page has all its characters.
const std::string STRANGE = "\xC3\xA4 \xE2\x99\x9E \xD0\xB6.txt";

// Replaces standard input and output by pipes. The test writes to `typing`, the other end of
// standard input, and reads from `reading`, the other end of standard output.
struct System : testing::Test {
    HANDLE old_input = GetStdHandle(STD_INPUT_HANDLE), old_output = GetStdHandle(STD_OUTPUT_HANDLE);
    HANDLE input = nullptr, typing = nullptr, reading = nullptr, output = nullptr;

    System() {
        CreatePipe(&input, &typing, nullptr, 0);
        CreatePipe(&reading, &output, nullptr, 0);
        SetStdHandle(STD_INPUT_HANDLE, input);
        SetStdHandle(STD_OUTPUT_HANDLE, output);
    }
    ~System() override {
        SetStdHandle(STD_INPUT_HANDLE, old_input);
        SetStdHandle(STD_OUTPUT_HANDLE, old_output);
        for (const HANDLE handle : {input, typing, reading, output}) {
            if (handle) CloseHandle(handle);
        }
    }

    void Type(const std::string& text) {
        DWORD put = 0;
        WriteFile(typing, text.data(), static_cast<DWORD>(text.size()), &put, nullptr);
    }
};

void HangUp(HANDLE& handle) {
    CloseHandle(handle);
    handle = nullptr;
}

std::string Read() {
    char room[100];
    return {room, ReadInput(room)};
}

std::string ReadWhole(const char* name) {
    std::FILE* const file = OpenFile(name, FileUse::READ);
    if (!file) return "none";
    char room[100];
    const std::size_t count = std::fread(room, 1, sizeof room, file);
    std::fclose(file);
    return {room, count};
}

bool Write(const char* name, FileUse use, const char* text) {
    std::FILE* const file = OpenFile(name, use);
    if (!file) return false;
    std::fputs(text, file);
    return std::fclose(file) == 0;
}

TEST_F(System, CountsWhatWaitsInAPipe) {
    EXPECT_FALSE(IsConsoleInput());
    EXPECT_EQ(WaitingInput(), 0);
    Type("go\r\n");
    EXPECT_EQ(WaitingInput(), 4);
    EXPECT_EQ(Read(), "go\r\n");
    Type(""); // an empty write does not end the input
    Type("x");
    EXPECT_EQ(Read(), "x");
    EXPECT_FALSE(IsHungUp());
}

TEST_F(System, SeesTheEndOfTheInputAfterWhatIsLeft) {
    Type("go");
    HangUp(typing);
    EXPECT_TRUE(IsHungUp());
    EXPECT_EQ(Read(), "go");
    EXPECT_EQ(WaitingInput(), INPUT_UNKNOWN);
    EXPECT_EQ(Read(), "");
}

// Runs in a child process, because a read of standard input starts a thread that watches standard
// output until the process ends.
TEST_F(System, WaitsForInputNoLongerThanSomebodyListens) {
    const auto wait = [this] {
        std::thread front_end([this] { HangUp(reading); });
        front_end.detach();
        const bool has_ended = Read().empty() && WaitingInput() == INPUT_UNKNOWN;
        std::_Exit(has_ended ? EXIT_SUCCESS : EXIT_FAILURE);
    };
    EXPECT_EXIT(wait(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(System, ReadsFilesToTheirEnd) {
    Write("in", FileUse::WRITE, "go\n");
    const HANDLE file =
        CreateFileW(L"in", GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    SetStdHandle(STD_INPUT_HANDLE, file);
    EXPECT_EQ(WaitingInput(), 3);
    EXPECT_EQ(Read(), "go\n");
    EXPECT_EQ(WaitingInput(), INPUT_UNKNOWN);
    EXPECT_EQ(Read(), "");
    CloseHandle(file);
    std::filesystem::remove("in");
}

// Must be the last test of this suite: after standard output has closed, the platform layer reports
// it as closed for ever.
TEST_F(System, SeesThatNobodyListens) {
    EXPECT_EQ(WaitingInput(), 0);
    HangUp(reading);
    EXPECT_TRUE(IsHungUp());
    EXPECT_EXIT(
        {
            CreatePipe(&reading, &output, nullptr, 0);
            SetStdHandle(STD_OUTPUT_HANDLE, output);
            HangUp(reading);
            WriteOutput("x");
        },
        testing::ExitedWithCode(EXIT_FAILURE), "");
}

TEST(Files, HaveTheSameBytesUnderAnyName) {
    const char* const name = STRANGE.c_str();
    EXPECT_FALSE(FileExists(name));
    EXPECT_TRUE(Write(name, FileUse::CREATE, "a\n"));
    EXPECT_FALSE(Write(name, FileUse::CREATE, "b")) << "it is there";
    EXPECT_TRUE(Write(name, FileUse::LOG, "b\n"));
    EXPECT_TRUE(FileExists(name));
    EXPECT_TRUE(IsPlainFile(name));
    EXPECT_EQ(ReadWhole(name), "a\nb\n");
    EXPECT_TRUE(Write("new", FileUse::WRITE, "c\n"));
    EXPECT_TRUE(MoveIntoPlace("new", name));
    EXPECT_EQ(ReadWhole(name), "c\n");
    EXPECT_EQ(ReadWhole("new"), "none");
    EXPECT_TRUE(Write(name, FileUse::WRITE, ""));
    EXPECT_EQ(ReadWhole(name), "");
    EXPECT_TRUE(MoveIntoPlace(name, "old"));
    EXPECT_FALSE(FileExists(name));
    std::filesystem::remove("old");
    EXPECT_FALSE(IsPlainFile("\xE4")) << "not UTF-8";
    EXPECT_FALSE(FileExists("\xE4"));
    EXPECT_TRUE(FileExists("."));
    EXPECT_FALSE(IsPlainFile("."));
    EXPECT_EQ(ReadWhole("."), "");
    EXPECT_EQ(OpenFile(".", FileUse::LOG), nullptr);
}

TEST(Memory, IsZeroedForTables) {
    constexpr std::size_t SIZE = 5'000'000;
    char* const table = static_cast<char*>(AllocateTable(SIZE));
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[SIZE - 1], 0);
    FreeTable(table, SIZE);
    EXPECT_EQ(AllocateTable(std::size_t{1} << 60), nullptr);
}

} // namespace
