// Move tries and their file, the book in play, building and listing.
#include "support.h"

#include "book/book.h"
#include "book/bookmaker.h"
#include "game/bookstate.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "play/newgame.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <sys/resource.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

// A fresh directory, the working directory while a test runs.
struct BookTest : testing::Test {
    fs::path old_path = fs::current_path();
    fs::path path;

    void SetUp() override {
        char name[] = "/tmp/korvane-book-XXXXXX";
        path = mkdtemp(name);
        fs::current_path(path);
    }
    void TearDown() override {
        engine_state.use_book = 0;
        fs::current_path(old_path);
        fs::remove_all(path);
    }
};

void WriteText(const std::string& name, const std::string& text) {
    std::ofstream(name, std::ios::binary) << text;
}

std::string ReadText(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(name, std::ios::binary).rdbuf();
    return text.str();
}

// Builds a book from a text, lists it, and returns the listing.
std::string BuildAndList(const std::string& input, bool is_pgn, int minimum = 5) {
    WriteText("in", input);
    MakeBook("out.bk", "in", is_pgn, 30, minimum);
    ShowBook("out.bk", "out.txt");
    return ReadText("out.txt");
}

std::string Game(const std::string& moves) {
    return "[Event \"?\"]\n[Result \"*\"]\n\n" + moves + " *\n\n";
}

std::vector<std::string> BookMoves() {
    std::vector<std::string> moves;
    for (const MoveTrieNode* child = book_state.node->children; child; child = child->next) {
        moves.push_back(WrittenMove(child->move));
    }
    return moves;
}

std::int32_t NumberAt(const std::string& bytes, std::size_t at) {
    std::int32_t number = 0;
    std::memcpy(&number, bytes.data() + at, 4);
    return number;
}

TEST_F(BookTest, FileByteForByte) {
    const std::string games = Game("1. e4 e5") + Game("1. e4 c5") + Game("1. d4 d5");
    BuildAndList(games, true, 1);
    const std::string file = ReadText("out.bk");
    ASSERT_EQ(file.size(), 44u + 40 + 36 + 44 + 36 + 36);
    const std::size_t offsets[] = {0, 44, 84, 120, 164, 200};
    const std::int32_t counts[] = {2, 1, 0, 2, 0, 0};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(NumberAt(file, offsets[i] + 32), counts[i]) << i;
    }
    EXPECT_EQ(NumberAt(file, 36), 44);
    EXPECT_EQ(NumberAt(file, 40), 120);
    EXPECT_EQ(file.substr(0, 32), std::string(32, '\0'));
    std::string e4(32, '\0');
    e4[0] = 12;
    e4[4] = 28;
    e4[8] = 0x41;
    e4[10] = 0x49;
    EXPECT_EQ(file.substr(120, 32), e4);
    EXPECT_EQ(ReadText("out.txt"), "1. e4 e5 *\n1. e4 c5 *\n1. d4 d5 *\n");
    MakeBook("out.bk", "in", true, 30, 2);
    EXPECT_EQ(ReadText("out.bk").size(), 40u + 36);
    EXPECT_EQ(BuildAndList("", true), "*\n");
    EXPECT_EQ(ReadText("out.bk"), std::string(36, '\0'));
}

TEST_F(BookTest, Listings) {
    std::string games = Game("1. d4");
    for (const char* last : {"Nc6", "Nf6", "d6", "f5", "d5", "Qe7"}) {
        games += Game(std::string("1. e4 e5 2. Nf3 ") + last);
    }
    EXPECT_EQ(BuildAndList(games, true), "1. e4 e5 2. Nf3 *\n");
    EXPECT_EQ(BuildAndList("e4 e5 *\nd4 d5 *\n", false), "1. e4 e5 *\n1. d4 d5 *\n");
    // any notation, joined result lines, line ends of another system, a file that just ends
    EXPECT_EQ(
        BuildAndList("1. e2e4 e7e5 1-0 drop this\r\n\r\n1. d4\r\n1... d5 1/2-1/2\r\nc2c4", false),
        "1. e4 e5 *\n1. d4 d5 *\n1. c4 *\n");
    // a token longer than its buffer is cut, not split in two
    EXPECT_EQ(BuildAndList("e4" + std::string(200, '!') + " e5 *", false), "1. e4 e5 *\n");
    std::string longer;
    for (int i = 0; i < 300; ++i) {
        longer += " Nf3 Nf6 Ng1 Ng8";
    }
    const std::string line = BuildAndList(longer + " *", false);
    EXPECT_EQ(std::count(line.begin(), line.end(), 'N'), 30);
    // a promotion, castling and en passant keep their marks on the way through the file
    const std::string tactics = "1. e4 a6 2. e5 d5 3. exd6 Nf6 4. dxc7 Nc6 5. Nf3 e6 6. Bd3 Be7 "
                                "7. O-O O-O 8. cxd8=N *\n";
    EXPECT_EQ(BuildAndList(tactics, false), tactics);
    // promotions to different pieces share a node: the first stays, with what can follow it
    const std::string fork = "1. e4 d5 2. exd5 c6 3. dxc6 Nf6 4. cxb7 e6 5. bxa8=";
    EXPECT_EQ(BuildAndList(fork + "Q Be7 6. Qxa7 *\n" + fork + "N Be7 6. Nb6 *\n", false),
              fork + "Q Be7 6. Qxa7 *\n");
}

