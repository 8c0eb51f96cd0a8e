// Runs a program under test and talks to it over pipes, like a front end.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/types.h>

// The folder of the Windows programs to test; null to test the programs for this system.
inline const char* const WINDOWS_PROGRAMS = std::getenv("KORVANE_WINDOWS_PROGRAMS");

// A pipe to which the program writes. `text` contains bytes that have been read from the pipe, but
// not yet returned by ReadLine.
struct OutputPipe {
    int end = -1; // the test's end of the pipe; -1 if closed
    std::string text = {};
};

// A running program. The destructor kills the process.
struct EngineProcess {
    // Starts a program in the directory. The command is "PROGRAM ARGUMENT...", with blanks between
    // the words.
    EngineProcess(const std::string& command, const std::string& directory);
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    pid_t pid = -1; // process number; -1 after WaitForExit
    int input = -1; // the test's end of the input pipe; -1 if closed
    OutputPipe output = {}, errors = {};
    long budget = 1'000'000; // bytes that the program may still write
};

// Sends the bytes. Reads the output at the same time, so that a full pipe never blocks the program.
// If the program has ended, stops without a failure.
void SendText(EngineProcess& engine, std::string_view text);

// Reads the next line and removes its line feed. Returns false at the end of the pipe. If the
// program writes nothing for a minute or exceeds its budget, kills the program and fails the test.
bool ReadLine(EngineProcess& engine, OutputPipe& pipe, std::string& line);

// These functions close the test's end of a pipe.
void CloseInput(EngineProcess& engine);
void CloseOutput(EngineProcess& engine);

// Makes the output pipe as small as possible and sends the text, whose answers must not fit into
// the pipe. Returns when the output pipe is full: the program then sleeps although it has unread
// input. The test fails if the program reads all input.
void SendWithoutReading(EngineProcess& engine, std::string_view text);

// Waits for the end of the program. Returns "exit STATUS" or "signal NAME".
std::string WaitForExit(EngineProcess& engine);

// Runs a shell command in the directory and returns its output. The test fails if the command
// fails. In the command, $PID is `pid`, and $PATH includes the programs for this system.
std::string RunShell(const std::string& directory, pid_t pid, const std::string& command);
