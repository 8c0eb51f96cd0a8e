// Tests of opening books: the bytes of the file, building, listing, damaged files, and play from a
// book.
#include "cases.h"
#include "support.h"

#include "book/book.h"
#include "book/bookmaker.h"
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
#include <iomanip>
#include <map>
#include <random>
#include <sstream>
#ifndef _WIN32
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

// A new directory. It is the working directory while the object exists.
struct Folder {
    fs::path old_path = fs::current_path();
    fs::path path;

    Folder() {
        path =
            fs::temp_directory_path() / ("korvane-book-" + std::to_string(std::random_device()()));
        fs::create_directory(path);
        fs::current_path(path);
    }
    ~Folder() {
        engine_state.use_book = 0;
        FinalizeBook();
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

struct Book : testing::Test {
    Folder folder;
};

// Replaces the escapes \n, \r and \b (a byte-order mark) in the text of a case.
std::string Unescaped(const std::string& text) {
    const std::map<char, std::string> escapes = {{'n', "\n"}, {'r', "\r"}, {'b', "\xEF\xBB\xBF"}};
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto escape = text[i] == '\\' ? escapes.find(text[i + 1]) : escapes.end();
        plain += escape == escapes.end() ? std::string(1, text[i]) : (++i, escape->second);
    }
    return plain;
}

// Builds a book from a text, lists it, and returns the listing.
std::string BuildAndList(const std::string& input, bool is_pgn = false, int minimum = 5) {
    WriteText("in", input);
    MakeBook("out.bk", "in", is_pgn, 30, minimum);
    ShowBook("out.bk", "out.txt");
    return ReadText("out.txt");
}

// Fields: lines of moves; an offset in the book made from them; the bytes there, in hexadecimal.
void CheckBytes(const TextCase& test) {
    const Folder folder;
    BuildAndList(Unescaped(test.fields[0]));
    ASSERT_FALSE(test.fields[2].empty());
    std::ostringstream bytes;
    for (const char byte : ReadText("out.bk").substr(std::stoul(test.fields[1]))) {
        bytes << std::hex << std::setw(2) << std::setfill('0') << (byte & 0xFF);
    }
    EXPECT_EQ(bytes.str().substr(0, test.fields[2].size()), test.fields[2]);
}

// Fields: "txt", or "pgn" and the minimum number of games; a text; the listing of the book made
// from the text.
void CheckListing(const TextCase& test) {
    const Folder folder;
    const bool is_pgn = test.fields[0].starts_with("pgn");
    const int minimum = is_pgn ? std::stoi(test.fields[0].substr(4)) : 5;
    EXPECT_EQ(BuildAndList(Unescaped(test.fields[1]), is_pgn, minimum), Unescaped(test.fields[2]));
}

// Runs the action in a child process. The action must exit with the error message, leave the old
// book unchanged, and create no file. `input` is the text of the file "in".
template <typename Action>
void ExpectFailure(const std::string& input, const std::string& message, Action act) {
    const Folder folder;
    BuildAndList("e4 *\n");
    const std::string old_book = ReadText("out.bk");
    WriteText("in", input);
    EXPECT_EXIT(act(), testing::ExitedWithCode(1), "Error \\(" + message);
    EXPECT_EQ(ReadText("out.bk"), old_book);
    EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 3); // the files in, out.bk, out.txt
}

// Fields: the text of the file "in"; "make BOOK TEXT" or "show BOOK LISTING"; a pattern for the
// error message.
void CheckFailure(const TextCase& test) {
    std::istringstream words(test.fields[1]);
    std::string verb, first, second;
    words >> verb >> first >> second;
    ExpectFailure(test.fields[0], test.fields[2], [&] {
        if (verb == "make") MakeBook(first.c_str(), second.c_str(), false, 30, 5);
        if (verb == "show") ShowBook(first.c_str(), second.c_str());
    });
}

void ExpectDamaged(const std::string& file) {
    WriteText("bad.bk", file);
    EXPECT_NE(InitializeBook("bad.bk"), nullptr);
    EXPECT_EQ(book.children, nullptr);
    EXPECT_EXIT(ShowBook("bad.bk", "out.txt"), testing::ExitedWithCode(1),
                "Error \\(damaged book file\\): bad.bk");
}

// Fields: an offset in a good book, in bytes; the 32-bit number to write there.
void CheckDamage(const TextCase& test) {
    const Folder folder;
    BuildAndList("e4 e5 Nf3 *\nd4 d5 *\n");
    std::string file = ReadText("out.bk");
    const std::int32_t number = std::stoi(test.fields[1]);
    std::memcpy(file.data() + std::stoi(test.fields[0]), &number, 4);
    ExpectDamaged(file);
}

std::string NextMove() {
    Move move;
    return GetNextBookMove(move) ? WrittenMove(move) : "none";
}

void StartInBook(const std::string& lines) {
    BuildAndList(lines);
    ASSERT_EQ(ReplaceBook("out.bk"), nullptr);
    engine_state.use_book = 1;
    NewGame();
}

// Fields: the lines of a book; moves to play, where "undo" takes back a move and "setup" sets up
// the initial position; the next book move; all book moves as the engine prints them. If one of
// the last two fields is empty, it is not checked.
void CheckPlay(const TextCase& test) {
    const Folder folder;
    StartInBook(Unescaped(test.fields[0]));
    std::istringstream words(test.fields[1]);
    for (std::string word; words >> word;) {
        if (word == "undo") {
            UndoMove();
        } else if (word == "setup") {
            StartAt(INITIAL_FEN);
        } else {
            Play(word);
        }
    }
    const std::string& help = test.fields[3];
    EXPECT_TRUE(help.empty() || book_state.help == Unescaped(help)) << book_state.help;
    const std::string &next = test.fields[2], found = NextMove();
    EXPECT_TRUE(next.empty() || next == found) << found;
}

