#include "platform/enforce.h"

#include "platform/system.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

void FatalError(std::string_view message) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
    std::exit(EXIT_FAILURE);
}

void RunOutOfMemory() { FatalError("Error (out of memory)"); }

bool IsPlainFile(const char* path) {
    std::error_code error;
    return std::filesystem::is_regular_file(PathOf(path), error);
}

bool FileExists(const char* path) {
    std::error_code error;
    // Returns early for a named pipe, because opening a named pipe would wait for a writer.
    if (std::filesystem::is_fifo(PathOf(path), error)) return true;
    std::FILE* file = OpenFile(path, FileUse::READ);
    if (!file) return false;
    std::fclose(file);
    return true;
}

void RequireFile(const char* path) {
    if (!FileExists(path)) FatalError(std::string("Error (file does not exist): ") + path);
}
