// bridge PROGRAM [WORD]...: runs a Windows program with Windows pipes as its standard input, output
// and error. Under Wine, a program cannot learn the number of waiting bytes of a Linux pipe. The
// bridge copies input and output between the Linux and Windows pipes until they end, and exits with
// the status of the program.
#include <cstdio>
#include <string>
#include <thread>

#include <windows.h>

namespace {

struct Pipe {
    HANDLE reader = nullptr, writer = nullptr;

    Pipe() { CreatePipe(&reader, &writer, nullptr, 0); }
};

void HandOn(HANDLE from, HANDLE to) {
    char block[4096];
    for (DWORD got = 0; ReadFile(from, block, sizeof block, &got, nullptr) && got > 0;) {
        DWORD put = 0;
        if (!WriteFile(to, block, got, &put, nullptr)) break;
    }
    CloseHandle(to);
    CloseHandle(from);
}

} // namespace

int main() {
    const Pipe input, output, errors;
    for (const HANDLE far_end : {input.reader, output.writer, errors.writer}) {
        SetHandleInformation(far_end, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input.reader;
    start.hStdOutput = output.writer;
    start.hStdError = errors.writer;
    // Removes the bridge's own name from the command line. The rest is the command to run.
    std::wstring line = GetCommandLineW();
    const std::size_t name_end = line.front() == L'"' ? line.find(L'"', 1) + 1 : line.find(L' ');
    line.erase(0, line.find_first_not_of(L' ', name_end));
    PROCESS_INFORMATION program{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &program)) {
        std::fprintf(stderr, "bridge: error %lu for %ls\n", GetLastError(), line.c_str());
        return 127;
    }
    for (const HANDLE far_end : {input.reader, output.writer, errors.writer}) {
        CloseHandle(far_end);
    }
    std::thread(HandOn, GetStdHandle(STD_INPUT_HANDLE), input.writer).detach();
    std::thread talk(HandOn, output.reader, GetStdHandle(STD_OUTPUT_HANDLE));
    std::thread complaints(HandOn, errors.reader, GetStdHandle(STD_ERROR_HANDLE));
    talk.join();
    complaints.join();
    WaitForSingleObject(program.hProcess, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(program.hProcess, &status);
    // Ends the process at once, although a thread may still be reading the input.
    TerminateProcess(GetCurrentProcess(), status);
}
