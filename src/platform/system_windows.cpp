#include "platform/system.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <io.h>
#include <windows.h>
#include <winternl.h>

#include <shellapi.h>

namespace {

HANDLE Input() { return GetStdHandle(STD_INPUT_HANDLE); }
HANDLE Output() { return GetStdHandle(STD_OUTPUT_HANDLE); }

// Wide and Narrow convert between the engine's UTF-8 and the UTF-16 of Windows.
std::wstring Wide(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0'); // one UTF-8 byte gives at most one UTF-16 unit
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string Narrow(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    std::string narrow(text.size() * 3, '\0'); // one UTF-16 unit gives at most three bytes
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(),
                                           static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(length));
    return narrow;
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

// True if the other end of a pipe has closed, even if unread bytes remain.
bool IsOtherEndClosed(HANDLE handle) {
    constexpr auto PIPE_LOCAL_INFORMATION = static_cast<FILE_INFORMATION_CLASS>(24);
    constexpr ULONG DISCONNECTED = 1, CLOSING = 4;
    struct {
        ULONG type, configuration, most_instances, instances;
        ULONG in_quota, readable, out_quota, writable, state, end;
    } about{};
    IO_STATUS_BLOCK status{};
    return NT_SUCCESS(NtQueryInformationFile(handle, &status, &about, sizeof about,
                                             PIPE_LOCAL_INFORMATION)) &&
           (about.state == CLOSING || about.state == DISCONNECTED);
}

// True if the error means that the other end of a pipe has closed.
bool IsGone(DWORD error) {
    return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA ||
           error == ERROR_PIPE_NOT_CONNECTED;
}

bool is_ended_by_interrupts = false;     // true if an interrupt ends standard input
std::atomic<bool> is_input_over = false; // true after EndInput has ended standard input
std::atomic<bool> is_closing = false;    // true once the console closes or the user logs off
std::atomic<bool> is_reading = false;    // true while ReadInput reads
HANDLE main_thread = nullptr;

BOOL WINAPI IgnoreInterrupt(DWORD event) {
    return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
}

// Handler of console events. Ends standard input. If the console closes or the user logs off,
// Windows ends the program when this handler returns, at the latest after a few seconds. For these
// events the handler never returns, so that the main thread has time to log the game.
BOOL WINAPI EndInput(DWORD event) {
    const bool is_interrupt = IgnoreInterrupt(event) != FALSE;
    if (!is_interrupt) is_closing = true;
    is_input_over = true;
    is_input_over.notify_all();
    if (is_interrupt || !main_thread) return is_interrupt;
    constexpr DWORD PERIOD = 100; // milliseconds
    for (;; Sleep(PERIOD)) {
        // Cancels only the main thread's reads, because a cancelled write would spoil the log.
        // The loop repeats the call, because a call has no effect before the read has begun, and
        // ReadInput sets is_reading shortly before that.
        if (is_reading) CancelSynchronousIo(main_thread);
    }
}

std::atomic<bool> is_output_over = false; // true once nobody reads standard output

// Thread that sets is_output_over and cancels a waiting read when nobody reads standard output any
// more. It exists because a check at every poll of the search would be slower.
DWORD WINAPI WatchOutput(void* reader) {
    constexpr DWORD PERIOD = 200; // milliseconds
    for (;; Sleep(PERIOD)) {
        if (!IsOtherEndClosed(Output())) continue;
        is_output_over = true;
        if (!is_reading) continue;
        CancelSynchronousIo(reader);
        CancelIoEx(Input(), nullptr); // needed for pipes opened in overlapped mode
    }
}

void StartWatchingOutput() {
    static bool is_watched = false;
    if (is_watched || GetFileType(Output()) != FILE_TYPE_PIPE) return;
    is_watched = true;
    const HANDLE reader = OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId());
    CreateThread(nullptr, 0, WatchOutput, reader, 0, nullptr);
}

// Returns the number of unread bytes if standard input is a file. Returns INPUT_UNKNOWN at the end
// of the file and for other kinds of input.
int RestOfFile() {
    LARGE_INTEGER size, place;
    if (GetFileType(Input()) != FILE_TYPE_DISK || !GetFileSizeEx(Input(), &size) ||
        !SetFilePointerEx(Input(), {}, &place, FILE_CURRENT) || place.QuadPart >= size.QuadPart) {
        return INPUT_UNKNOWN;
    }
    return static_cast<int>(std::min<LONGLONG>(size.QuadPart - place.QuadPart, INT_MAX));
}

// Enables the privilege to lock memory, which large pages require.
void AskForLargePages() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &token)) return;
    TOKEN_PRIVILEGES privileges{1, {{{0, 0}, SE_PRIVILEGE_ENABLED}}};
    if (LookupPrivilegeValueW(nullptr, L"SeLockMemoryPrivilege", &privileges.Privileges[0].Luid)) {
        AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr);
    }
    CloseHandle(token);
}

} // namespace

