#include "engine_process.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <poll.h>
#include <regex>
#include <sched.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int PATIENCE = 60'000; // milliseconds without a byte

// Appends the pipe's next byte; false at its end. An engine that is silent or does not stop talking
// is killed.
bool ReadByte(EngineProcess& engine, int pipe, std::string& text) {
    pollfd wait{pipe, POLLIN, 0};
    if (--engine.budget == 0 || poll(&wait, 1, PATIENCE) <= 0) {
        ADD_FAILURE() << "the engine does not come to an end";
        if (engine.pid > 0) kill(engine.pid, SIGKILL);
    }
    char byte = 0;
    if (read(pipe, &byte, 1) != 1) return false;
    if (WINDOWS_PROGRAMS && byte == '\n') {
        EXPECT_TRUE(text.ends_with('\r')) << "the line end is not the system's: " << text;
        text.pop_back();
    }
    text += byte;
    return true;
}

} // namespace

EngineProcess::EngineProcess(const std::string& arguments, const std::string& invocation,
                             const std::string& preparation, const std::string& program)
    : directory(std::filesystem::temp_directory_path() / "korvane_test_XXXXXX") {
    std::signal(SIGPIPE, SIG_IGN); // an engine that has gone fails its own test only
    std::istringstream stream(invocation + " " + arguments);
    std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
    std::vector<char*> pointers(words.size() + 1, nullptr);
    std::ranges::transform(words, pointers.begin(), [](std::string& word) { return word.data(); });
    int in[2] = {-1, -1}, out[2] = {-1, -1}, err[2] = {-1, -1};
    const bool is_ready = mkdtemp(directory.data()) && pipe2(in, O_CLOEXEC) == 0 &&
                          pipe2(out, O_CLOEXEC) == 0 && pipe2(err, O_CLOEXEC) == 0;
    RunBeside(*this, preparation);
    fcntl(out[1], F_SETFL, O_NONBLOCK); // as some front ends leave it
    pid = is_ready ? fork() : -1;
    if (pid == 0) {
        std::signal(SIGINT, SIG_DFL); // a background job is born without
        if (chdir(directory.c_str()) == 0 && dup2(in[0], STDIN_FILENO) >= 0 &&
            dup2(out[1], STDOUT_FILENO) >= 0 && dup2(err[1], STDERR_FILENO) >= 0) {
            execv(program.c_str(), pointers.data());
        }
        _exit(127);
    }
    EXPECT_GT(pid, 0) << "the engine cannot be started";
    for (const int far_end : {in[0], out[1], err[1]}) {
        close(far_end);
    }
    input = in[1];
    output = out[0];
    errors = err[0];
}

EngineProcess::~EngineProcess() {
    if (pid > 0) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    for (const int near_end : {input, output, errors}) {
        close(near_end);
    }
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

void SendText(const EngineProcess& engine, const std::string& text) {
    EXPECT_EQ(write(engine.input, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

void SendLines(const EngineProcess& engine, const std::string& lines) {
    SendText(engine, lines + "\n");
}

std::string ReadUntil(EngineProcess& engine, const std::string& pattern) {
    const std::regex wanted(pattern);
    std::string lines;
    for (std::string line; ReadByte(engine, engine.output, line);) {
        if (!line.ends_with('\n')) continue;
        lines += line;
        line.pop_back();
        if (std::regex_match(line, wanted)) return lines;
        line.clear();
    }
    std::string errors;
    while (ReadByte(engine, engine.errors, errors)) {
    }
    ADD_FAILURE() << "no line \"" << pattern << "\" in:\n" << lines << errors;
    return lines;
}

std::string Ask(EngineProcess& engine, const std::string& lines) {
    static int pings = 0;
    const std::string number = std::to_string(++pings);
    SendLines(engine, lines + "\nping " + number);
    const std::string answer = ReadUntil(engine, "pong " + number);
    return answer.substr(0, answer.rfind("pong "));
}

std::string ToLines(const std::string& text) {
    std::string lines;
    for (std::size_t from = 0, end = 0; end != std::string::npos; from = end + 2) {
        end = text.find("; ", from);
        const std::string line = text.substr(from, end - from);
        lines += line.starts_with("moves ") ? Game(line.substr(6)) : "\n" + line;
    }
    return lines.substr(1);
}

std::string ToAnswer(const std::string& text) {
    const std::string lines = std::regex_replace(text, std::regex("; "), "\n");
    return text.empty() ? "" : std::regex_replace(lines + "\n", std::regex("NO_BOOK\n"), NO_BOOK);
}

std::string Game(const std::string& moves) {
    return std::regex_replace(" " + moves, std::regex(" "), "\nusermove ");
}

void StartThinking(EngineProcess& engine, const std::string& command) {
    SendLines(engine, MIDDLE_GAME + "sd 50\n" + command);
    ReadUntil(engine, THINKING + "1\\. .*");
}

void CloseInput(EngineProcess& engine) {
    close(engine.input);
    engine.input = -1;
}

void CloseOutput(EngineProcess& engine) {
    close(engine.output);
    engine.output = -1;
}

void LimitMemory(pid_t process, std::size_t more_bytes) {
    std::size_t pages = 0;
    std::ifstream("/proc/" + std::to_string(process) + "/statm") >> pages;
    ASSERT_GT(pages, 0u);
    const rlim_t most = pages * static_cast<std::size_t>(getpagesize()) + more_bytes;
    const rlimit limit{most, most};
    EXPECT_EQ(prlimit(process, RLIMIT_AS, &limit, nullptr), 0);
}

void SendWithoutReading(EngineProcess& engine, const std::string& lines) {
    EXPECT_GT(fcntl(engine.output, F_SETPIPE_SZ, 1), 0);
    SendLines(engine, lines);
    const std::string about = "/proc/" + std::to_string(engine.pid) + "/stat";
    std::string number, program, state;
    int answered = 0, left = 1;
    while (left > 0 && state != "Z" && (state != "S" || answered == 0)) {
        sched_yield();
        ioctl(engine.output, FIONREAD, &answered);
        ioctl(engine.input, FIONREAD, &left);
        std::ifstream(about) >> number >> program >> state;
    }
    EXPECT_EQ(state, "S");
    EXPECT_GT(left, 0) << "the engine takes all lines";
}

void RunBeside(const EngineProcess& engine, const std::string& command) {
    EXPECT_EQ(std::system(("cd " + engine.directory + "; " + command).c_str()), 0);
}

Ending WaitForExit(EngineProcess& engine) {
    Ending ending{0, "", ""};
    while ((engine.output >= 0 && ReadByte(engine, engine.output, ending.output)) ||
           ReadByte(engine, engine.errors, ending.errors)) {
    }
    if (WINDOWS_PROGRAMS) { // whose names have more to them
        ending.errors = std::regex_replace(ending.errors, std::regex("\\.exe\\b"), "");
        ending.output = std::regex_replace(ending.output, std::regex("\\.exe\\b"), "");
    }
    int status = 0;
    waitpid(engine.pid, &status, 0);
    engine.pid = -1;
    ending.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return ending;
}

std::string ReadFile(const EngineProcess& engine, const std::string& name) {
    std::ifstream file(engine.directory + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string LayBook(const std::string& moves) {
    return "echo '" + moves + " *' | " KORVANE_BINARY " --make-book --format=txt -f /dev/stdin";
}
