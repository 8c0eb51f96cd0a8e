#include "engine_process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <poll.h>
#include <sched.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int PATIENCE = 60'000; // longest wait for a program, in milliseconds

// The folder of the programs for this system, and the folder of the programs under test.
const std::string NATIVE_PROGRAMS = std::filesystem::path(KORVANE_BINARY).parent_path();
const std::string PROGRAMS = WINDOWS_PROGRAMS ? WINDOWS_PROGRAMS : NATIVE_PROGRAMS;

void Close(int& end) {
    if (end >= 0) close(end);
    end = -1;
}

// Waits until one of the pipes can be read or written. If the program takes too long or has written
// too much, kills the program, fails the test and returns false.
bool IsReady(EngineProcess& engine, pollfd* ends, nfds_t count) {
    if (engine.budget > 0 && poll(ends, count, PATIENCE) > 0) return true;
    ADD_FAILURE() << "the program does not come to an end";
    if (engine.pid > 0) kill(engine.pid, SIGKILL);
    return false;
}

// Appends available bytes to the pipe's text. Returns false at the end of the pipe.
bool ReadMore(EngineProcess& engine, OutputPipe& pipe) {
    char bytes[4096];
    const ssize_t count = read(pipe.end, bytes, sizeof bytes);
    if (count <= 0) return false;
    engine.budget -= count;
    pipe.text.append(bytes, static_cast<std::size_t>(count));
    return true;
}

} // namespace

EngineProcess::EngineProcess(const std::string& command, const std::string& directory) {
    std::signal(SIGPIPE, SIG_IGN); // a write to a program that has ended must not end the tests
    std::istringstream stream(PROGRAMS + "/" + command);
    std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
    std::vector<char*> pointers(words.size() + 1, nullptr);
    std::ranges::transform(words, pointers.begin(), [](std::string& word) { return word.data(); });
    int in[2] = {-1, -1}, out[2] = {-1, -1}, err[2] = {-1, -1};
    const bool is_ready =
        pipe2(in, O_CLOEXEC) == 0 && pipe2(out, O_CLOEXEC) == 0 && pipe2(err, O_CLOEXEC) == 0;
    fcntl(out[1], F_SETFL, O_NONBLOCK); // some front ends give the engine a non-blocking output
    fcntl(in[1], F_SETFL, O_NONBLOCK);  // SendText must not block, because it also reads the output
    pid = is_ready ? fork() : -1;
    if (pid == 0) {
        // If the tests run as a background job, they ignore SIGINT. The program would inherit this.
        std::signal(SIGINT, SIG_DFL);
        if (chdir(directory.c_str()) == 0 && dup2(in[0], STDIN_FILENO) >= 0 &&
            dup2(out[1], STDOUT_FILENO) >= 0 && dup2(err[1], STDERR_FILENO) >= 0) {
            execv(words[0].c_str(), pointers.data());
        }
        _exit(127);
    }
    EXPECT_GT(pid, 0) << "the program cannot be started";
    for (int far_end : {in[0], out[1], err[1]}) {
        Close(far_end);
    }
    input = in[1];
    output.end = out[0];
    errors.end = err[0];
}

EngineProcess::~EngineProcess() {
    if (pid > 0) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    Close(input);
    Close(output.end);
    Close(errors.end);
}

void SendText(EngineProcess& engine, std::string_view text) {
    while (!text.empty()) {
        pollfd ends[] = {{engine.input, POLLOUT, 0}, {engine.output.end, POLLIN, 0}};
        if (!IsReady(engine, ends, std::size(ends))) return;
        if ((ends[1].revents & POLLIN) != 0) {
            ReadMore(engine, engine.output);
        } else if (ends[1].revents != 0) {
            Close(engine.output.end); // otherwise poll() would always return at once
        }
        if (ends[0].revents == 0) continue;
        const ssize_t count = write(engine.input, text.data(), text.size());
        if (count < 0 && errno != EAGAIN) return;
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

bool ReadLine(EngineProcess& engine, OutputPipe& pipe, std::string& line) {
    std::size_t end = 0;
    while ((end = pipe.text.find('\n')) == std::string::npos && pipe.end >= 0) {
        pollfd wait{pipe.end, POLLIN, 0};
        if (!IsReady(engine, &wait, 1) || !ReadMore(engine, pipe)) Close(pipe.end);
    }
    if (pipe.text.empty()) return false;
    line = pipe.text.substr(0, end);
    pipe.text.erase(0, end == std::string::npos ? end : end + 1);
    if (WINDOWS_PROGRAMS && end != std::string::npos) {
        EXPECT_TRUE(line.ends_with('\r')) << "the line end is not the system's: " << line;
        line.pop_back();
    }
    return true;
}

void CloseInput(EngineProcess& engine) { Close(engine.input); }

void CloseOutput(EngineProcess& engine) { Close(engine.output.end); }

void SendWithoutReading(EngineProcess& engine, std::string_view text) {
    EXPECT_GT(fcntl(engine.output.end, F_SETPIPE_SZ, 1), 0);
    EXPECT_EQ(write(engine.input, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    const std::string about = "/proc/" + std::to_string(engine.pid) + "/stat";
    std::string number, program, state;
    int answered = 0, left = 1;
    while (left > 0 && state != "Z" && (state != "S" || answered == 0)) {
        sched_yield();
        ioctl(engine.output.end, FIONREAD, &answered);
        ioctl(engine.input, FIONREAD, &left);
        std::ifstream(about) >> number >> program >> state;
    }
    EXPECT_EQ(state, "S");
    EXPECT_GT(left, 0) << "the program takes all lines";
}

std::string WaitForExit(EngineProcess& engine) {
    int status = 0;
    waitpid(engine.pid, &status, 0);
    engine.pid = -1;
    if (WIFEXITED(status)) return "exit " + std::to_string(WEXITSTATUS(status));
    return std::string("signal ") + sigabbrev_np(WTERMSIG(status));
}

std::string RunShell(const std::string& directory, pid_t pid, const std::string& command) {
    const std::string preparation = "cd '" + directory + "' && PID=" + std::to_string(pid) +
                                    " PATH='" + NATIVE_PROGRAMS + "':\"$PATH\" && ";
    std::string printed;
    FILE* const shell = popen((preparation + command).c_str(), "r");
    for (int byte = 0; shell && (byte = std::fgetc(shell)) != EOF;) {
        printed += static_cast<char>(byte);
    }
    EXPECT_TRUE(shell && pclose(shell) == 0) << command;
    return printed;
}
