#include "platform/system.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <langinfo.h>
#include <locale.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr std::uint64_t NANOSECONDS_PER_TICK = 100;

#ifdef POLLRDHUP
constexpr short HALF_CLOSED = POLLRDHUP; // poll event: the peer of a socket has stopped sending
#else
constexpr short HALF_CLOSED = 0;
#endif

// For a console, WaitingInput returns a number of events. Each typed byte counts as two events: a
// key press and a key release.
constexpr int EVENTS_OF_KEY = 2;

constexpr std::size_t LARGE_PAGE = std::size_t{2} << 20;

constexpr std::size_t RoundUp(std::size_t bytes) {
    return (bytes + LARGE_PAGE - 1) & ~(LARGE_PAGE - 1);
}

// True if a failed read or write should be repeated. If the descriptor was not ready, first waits
// until the descriptor is ready.
bool WaitToRepeat(int descriptor, short events) {
    if (errno == EINTR) return true;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
    pollfd wait{descriptor, events, 0};
    poll(&wait, 1, -1);
    return true;
}

// The result of poll for standard input and standard output.
struct Events {
    int count; // number of descriptors with an event; negative if poll failed
    short input;
    short output; // only error events, such as a pipe that nobody reads any more
};

// Waits for an event for at most `timeout` milliseconds. -1 means no limit.
Events PollFrontEnd(int timeout) {
    pollfd ends[] = {{STDIN_FILENO, POLLIN | HALF_CLOSED, 0}, {STDOUT_FILENO, 0, 0}};
    const int count = poll(ends, std::size(ends), timeout);
    return {count, ends[0].revents, ends[1].revents};
}

volatile std::sig_atomic_t is_interrupted = 0;
int input_before_interrupt = -1; // duplicate of the original standard input

// Signal handler that replaces standard input by /dev/null, so that ReadInput reports the end of
// the input. Uses only async-signal-safe calls.
void InterruptInput(int) {
    const int error = errno;
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    close(nothing);
    is_interrupted = 1;
    errno = error;
}

// Signal handler that ends standard input permanently.
void EndInput(int signal) {
    InterruptInput(signal);
    dup2(STDIN_FILENO, input_before_interrupt);
    is_interrupted = 0; // TakeInterrupt must not report this signal
}

} // namespace

void PrepareProcess(Interrupts interrupts) {
    if (interrupts == Interrupts::END_OF_INPUT) {
        input_before_interrupt = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        std::signal(SIGINT, InterruptInput);
        std::signal(SIGTERM, EndInput);
        std::signal(SIGHUP, EndInput);
    } else {
        const auto handler = interrupts == Interrupts::IGNORED ? SIG_IGN : SIG_DFL;
        std::signal(SIGINT, handler);
        std::signal(SIGTERM, handler);
    }
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_DFL);
    const int flags = fcntl(STDOUT_FILENO, F_GETFL);
    if (flags >= 0) fcntl(STDOUT_FILENO, F_SETFL, flags & ~O_NONBLOCK);
}

bool TakeInterrupt() {
    if (!is_interrupted) return false;
    sigset_t interrupt, before;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &interrupt, &before); // else a SIGINT before dup2 could be lost
    is_interrupted = 0;
    dup2(input_before_interrupt, STDIN_FILENO);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return true;
}

std::span<const char* const> CommandLineWords(int argument_count, const char* const* arguments) {
    return {arguments, static_cast<std::size_t>(argument_count)};
}

std::uint64_t SystemTime() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * TICKS_PER_SECOND +
           static_cast<std::uint64_t>(now.tv_nsec) / NANOSECONDS_PER_TICK;
}

bool IsConsoleInput() { return isatty(STDIN_FILENO) != 0; }

void QuietConsole() {} // POSIX consoles have no mouse or window events

bool IsConsoleOutput() { return isatty(STDOUT_FILENO) != 0; }

bool IsConsoleErrors() { return isatty(STDERR_FILENO) != 0; }

bool IsUnicodeConsole() {
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!locale) return false;
    const bool is_unicode = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
    freelocale(locale);
    return is_unicode;
}

bool IsColourConsole() {
    if (!IsConsoleOutput() || !EnvironmentValue("NO_COLOR").empty()) return false;
    const std::string terminal = EnvironmentValue("TERM");
    const std::string colours = EnvironmentValue("COLORTERM");
    return terminal.ends_with("256color") ||
           (terminal != "dumb" && (colours == "truecolor" || colours == "24bit"));
}

std::string EnvironmentValue(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

int WaitingInput() {
    const int count = PollFrontEnd(0).count;
    if (count == 0 || (count < 0 && errno == EINTR)) return 0;
    int bytes = 0;
    if (count < 0 || ioctl(STDIN_FILENO, FIONREAD, &bytes) != 0 || bytes <= 0) return INPUT_UNKNOWN;
    return IsConsoleInput() ? EVENTS_OF_KEY * bytes : bytes;
}

bool IsHungUp() {
    constexpr short GONE = POLLHUP | POLLERR | POLLNVAL | HALF_CLOSED;
    const Events events = PollFrontEnd(0);
    return ((events.input | events.output) & GONE) != 0;
}

std::size_t ReadInput(std::span<char> room) {
    for (;;) {
        const Events events = PollFrontEnd(-1);
        // If only standard output has an event, nobody reads standard output any more.
        if (events.count > 0 && events.input == 0) return 0;
        const ssize_t got = read(STDIN_FILENO, room.data(), room.size());
        if (got >= 0) return static_cast<std::size_t>(got);
        if (!WaitToRepeat(STDIN_FILENO, POLLIN)) return 0;
    }
}

void WriteOutput(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t put = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (put >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(put));
        } else if (!WaitToRepeat(STDOUT_FILENO, POLLOUT)) {
            return;
        }
    }
}

void FlushOutput() { std::fflush(stdout); }

std::string ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::filesystem::path PathOf(std::string_view name) { return name; }

std::string NameOf(const std::filesystem::path& path) { return path.string(); }

std::FILE* OpenFile(const char* name, FileUse use) {
    switch (use) {
    case FileUse::READ: return std::fopen(name, "r");
    case FileUse::WRITE: return std::fopen(name, "w");
    case FileUse::CREATE: return std::fopen(name, "wx");
    case FileUse::LOG: break;
    }
    // Without O_NONBLOCK, opening a named pipe would wait for a reader.
    const int file = open(name, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666);
    return file < 0 ? nullptr : fdopen(file, "a");
}

bool MoveIntoPlace(const char* from, const char* to) { return std::rename(from, to) == 0; }

void* AllocateTable(std::size_t bytes) {
    const std::size_t size = RoundUp(bytes);
    void* area = mmap(nullptr, size + LARGE_PAGE, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (area == MAP_FAILED) return nullptr;
    // Large pages begin at multiples of their size, so the table must begin at such a multiple.
    // Unmaps the memory before and after the table.
    const std::size_t start = reinterpret_cast<std::size_t>(area);
    const std::size_t before = RoundUp(start) - start;
    char* const table = static_cast<char*>(area) + before;
    if (before > 0) munmap(area, before);
    if (before < LARGE_PAGE) munmap(table + size, LARGE_PAGE - before);
#ifdef MADV_HUGEPAGE
    madvise(table, size, MADV_HUGEPAGE);
#endif
    return table;
}

void FreeTable(void* table, std::size_t bytes) {
    if (table) munmap(table, RoundUp(bytes));
}