void PrepareProcess(Interrupts interrupts) {
    SetConsoleCtrlHandler(nullptr, FALSE); // the parent process may have disabled Ctrl-C
    if (interrupts == Interrupts::IGNORED) SetConsoleCtrlHandler(IgnoreInterrupt, TRUE);
    is_ended_by_interrupts = interrupts == Interrupts::END_OF_INPUT;
    if (is_ended_by_interrupts) {
        main_thread = OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId());
        SetConsoleCtrlHandler(EndInput, TRUE);
    }
    DWORD mode = PIPE_READMODE_BYTE | PIPE_WAIT;
    SetNamedPipeHandleState(Input(), &mode, nullptr, nullptr);
    SetNamedPipeHandleState(Output(), &mode, nullptr, nullptr);
}

bool TakeInterrupt() { return !is_closing && is_input_over.exchange(false); }

std::span<const char* const> CommandLineWords(int, const char* const*) {
    static std::vector<std::string> words;
    static std::vector<const char*> pointers;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 0; wide && i < count; ++i) {
        words.push_back(Narrow(wide[i]));
    }
    for (const std::string& word : words) {
        pointers.push_back(word.c_str());
    }
    LocalFree(wide);
    return pointers;
}

std::uint64_t SystemTime() {
    LARGE_INTEGER frequency, count;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    const auto second = static_cast<std::uint64_t>(frequency.QuadPart);
    const auto now = static_cast<std::uint64_t>(count.QuadPart);
    return now / second * TICKS_PER_SECOND + now % second * TICKS_PER_SECOND / second;
}

bool IsConsoleInput() { return IsConsole(Input()); }

void QuietConsole() {
    DWORD mode = 0;
    if (!GetConsoleMode(Input(), &mode)) return;
    constexpr DWORD OTHER_EVENTS = ENABLE_WINDOW_INPUT | ENABLE_MOUSE_INPUT;
    SetConsoleMode(Input(), mode & ~OTHER_EVENTS);
    FlushConsoleInputBuffer(Input());
}

bool IsConsoleOutput() { return IsConsole(Output()); }

bool IsConsoleErrors() { return IsConsole(GetStdHandle(STD_ERROR_HANDLE)); }

bool IsUnicodeConsole() { return SetConsoleOutputCP(CP_UTF8) != 0; }

