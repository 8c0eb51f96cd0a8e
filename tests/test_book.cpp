// Move tries and their file, the book in play, building and listing.
#include "cases.h"
#include "support.h"

#include "book/book.h"
#include "book/bookmaker.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "play/newgame.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <utility>
#ifndef _WIN32
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

// A fresh directory, the working directory while a test runs.
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

struct Book : testing::Test {
    Folder folder;
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

std::string Games(int count, const std::string& moves) {
    std::string games;
    for (int i = 0; i < count; ++i) {
        games += "[Event \"?\"]\n[Result \"*\"]\n\n" + moves + " *\n\n";
    }
    return games;
}

std::string Untagged(int count, const std::string& moves) {
    std::string games;
    for (int i = 0; i < count; ++i) {
        games += moves + (i % 2 == 0 ? " *\n" : " 1-0\n\n");
    }
    return games;
}

std::int32_t NumberAt(const std::string& bytes, std::size_t at) {
    std::int32_t number = 0;
    std::memcpy(&number, bytes.data() + at, 4);
    return number;
}

TEST_F(Book, FileByteForByte) {
    BuildAndList(Games(1, "1. e4 e5") + Games(1, "1. e4 c5") + Games(1, "1. d4 d5"), true, 1);
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
}

const std::string TACTICS = "1. e4 a6 2. e5 d5 3. exd6 Nf6 4. dxc7 Nc6 5. Nf3 e6 6. Bd3 Be7 "
                            "7. O-O O-O 8. cxd8=N *\n";

TEST_F(Book, SpecialMovesByteForByte) {
    BuildAndList(TACTICS, false);
    const std::string file = ReadText("out.bk");
    const std::size_t capture = 5 * 40, castling = 13 * 40;
    EXPECT_EQ(file.substr(capture + 8, 8), std::string("\x49\0\x49\1\0\0\0\0", 8));
    EXPECT_EQ(NumberAt(file, capture + 16), 35);
    EXPECT_EQ(NumberAt(file, capture + 20), 0x89);
    EXPECT_EQ(file.substr(castling + 8, 8), std::string("\x43\0\x4B\0\1\0\0\0", 8));
    EXPECT_EQ(NumberAt(file, castling + 24), 7);
    EXPECT_EQ(NumberAt(file, castling + 28), 5);
}

TEST_F(Book, EmptyFileByteForByte) {
    EXPECT_EQ(BuildAndList("", true), "*\n");
    EXPECT_EQ(ReadText("out.bk"), std::string(36, '\0'));
}

// What is kept of games, PGN or lines.
struct Listing {
    const char* name;
    std::string input;
    std::string lines;
    bool is_pgn = false;
};

const std::string FORK = "1. e4 d5 2. exd5 c6 3. dxc6 Nf6 4. cxb7 e6 5. bxa8=";
const Listing LISTINGS[] = {
    {"MovesOfFiveGames", Games(5, "1. e4 e5") + Games(4, "1. e4 c5") + Games(4, "1. d4 d5"),
     "1. e4 e5 *\n", true},
    {"MovesOfGamesWithoutTags", Untagged(5, "1. e4 e5") + Untagged(4, "1. d4 d5"), "1. e4 e5 *\n",
     true},
    {"GamesBehindAByteOrderMark", "\xEF\xBB\xBF" + Games(5, "1. e4 e5"), "1. e4 e5 *\n", true},
    {"LinesOfAnyNumber", "e4 e5 *\nd4 d5 *\n", "1. e4 e5 *\n1. d4 d5 *\n"},
    {"Coordinates", "1. e2e4 e7e5", "1. e4 e5 *\n"},
    {"NothingBehindResults", "e4 1-0 drop this\nd4 *\n", "1. e4 *\n1. d4 *\n"},
    {"LinesEndedAnyWay", "1. e4 e5 1-0\r\n\r\n1. d4\r\n1... d5 1/2-1/2\r\nc4",
     "1. e4 e5 *\n1. d4 d5 *\n1. c4 *\n"},
    {"LongTokens", "e4" + std::string(200, '!') + " e5 *", "1. e4 e5 *\n"},
    {"SpecialMoves", TACTICS, TACTICS},
    // they share a node: the first stays, with what can follow it
    {"PromotionsToTwoPieces", FORK + "Q Be7 6. Qxa7 *\n" + FORK + "N Be7 6. Nb6 *\n",
     FORK + "Q Be7 6. Qxa7 *\n"},
};

void CheckListing(const Listing& test) {
    const Folder folder;
    EXPECT_EQ(BuildAndList(test.input, test.is_pgn), test.lines);
}

const bool ARE_LISTINGS_REGISTERED = RegisterCases<Listing>("Book/Keeps", LISTINGS, CheckListing);

TEST_F(Book, ReadsTagsWithBackslashes) {
    WriteText("in", "[A \"x \\\"y\\\" \\\\z\"]\n[no tag]\n[B \"x\\\"]\n\n[C \"in the moves\"]");
    std::FILE* file = std::fopen("in", "r");
    PgnTag tag;
    std::string tags;
    while (ReadNextPgnTag(file, tag)) {
        tags += std::string(tag.name) + ": " + tag.value + "; ";
    }
    std::fclose(file);
    EXPECT_EQ(tags, "A: x \"y\" \\z; B: x\\; ");
}

TEST_F(Book, KeepsThirtyPliesOfGamesOfAnyLength) {
    std::string game;
    for (int i = 0; i < 300; ++i) {
        game += " Nf3 Nf6 Ng1 Ng8";
    }
    const std::string line = BuildAndList(game + " *", false);
    EXPECT_EQ(std::count(line.begin(), line.end(), 'N'), 30) << line;
}

// A process of its own that ends with an error, and leaves the old book and nothing else.
struct Failure {
    const char* name;
    const char* input;
    void (*act)();
    const char* message;
};

void Build() { MakeBook("out.bk", "in", false, 30, 5); }

#ifndef _WIN32 // where no disk can be made to look full
void BuildOnFullDisk() {
    const rlimit few_bytes{100, 100};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &few_bytes);
    Build();
}
#endif

