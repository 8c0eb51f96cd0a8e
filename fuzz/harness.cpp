#include "harness.h"

#include "board/move.h"
#include "board/utility.h"
#include "book/bookmaker.h"
#include "consistency.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/fen.h"
#include "notation/notation.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/hash.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#include <unistd.h>

namespace {

constexpr std::uint32_t SLOTS = 1024;

bool is_exit_caught = false;
std::jmp_buf exit_point;
int exit_status = 0;     // status passed to exit(); -1 if exit() was not called
unsigned first_file = 0; // lowest free file descriptor at the start of RunToExit

// Makes the address sanitizer report every access to an entry after the first SLOTS entries.
template <typename Entry>
void HideRest(Entry* table, std::uint32_t size) {
    ASAN_POISON_MEMORY_REGION(table + SLOTS, (size - SLOTS) * sizeof(Entry));
}

// Limits the transposition tables to SLOTS entries, because clearing larger tables would take most
// of the time. Does nothing if the tables have this size already.
void InitializeSmallTables() {
    if (hash_table_size == SLOTS) return;
    FinalizeHashTable();
    InitializeHashTable(MIN_HASH_SIZE);
    HideRest(hash_tables_1_2, hash_table_size);
    HideRest(hash_table_q, hash_table_size);
    hash_table_size = SLOTS;
    HASH_TABLE_MASK = SLOTS - 1;
}

} // namespace

// The linker option --wrap=exit makes every call of exit() call __wrap_exit().
extern "C" [[noreturn]] void __real_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status) {
    if (!is_exit_caught) __real_exit(status);
    CloseFiles(); // exit() would have closed these files
    close_range(first_file, ~0U, 0);
    exit_status = status;
    std::longjmp(exit_point, 1); // like exit(), calls no destructors of local objects
}

// Replaces time() by a constant, so that every run of an input has the same result.
extern "C" std::time_t __wrap_time(std::time_t*) { return 0; }

// The address sanitizer keeps freed memory in a quarantine before it reuses the memory. Most inputs
// free about as much memory as this quarantine holds. With a larger quarantine, every allocation
// would need fresh memory from the system, which would take a quarter of the run time.
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=1"; }

// The fuzzer calls this function once. The function makes a new working directory, in which the
// logs are links to /dev/null, and starts a game.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::string directory = std::filesystem::temp_directory_path() / "korvane-fuzz-XXXXXX";
    setenv("TZ", "UTC0", 1); // avoids a search for the time-zone file at each use of a date
    Require(mkdtemp(directory.data()) != nullptr, "a directory");
    std::filesystem::current_path(directory);
    for (const char* log : {"GameLog", "GameLog.pgn", "GameLog.fen", "ErrorLog"}) {
        std::filesystem::create_symlink("/dev/null", log);
    }
    InitializeTables();
    ResetEngine(false);
    return 0;
}

void ResetEngine(bool has_book) {
    SeedRandom(1);
    InitializeSmallTables();
    engine_state = {};
    InitializeEngineState();
    engine_state.hash_size = MIN_HASH_SIZE;
    engine_state.use_book = has_book;
    NewGame();
}

int RunToExit(const std::function<void()>& run) {
    first_file = static_cast<unsigned>(dup(0));
    close(static_cast<int>(first_file));
    __lsan_disable(); // memory that is in use at exit() is not a leak
    exit_status = -1;
    is_exit_caught = true;
    if (setjmp(exit_point) == 0) run();
    is_exit_caught = false;
    __lsan_enable();
    return exit_status;
}

void WriteText(const char* file_name, std::string_view text) {
    std::ofstream(file_name, std::ios::binary) << text;
}

void WriteSmallBook(const char* file_name) {
    WriteText("games", "e4 e5 Nf3 Nc6 *\ne4 c5 *\nd4 d5 c4 *\nc4 *\n");
    MakeBook(file_name, "games", false, 30, 5);
}

std::string ReadText(const char* file_name) {
    std::ifstream file(file_name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\nposition: %s\n", what, GetBoardFen());
    std::abort();
}

void CheckPosition() {
    Require(IsConsistentPosition(), "the records agree with a recomputation");
    Require(std::ranges::equal(board.position, state_history.positions[state_history.count]),
            "the history's newest position is the board");
    Require(game_state.ply_count == state_history.count &&
                board.zobrist_ply_number == game_state.ply_count,
            "ply count, history and key history are equally long");
    Require(zobrist_keys[board.zobrist_ply_number] == board.zobrist_key &&
                zobrist_xors[board.zobrist_ply_number] == board.zobrist_xor,
            "the key history ends with the position's key");
}

void CheckFen() {
    const Position before = board;
    const std::string fen = GetBoardFen();
    Require(SetBoardFen(fen), "the position's FEN is accepted");
    CheckPosition();
    Require(fen == GetBoardFen(), "the FEN is the same again");
    const Position after = board;
    Require(before.side_to_move == after.side_to_move &&
                std::ranges::equal(before.pieces_by_type, after.pieces_by_type),
            "the pieces are the same again");
}

void CheckUndo() {
    for (; game_state.ply_count > 0; UndoMove()) {
        CheckPosition();
    }
    CheckPosition();
}

namespace {

void CheckNotations(const Move& move) {
    for (const char* const text : {WrittenSan(move), WrittenCoordinates(move)}) {
        Move again;
        Require(ParseMove(text, again) && IsSameMove(again, move),
                "a move that was written reads as itself");
    }
}

} // namespace

void PlayLegalMove(const Move& move) {
    if (IsHistoryFull()) return;
    CheckNotations(move);
    PlayMove(move);
    CheckPosition();
}

void PlayUserMove(std::string_view token) {
    Move move;
    if (FindLegalMove(token, move)) PlayLegalMove(move);
}
