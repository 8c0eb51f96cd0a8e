// A real engine under test: a process that is driven over pipes as a front end drives it.
#pragma once

// GCC 12 sees uninitialised members in its own <regex> when the sanitizers are on.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <cstdlib>
#include <string>
#include <sys/types.h>

// Small tables, which start fast, and the same moves every time.
inline const std::string PLAY = "--hash-size=1 --no-random";

// There are 48 moves, and nothing is decided for long.
inline const std::string MIDDLE_GAME =
    "setboard r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1\n";

// Patterns of lines that the engine tells: its move, the start of a thinking line.
inline const std::string MOVE = "move [a-h][1-8][a-h][1-8][nbrq]?";
inline const std::string THINKING = "[ \\d]\\d[ \\d-]{7}\\d[ \\d]{7}\\d[ \\d]{10}\\d   ";

inline const std::string UNKNOWN = "Error (unknown command): ";
inline const std::string REFUSED = "tellusererror Illegal position\n";
inline const std::string NO_BOOK = " Book not available!\n\n";

// The folder with the programs of Windows that are tested instead of this system's, if any.
inline const char* const WINDOWS_PROGRAMS = std::getenv("KORVANE_WINDOWS_PROGRAMS");
inline const std::string KORVANE =
    WINDOWS_PROGRAMS ? std::string(WINDOWS_PROGRAMS) + "/korvane" : KORVANE_BINARY;
inline const std::string KORVANE_UCI =
    WINDOWS_PROGRAMS ? std::string(WINDOWS_PROGRAMS) + "/korvane-uci" : KORVANE_UCI_BINARY;

// A named case: lines for an engine, and what is expected of it.
struct Exchange {
    const char* name;
    std::string lines;
    std::string answer = "";
};

// An engine that runs in a fresh directory of its own; process and directory go with the record.
// The arguments are separated by blanks; a shell command can prepare the directory.
struct EngineProcess {
    explicit EngineProcess(const std::string& arguments = PLAY,
                           const std::string& invocation = KORVANE_BINARY,
                           const std::string& preparation = "",
                           const std::string& program = KORVANE);
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    std::string directory;
    pid_t pid;                 // -1 once it has ended
    int input, output, errors; // this side's ends of the pipes
    int budget = 1'000'000;    // bytes that it may still write
};

// Sends the bytes as they are.
void SendText(const EngineProcess& engine, const std::string& text);

// Sends the lines, with the last one's line feed added.
void SendLines(const EngineProcess& engine, const std::string& lines);

// The output up to the first line that matches the whole pattern, that line included, every line
// with its line feed. When it does not come in good time, the test fails and the engine is killed.
std::string ReadUntil(EngineProcess& engine, const std::string& pattern);

// Sends the lines and gives all that comes before the answer to a ping sent behind them.
std::string Ask(EngineProcess& engine, const std::string& lines);

// Lines and answers of a case's text, as tests/cases/protocol.txt explains them.
std::string ToLines(const std::string& text);
std::string ToAnswer(const std::string& text);

// Moves as command lines, with a line feed before each.
std::string Game(const std::string& moves);

// Starts a search that no clock ends, and waits until it runs.
void StartThinking(EngineProcess& engine, const std::string& command);

// Hangs up on one side.
void CloseInput(EngineProcess& engine);
void CloseOutput(EngineProcess& engine);

// Leaves the process no more memory than it has, and this much.
void LimitMemory(pid_t process, std::size_t more_bytes);

// Makes the pipe of the engine's output as small as can be, sends the lines, which must be more
// than it can answer, and waits until it sleeps though lines are left, as it only does behind a
// full pipe.
void SendWithoutReading(EngineProcess& engine, const std::string& lines);

// Runs a shell command in the engine's directory.
void RunBeside(const EngineProcess& engine, const std::string& command);

struct Ending {
    int status; // of the exit; negative: the signal that ended the process
    std::string output, errors;
};

// Waits until the engine ends by itself; the output is what no caller has got.
Ending WaitForExit(EngineProcess& engine);

// A file of the engine's directory; empty when there is none.
std::string ReadFile(const EngineProcess& engine, const std::string& name);

// The command that prepares a book of these moves, one line of play.
std::string LayBook(const std::string& moves);