// Turns on the console's colour codes, which Windows 10 and later support.
bool IsColourConsole() {
    DWORD mode = 0;
    return EnvironmentValue("NO_COLOR").empty() && GetConsoleMode(Output(), &mode) &&
           SetConsoleMode(Output(), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

std::string EnvironmentValue(const char* name) {
    const wchar_t* const value = _wgetenv(Wide(name).c_str());
    return value ? Narrow(value) : "";
}

int WaitingInput() {
    DWORD count = 0;
    if (is_input_over || is_output_over) return INPUT_UNKNOWN;
    const bool is_known = PeekNamedPipe(Input(), nullptr, 0, nullptr, &count, nullptr) ||
                          GetNumberOfConsoleInputEvents(Input(), &count);
    return is_known ? static_cast<int>(count) : RestOfFile();
}

bool IsHungUp() {
    const bool is_ended =
        !PeekNamedPipe(Input(), nullptr, 0, nullptr, nullptr, nullptr) && IsGone(GetLastError());
    return is_ended || IsOtherEndClosed(Input()) || IsOtherEndClosed(Output());
}

std::size_t ReadInput(std::span<char> room) {
    StartWatchingOutput();
    for (;;) {
        DWORD got = 0;
        if (is_input_over) return 0;
        SetLastError(ERROR_SUCCESS);
        is_reading = true;
        const BOOL is_read =
            ReadFile(Input(), room.data(), static_cast<DWORD>(room.size()), &got, nullptr);
        is_reading = false;
        if (!is_read || got > 0) return got;
        // The read returned no bytes, but the input may not have ended: the other side may have
        // written an empty message to the pipe, or an interrupt may have ended the read.
        const bool is_interrupted = GetLastError() == ERROR_OPERATION_ABORTED;
        if (is_interrupted && is_ended_by_interrupts) {
            is_input_over.wait(false); // EndInput sets this flag in another thread
            return 0;
        }
        if (!is_interrupted && !PeekNamedPipe(Input(), nullptr, 0, nullptr, nullptr, nullptr)) {
            return 0;
        }
    }
}

void WriteOutput(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        if (c == '\n') text += '\r';
        text += c;
    }
    for (std::size_t done = 0; done < text.size();) {
        DWORD put = 0;
        const auto left = static_cast<DWORD>(text.size() - done);
        if (!WriteFile(Output(), text.data() + done, left, &put, nullptr)) {
            if (IsGone(GetLastError())) std::_Exit(EXIT_FAILURE);
            return;
        }
        done += put;
    }
}

void FlushOutput() {
    if (std::fflush(stdout) != 0 && GetFileType(Output()) == FILE_TYPE_PIPE) {
        std::_Exit(EXIT_FAILURE); // nobody reads the pipe any more
    }
}

std::string ProgramFolder() {
    std::wstring name(32768, L'\0'); // maximum length of a path
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    name.resize(length);
    return Narrow(name.substr(0, name.find_last_of(L'\\')));
}

std::filesystem::path PathOf(std::string_view name) { return Wide(name); }

std::string NameOf(const std::filesystem::path& path) { return Narrow(path.native()); }

std::FILE* OpenFile(const char* name, FileUse use) {
    struct Way {
        DWORD access, creation, attributes;
        int flags;
        const char* mode;
    };
    constexpr Way WAYS[] = {
        // With FILE_FLAG_BACKUP_SEMANTICS, a folder can be opened, as on POSIX systems. Reading the
        // folder fails.
        {GENERIC_READ, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, _O_RDONLY | _O_BINARY, "rb"},
        {GENERIC_WRITE, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, _O_BINARY, "wb"},
        {GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, _O_BINARY, "wb"},
        {FILE_APPEND_DATA, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, _O_APPEND | _O_BINARY, "ab"},
    };
    const Way& way = WAYS[static_cast<std::size_t>(use)];
    const HANDLE handle = CreateFileW(Wide(name).c_str(), way.access,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, way.creation, way.attributes, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return nullptr;
    const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), way.flags);
    if (descriptor < 0) {
        CloseHandle(handle);
        return nullptr;
    }
    return _fdopen(descriptor, way.mode);
}

bool MoveIntoPlace(const char* from, const char* to) {
    return MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

void* AllocateTable(std::size_t bytes) {
    AskForLargePages();
    constexpr DWORD AT_ONCE = MEM_RESERVE | MEM_COMMIT;
    const std::size_t page = GetLargePageMinimum();
    if (page > 0) {
        const std::size_t size = (bytes + page - 1) / page * page;
        void* const table = VirtualAlloc(nullptr, size, AT_ONCE | MEM_LARGE_PAGES, PAGE_READWRITE);
        if (table) return table;
    }
    return VirtualAlloc(nullptr, bytes, AT_ONCE, PAGE_READWRITE);
}

void FreeTable(void* table, std::size_t) {
    if (table) VirtualFree(table, 0, MEM_RELEASE);
}