const Failure FAILURES[] = {
    {"Comments", "e4 {good} e5 *", Build, "illegal move\\): \\{good\\}"},
    {"Glyphs", "Nf3! $1 *", Build, "illegal move\\): \\$1"},
    {"JoinedNumbers", "1.e4 e5 *", Build, "illegal move\\): 1.e4"},
    {"ImpossibleMoves", "e4 e4 *", Build, "illegal move\\): e4"},
    {"KingIntoCheck", "e3 e5 Ke2 Qg5 Ke3 *", Build, "illegal move\\): Ke3"},
    {"NoAnswerToCheck", "e4 d6 Bb5 Nf6 *", Build, "illegal move\\): Nf6"},
    {"NoInput", "", [] { MakeBook("out.bk", "none", true, 30, 5); },
     "file does not exist\\): none"},
    {"NoFolder", "e4 *\n", [] { MakeBook("none/out.bk", "in", false, 30, 5); },
     "cannot write book file\\): none/out.bk"},
    {"NoBookToList", "", [] { ShowBook("none", "out.txt"); }, "file does not exist\\): none"},
    {"NoFolderForTheList", "", [] { ShowBook("out.bk", "none/out.txt"); },
     "cannot write file\\): none/out.txt"},
#ifndef _WIN32
    {"FullDisk", "e4 e5 Nf3 *\nd4 *\n", BuildOnFullDisk, "cannot write book file\\): out.bk"},
    {"FullDiskForTheList", "", [] { ShowBook("out.bk", "/dev/full"); },
     "cannot write file\\): /dev/full"},
#endif
};

void CheckFailure(const Failure& test) {
    const Folder folder;
    BuildAndList("e4 *\n", false);
    const std::string old_book = ReadText("out.bk");
    WriteText("in", test.input);
    EXPECT_EXIT(test.act(), testing::ExitedWithCode(1), std::string("Error \\(") + test.message);
    EXPECT_EQ(ReadText("out.bk"), old_book);
    EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 3); // in, out.bk, out.txt
}

const bool ARE_FAILURES_REGISTERED = RegisterCases<Failure>("Book/Fails", FAILURES, CheckFailure);

#ifndef _WIN32
// What a person at a terminal is told while a book is built, and how the building ends.
std::string BuildAtATerminal(bool is_pgn, int status) {
    int screen = -1;
    const pid_t builder = forkpty(&screen, nullptr, nullptr, nullptr);
    if (builder == 0) MakeBook("out.bk", "in", is_pgn, 30, 5), std::exit(0);
    std::string text;
    for (char c = 0; read(screen, &c, 1) == 1;) {
        if (c != '\r') text += c;
    }
    int ended = 0;
    waitpid(builder, &ended, 0);
    close(screen);
    EXPECT_EQ(WEXITSTATUS(ended), status);
    return text;
}

TEST_F(Book, TellsAPersonWhatItBuilt) {
    WriteText("in", Games(502, "1. e4 e5"));
    EXPECT_EQ(BuildAtATerminal(true, 0),
              "500 games read, 99% of the file502 games read, 3 positions kept, out.bk written\n");
}

TEST_F(Book, TellsAPersonWhereABadMoveStands) {
    WriteText("in", "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 1-0\n1. d4 d5 2. c4 d4 *\n");
    EXPECT_EQ(BuildAtATerminal(false, 1), "Error (illegal move): d4\nin game 2 of in, move 2...\n");
    WriteText("in", Games(500, "1. e4 *\n[White \"Ann\"]\n[Black \"Bob\"]\n\n1. e4 e4"));
    EXPECT_EQ(BuildAtATerminal(true, 1),
              "Error (illegal move): e4\nin game 2 of in (Ann - Bob), move 1...\n");
}

#endif

