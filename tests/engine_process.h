// A program under test: a process that is driven over pipes, as a front end drives it.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/types.h>

// The folder with the programs for Windows that are tested instead of this system's, if any.
inline const char* const WINDOWS_PROGRAMS = std::getenv("KORVANE_WINDOWS_PROGRAMS");

// A pipe that the program writes to, and what has been read from it but not yet returned as a line.
struct OutputPipe {
    int end = -1; // this side's; -1 when closed
    std::string text = {};
};

// The process ends with the record.
struct EngineProcess {
    // Starts "PROGRAM ARGUMENT...", words between blanks, in the directory.
    EngineProcess(const std::string& command, const std::string& directory);
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    pid_t pid = -1; // -1 once it has ended
    int input = -1; // this side's end of the pipe
    OutputPipe output = {}, errors = {};
    long budget = 1'000'000; // bytes that it may still write
};

// Sends the bytes as they are. Meanwhile reads what the program prints, which could not go on
// otherwise. A program that has gone gets none.
void SendText(EngineProcess& engine, std::string_view text);

// The next line without its line feed; false at the end of the pipe. A program that is silent for a
// minute or does not stop printing is killed, and the test fails.
bool ReadLine(EngineProcess& engine, OutputPipe& pipe, std::string& line);

// Closes one side.
void CloseInput(EngineProcess& engine);
void CloseOutput(EngineProcess& engine);

// Makes the pipe of the output as small as can be, sends the text, which must be more than the
// program can answer, and waits until it sleeps though input is left: it then waits for a reader.
void SendWithoutReading(EngineProcess& engine, std::string_view text);

// Waits until the program ends, as it does by itself: "exit STATUS" or "signal NAME".
std::string WaitForExit(EngineProcess& engine);

// Runs a shell command in the directory and returns what it prints; the test fails when the command
// does. The command finds this system's programs, and the process's number as $PID.
std::string RunShell(const std::string& directory, pid_t pid, const std::string& command);