TEST_F(BookTest, BuildingFailsWhole) {
    BuildAndList("e4 *\n", false);
    const std::string old_book = ReadText("out.bk");
    for (const char* bad : {"e4 {good} e5 *", "e4 e4 *", "1.e4 e5 *", "Nf3! $1 *", "e3 e5 Ke3 *",
                            "e4 d6 Bb5 Nf6 *"}) {
        WriteText("in", bad);
        EXPECT_EXIT(MakeBook("out.bk", "in", false, 30, 5), testing::ExitedWithCode(1),
                    "Error \\(illegal move\\): ")
            << bad;
    }
    EXPECT_EXIT(MakeBook("none/out.bk", "out.bk", false, 30, 5), testing::ExitedWithCode(1),
                "Error");
    WriteText("in", "e4 *\n");
    EXPECT_EXIT(MakeBook("none/out.bk", "in", false, 30, 5), testing::ExitedWithCode(1),
                "Error \\(cannot write book file\\): none/out.bk");
    const auto build_on_full_disk = [] {
        const rlimit few_bytes{100, 100};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &few_bytes);
        MakeBook("out.bk", "in", false, 30, 5);
    };
    WriteText("in", "e4 e5 Nf3 *\nd4 *\n");
    EXPECT_EXIT(build_on_full_disk(), testing::ExitedWithCode(1),
                "Error \\(cannot write book file\\): out.bk");
    EXPECT_EXIT(ShowBook("out.bk", "/dev/full"), testing::ExitedWithCode(1),
                "Error \\(cannot write file\\): /dev/full");
    EXPECT_EXIT(MakeBook("out.bk", "nowhere", true, 30, 5), testing::ExitedWithCode(1),
                "Error \\(file does not exist\\): nowhere");
    EXPECT_EXIT(ShowBook("nowhere", "out.txt"), testing::ExitedWithCode(1),
                "Error \\(file does not exist\\): nowhere");
    EXPECT_EXIT(ShowBook("out.bk", "none/out.txt"), testing::ExitedWithCode(1),
                "Error \\(cannot write file\\): none/out.txt");
    EXPECT_EQ(ReadText("out.bk"), old_book);
    EXPECT_EQ(std::distance(fs::directory_iterator(path), {}), 3); // no remains
}

TEST_F(BookTest, DamagedFiles) {
    BuildAndList("e4 e5 Nf3 *\nd4 d5 *\n", false);
    const std::string good = ReadText("out.bk");
    std::vector<std::string> damaged = {"", good.substr(0, 35), good.substr(0, good.size() - 1),
                                        good + "x"};
    const auto damage = [&](std::size_t at, std::int32_t number) {
        std::string file = good;
        std::memcpy(file.data() + at, &number, 4);
        damaged.push_back(file);
    };
    damage(32, -1); // counts that cannot be
    damage(32, 1'000'000'000);
    damage(32, 3);
    damage(36, 0);                  // a record that is its own child
    damage(40, NumberAt(good, 36)); // two that share one
    damage(36, -5);
    damage(40, 1'000'000'000);
    damage(44, 70); // moves that are not on the board, or not legal there
    damage(44, 13);
    damage(48, -1);
    for (const std::string& file : damaged) {
        WriteText("bad.bk", file);
        EXPECT_NE(InitializeBook("bad.bk"), nullptr);
        EXPECT_EQ(book.children, nullptr);
        EXPECT_EXIT(ShowBook("bad.bk", "out.txt"), testing::ExitedWithCode(1),
                    "Error \\(damaged book file\\): bad.bk");
    }
    EXPECT_EQ(InitializeBook("out.bk"), nullptr);
    FinalizeBook();
}

TEST_F(BookTest, InPlay) {
    BuildAndList("e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 *\n", false);
    ASSERT_EQ(InitializeBook("out.bk"), nullptr);
    engine_state.use_book = 1;
    NewGame();
    EXPECT_STREQ(book_state.help, " 1. e2e4\n 1. d2d4\n");
    std::set<std::string> seen;
    Move move;
    for (int i = 0; i < 100; ++i) {
        NewGame();
        ASSERT_TRUE(GetNextBookMove(move));
        seen.insert(WrittenMove(move));
    }
    EXPECT_EQ(seen, (std::set<std::string>{"e2e4", "d2d4"}));

    NewGame();
    for (const char* token : {"e4", "e5"}) {
        ASSERT_TRUE(ParseMove(token, move));
        MakeForceMove(move);
        SetNextBookMove(move);
        SaveIntoStateHistory(state_history, move, game_state, book_state);
    }
    engine_state.san_notation = 1;
    EXPECT_STREQ(WrittenBookHelp(), " 2. Nf3\n");
    engine_state.san_notation = 0;
    ASSERT_TRUE(ParseMove("f4", move)); // leaves the book
    MakeForceMove(move);
    SetNextBookMove(move);
    UpdateBookHelp();
    EXPECT_STREQ(book_state.help, " Out of book!\n");
    EXPECT_FALSE(GetNextBookMove(move));
    UnMakeMove(game_state.last_move);
    LoadFromStateHistory(state_history, game_state, book_state); // and one move back: in it again
    EXPECT_EQ(book_state.in_book, 1);
    EXPECT_EQ(BookMoves(), (std::vector<std::string>{"e7e5", "c7c5"}));
    StartAt(INITIAL_FEN); // a set-up position is never in the book
    EXPECT_FALSE(GetNextBookMove(move));
    engine_state.use_book = 0;
    EXPECT_STREQ(WrittenBookHelp(), " Book not available!\n");
    FinalizeBook();
}

} // namespace
