// Fatal errors and the file checks in front of them.
#pragma once

#include <cstdint>
#include <string_view>

// Writes the message and a line feed to standard error and ends the program with exit status 1.
[[noreturn]] void FatalError(std::string_view message);

// Ends the program with a fatal error: memory that it asked for cannot be had.
[[noreturn]] void RunOutOfMemory();

// The path is a file on a disk, not a pipe, folder or device.
bool IsPlainFile(const char* path);

// The file can be opened for reading. A named pipe counts as one that can, because opening it would
// wait for its other end.
bool FileExists(const char* path);

// Returns when the file can be opened for reading; otherwise a fatal error that names it.
void RequireFile(const char* path);
