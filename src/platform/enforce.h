// Fatal errors and file checks.
#pragma once

#include <cstdint>
#include <string_view>

// Writes the message and a line feed to standard error and ends the program with exit status 1.
[[noreturn]] void FatalError(std::string_view message);

// Ends the program with a fatal error after a failed allocation.
[[noreturn]] void RunOutOfMemory();

// True if the path is a regular file or a link to one.
bool IsPlainFile(const char* path);

// True if the file can be opened for reading. Always true for a named pipe, because opening one
// blocks.
bool FileExists(const char* path);

// A fatal error that names the file unless it can be opened for reading.
void RequireFile(const char* path);
