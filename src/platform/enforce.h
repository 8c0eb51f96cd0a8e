// Fatal errors and file checks.
#pragma once

#include <cstdint>
#include <string_view>

// Prints the message on standard error and ends the program with exit status 1.
[[noreturn]] void FatalError(std::string_view message);

// Ends the program with the error "out of memory". Called after a failed allocation.
[[noreturn]] void RunOutOfMemory();

// True if the path is a regular file or a link to one.
bool IsPlainFile(const char* path);

// True if the file can be opened for reading. Also true for every named pipe: opening a pipe can
// block, so pipes are not tested.
bool FileExists(const char* path);

// Ends the program with a fatal error if the file cannot be opened for reading.
void RequireFile(const char* path);