void ExpectDamaged(const std::string& file) {
    WriteText("bad.bk", file);
    EXPECT_NE(InitializeBook("bad.bk"), nullptr);
    EXPECT_EQ(book.children, nullptr);
    EXPECT_EXIT(ShowBook("bad.bk", "out.txt"), testing::ExitedWithCode(1),
                "Error \\(damaged book file\\): bad.bk");
}

void CheckDamage(const TextCase& test) {
    const Folder folder;
    BuildAndList("e4 e5 Nf3 *\nd4 d5 *\n", false);
    std::string file = ReadText("out.bk");
    ASSERT_EQ(NumberAt(file, 36), 44);
    const std::int32_t number = std::stoi(test.fields[1]);
    std::memcpy(file.data() + std::stoi(test.fields[0]), &number, 4);
    ExpectDamaged(file);
}

const bool ARE_DAMAGES_REGISTERED = RegisterFile("Book/Damaged", "damages.txt", CheckDamage);

TEST_F(Book, DamagedInLength) {
    BuildAndList("e4 e5 Nf3 *\nd4 d5 *\n", false);
    const std::string good = ReadText("out.bk");
    for (const std::size_t size : {std::size_t{0}, std::size_t{35}, good.size() - 1}) {
        ExpectDamaged(good.substr(0, size));
    }
    ExpectDamaged(good + "x");
}

// A file whose end no offset leads to. One byte less may be too much for the memory.
TEST_F(Book, TooLarge) {
    std::ofstream("bad.bk").put(0);
    fs::resize_file("bad.bk", std::uintmax_t{1} << 31);
    EXPECT_STREQ(InitializeBook("bad.bk"), "it is too large");
    fs::resize_file("bad.bk", (std::uintmax_t{1} << 31) - 1);
    EXPECT_STRNE(InitializeBook("bad.bk"), "it is too large");
    EXPECT_EQ(book.children, nullptr);
}

// A game in the book of these lines.
struct BookInPlay : Book {
    void SetUp() override {
        BuildAndList("e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 *\nc4 e5 *\n", false);
        ASSERT_EQ(InitializeBook("out.bk"), nullptr);
        engine_state.use_book = 1;
        NewGame();
    }
};

std::string NextMove() {
    Move move;
    return GetNextBookMove(move) ? WrittenMove(move) : "none";
}

TEST_F(BookInPlay, ChoosesEveryMoveAboutEquallyOften) {
    std::map<std::string, int> times;
    for (int i = 0; i < 3000; ++i) {
        NewBookState();
        ++times[NextMove()];
    }
    EXPECT_EQ(times.size(), 3u);
    for (const char* move : {"e2e4", "d2d4", "c2c4"}) {
        EXPECT_NEAR(times[move], 1000, 250) << move; // ten times the deviation to be expected
    }
}

TEST_F(BookInPlay, TellsItsMoves) {
    EXPECT_STREQ(book_state.help, " 1. e2e4\n 1. d2d4\n 1. c2c4\n");
    Play("e4");
    EXPECT_STREQ(book_state.help, " 1... e7e5\n 1... c7c5\n");
    Play("e5");
    engine_state.san_notation = 1;
    EXPECT_STREQ(WrittenBookHelp(), " 2. Nf3\n");
    engine_state.san_notation = 0;
}

// Of two hundred moves, in lines of nine characters.
TEST_F(BookInPlay, TellsAsManyMovesAsFit) {
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

TEST_F(BookInPlay, EndsWithAMoveOutsideUntilItIsTakenBack) {
    Play("e4 e5 f4");
    EXPECT_STREQ(book_state.help, " Out of book!\n");
    EXPECT_EQ(NextMove(), "none");
    UndoMove();
    EXPECT_EQ(NextMove(), "g1f3");
}

// The book's next move is the queen's, and a knight stands there.
TEST_F(BookInPlay, EndsWithAPromotionToAnotherPiece) {
    BuildAndList(FORK + "Q Be7 6. Qxa7 *\n", false);
    ASSERT_EQ(ReplaceBook("out.bk"), nullptr);
    for (const auto& [piece, move] : {std::pair{"Q", "a8a7"}, {"N", "none"}}) {
        NewGame();
        Play("e4 d5 exd5 c6 dxc6 Nf6 cxb7 e6 bxa8=" + std::string(piece) + " Be7");
        EXPECT_EQ(NextMove(), move) << piece;
    }
}

TEST_F(BookInPlay, DoesNotBeginAgainLater) {
    Play("a3 a6 e4");
    EXPECT_EQ(NextMove(), "none");
}

TEST_F(BookInPlay, EndsWithItsLines) {
    Play("d4 d5");
    EXPECT_STREQ(book_state.help, " Out of book!\n");
    EXPECT_EQ(NextMove(), "none");
}

TEST_F(BookInPlay, EndsWithASetUpPosition) {
    StartAt(INITIAL_FEN);
    EXPECT_EQ(NextMove(), "none");
}

TEST_F(BookInPlay, CanBeSwitchedOff) {
    engine_state.use_book = 0;
    EXPECT_EQ(NextMove(), "none");
    EXPECT_STREQ(WrittenBookHelp(), " Book not available!\n");
}

} // namespace
