#include "harness.h"

#include "board/utility.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/setboard.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/hash.h"
#include "snapshot.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sanitizer/lsan_interface.h>
#include <unistd.h>

namespace {

bool is_exit_caught = false;
std::jmp_buf exit_point;
int exit_status = 0;     // that was caught, or -1
unsigned first_file = 0; // the lowest descriptor that was free

} // namespace

// Stands for exit() everywhere, as a linker option sees to.
extern "C" [[noreturn]] void __real_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status) {
    if (!is_exit_caught) __real_exit(status);
    close_range(first_file, ~0U, 0); // what an action had open when it failed
    exit_status = status;
    std::longjmp(exit_point, 1); // objects on the way are abandoned, as they are at an exit
}

// Stands for time(), so that an input does the same every time.
extern "C" std::time_t __wrap_time(std::time_t*) { return 0; }

// Called once: a directory of its own, in which the logs lead nowhere, and an engine with a game.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::string directory = std::filesystem::temp_directory_path() / "korvane-fuzz-XXXXXX";
    Require(mkdtemp(directory.data()) != nullptr, "a directory");
    std::filesystem::current_path(directory);
    for (const char* log : {"GameLog", "GameLog.pgn", "GameLog.fen", "ErrorLog"}) {
        std::filesystem::create_symlink("/dev/null", log);
    }
    InitializeTables();
    InitializeHashTable(1);
    ResetEngine(false);
    return 0;
}

void ResetEngine(bool has_book) {
    SeedRandom(1);
    engine_state = {};
    InitializeEngineState();
    engine_state.use_book = has_book;
    NewGame();
}

int RunToExit(const std::function<void()>& run) {
    first_file = static_cast<unsigned>(dup(0));
    close(static_cast<int>(first_file));
    __lsan_disable(); // the end of the program would have given everything back
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
    Require(std::ranges::equal(position, state_history.positions[state_history.count]),
            "the history's newest position is the board");
    Require(game_state.ply_count == state_history.count &&
                zobrist_ply_number == game_state.ply_count,
            "ply count, history and key history are equally long");
    Require(zobrist_keys[zobrist_ply_number] == zobrist_key &&
                zobrist_xors[zobrist_ply_number] == zobrist_xor,
            "the key history ends with the position's key");
}

void CheckFen() {
    const Snapshot before = TakeSnapshot();
    const std::string fen = GetBoardFen();
    Require(SetBoardFen(fen), "the position's FEN is accepted");
    CheckPosition();
    Require(fen == GetBoardFen(), "the FEN is the same again");
    const Snapshot after = TakeSnapshot();
    Require(before.side == after.side && std::ranges::equal(before.by_type, after.by_type),
            "the pieces are the same again");
}

void CheckUndo() {
    for (; game_state.ply_count > 0; UndoMove()) {
        CheckPosition();
    }
    CheckPosition();
}

void PlayUserMove(std::string_view token) {
    Move move;
    if (IsHistoryFull() || !ParseMove(token, move) || !IsLegalMove(move)) return;
    for (const bool is_san : {true, false}) {
        engine_state.san_notation = is_san;
        Move again;
        Require(ParseMove(WrittenMove(move), again) && again.from == move.from &&
                    again.to == move.to && again.promoted == move.promoted,
                "a move that was written reads as itself");
    }
    Require(PlayMove(token), "a legal move can be played");
    CheckPosition();
}
