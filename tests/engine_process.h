// A program under test, driven over pipes as a front end drives it.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/types.h>

// The folder of Windows programs to test instead of this system's, or null.
inline const char* const WINDOWS_PROGRAMS = std::getenv("KORVANE_WINDOWS_PROGRAMS");

// A pipe that the program writes to, with the bytes read but not yet returned as lines.
struct OutputPipe {
    int end = -1; // this side's; -1 when closed
    std::string text = {};
};

// The destructor kills the process.
struct EngineProcess {
    // Starts "PROGRAM ARGUMENT...", separated by blanks, in the directory.
    EngineProcess(const std::string& command, const std::string& directory);
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    pid_t pid = -1; // -1 once it has ended
    int input = -1; // this side's end of the pipe
    OutputPipe output = {}, errors = {};
    long budget = 1'000'000; // bytes that it may still write
};

// Sends the bytes. Reads the output at the same time, so that the program is never blocked. Stops
// without a failure if the program has ended.
void SendText(EngineProcess& engine, std::string_view text);

// Reads the next line without its line feed. Returns false at the end of the pipe. A program that
// is silent for a minute or prints more than its budget is killed, and the test fails.
bool ReadLine(EngineProcess& engine, OutputPipe& pipe, std::string& line);

// Closes one side.
void CloseInput(EngineProcess& engine);
void CloseOutput(EngineProcess& engine);

// Makes the output pipe as small as possible, sends more text than the program can answer into it,
// and waits until the program sleeps with input left: it is then waiting for a reader.
void SendWithoutReading(EngineProcess& engine, std::string_view text);

// Waits until the program ends by itself. Returns "exit STATUS" or "signal NAME".
std::string WaitForExit(EngineProcess& engine);

// Runs a shell command in the directory and returns its output. The test fails if the command does.
// The command can run this system's programs, and $PID is the number of the process.
std::string RunShell(const std::string& directory, pid_t pid, const std::string& command);