const bool HAS_BOOK_CASES[] = {RegisterFile("Book/Bytes", "book.txt", CheckBytes),
                               RegisterFile("Book/Keeps", "book.txt", CheckListing),
                               RegisterFile("Book/Fails", "book.txt", CheckFailure),
                               RegisterFile("Book/Damaged", "book.txt", CheckDamage),
                               RegisterFile("Book/Plays", "book.txt", CheckPlay)};

TEST_F(Book, KeepsThirtyPliesOfGamesOfAnyLength) {
    std::string game;
    for (int i = 0; i < 300; ++i) {
        game += " Nf3 Nf6 Ng1 Ng8";
    }
    const std::string line = BuildAndList(game + " *");
    EXPECT_EQ(std::count(line.begin(), line.end(), 'N'), 30) << line;
}

#ifndef _WIN32
TEST_F(Book, FailsOnAFullDisk) {
    ExpectFailure("e4 e5 Nf3 *\nd4 *\n", "cannot write book file\\): out.bk", [] {
        const rlimit few_bytes{100, 100};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &few_bytes);
        MakeBook("out.bk", "in", false, 30, 5);
    });
}

// Builds a book in a child process on a pseudo-terminal. Returns the exit status and the output.
std::string BuildAtATerminal(const std::string& input, bool is_pgn) {
    WriteText("in", input);
    int screen = -1, status = 0;
    const pid_t builder = forkpty(&screen, nullptr, nullptr, nullptr);
    if (builder == 0) MakeBook("out.bk", "in", is_pgn, 30, 5), std::exit(0);
    std::string text;
    for (char c = 0; read(screen, &c, 1) == 1;) {
        if (c != '\r') text += c;
    }
    waitpid(builder, &status, 0);
    close(screen);
    return std::to_string(WEXITSTATUS(status)) + ": " + text;
}

TEST_F(Book, ReportsToATerminal) {
    std::string games;
    for (int i = 0; i < 502; ++i) {
        games += "[Event \"?\"]\n\n1. e4 e5 *\n\n";
    }
    EXPECT_EQ(BuildAtATerminal(games, true), "0: 500 games read, 99% of the file"
                                             "502 games read, 3 positions kept, out.bk written\n");
    EXPECT_EQ(BuildAtATerminal("1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 1-0\n1. d4 d5 2. c4 d4 *\n", false),
              "1: Error (illegal move): d4\nin game 2 of in, move 2...\n");
    const std::string players = "[White \"Ann \\\"A\\\"\"]\n[no tag]\n[Black \"B\\\\b\"]\n\n";
    EXPECT_EQ(BuildAtATerminal("1. e4 *\n" + players + "1. e4 e4", true),
              "1: Error (illegal move): e4\nin game 2 of in (Ann \"A\" - B\\b), move 1...\n");
}
#endif

TEST_F(Book, DamagedInLength) {
    BuildAndList("e4 e5 Nf3 *\nd4 d5 *\n");
    const std::string good = ReadText("out.bk");
    for (const std::size_t size : {std::size_t{0}, std::size_t{35}, good.size() - 1}) {
        ExpectDamaged(good.substr(0, size));
    }
    ExpectDamaged(good + "x");
}

// A file of 2^31 bytes is too large for the book's 32-bit offsets. A file that is one byte smaller
// is also refused, but for another reason.
TEST_F(Book, TooLarge) {
    for (const std::uintmax_t size : {std::uintmax_t{1} << 31, (std::uintmax_t{1} << 31) - 1}) {
        std::ofstream("bad.bk").put(0);
        fs::resize_file("bad.bk", size);
        EXPECT_EQ(std::string(InitializeBook("bad.bk")) == "it is too large", size % 2 == 0);
    }
    EXPECT_EQ(book.children, nullptr);
}

struct BookInPlay : Book {
    void SetUp() override { StartInBook("e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 *\nc4 e5 *\n"); }
};

TEST_F(BookInPlay, ChoosesEveryMoveAboutEquallyOften) {
    std::map<std::string, int> times;
    for (int i = 0; i < 3000; ++i) {
        NewBookState();
        ++times[NextMove()];
    }
    EXPECT_EQ(times.size(), 3u);
    for (const char* move : {"e2e4", "d2d4", "c2c4"}) {
        EXPECT_NEAR(times[move], 1000, 250) << move; // 250 is about ten standard deviations
    }
}

// The book has every legal move of the position, about two hundred. The list of book moves
// (book_state.help) has room for 56 moves, at nine characters each.
TEST_F(BookInPlay, PrintsAsManyMovesAsFit) {
    StartAt("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1");
    MoveTrieNode node{};
    MoveList moves;
    GenerateAllLegalMoves(moves, nullptr);
    for (const Move& move : moves) {
        InsertIntoMoveTrie(node, {&move, 1}, false);
    }
    book_state = {1, &node, ""};
    UpdateBookHelp();
    EXPECT_EQ(std::string(book_state.help), std::string(WrittenBookHelp()).substr(0, 56 * 9));
    NewBookState();
    FreeMoveTrie(node);
}

TEST_F(BookInPlay, PrintsItsMovesInTheFrontEndsNotation) {
    Play("e4 e5");
    engine_state.san_notation = 1;
    EXPECT_STREQ(WrittenBookHelp(), " 2. Nf3\n");
    engine_state.san_notation = 0;
}

TEST_F(BookInPlay, CanBeSwitchedOff) {
    engine_state.use_book = 0;
    EXPECT_EQ(NextMove(), "none");
    EXPECT_STREQ(WrittenBookHelp(), " Book not available!\n");
}

} // namespace
