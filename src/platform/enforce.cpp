#include "platform/enforce.h"

#include <cstdio>
#include <cstdlib>
#include <string>

void FatalError(std::string_view message) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
    std::exit(EXIT_FAILURE);
}

std::uint8_t FileExists(const char* path) {
    std::FILE* file = std::fopen(path, "rb");
    if (!file) return 0;
    std::fclose(file);
    return 1;
}

void RequireFile(const char* path) {
    if (!FileExists(path)) FatalError(std::string("Error (file does not exist): ") + path);
}
