// Fatal errors and the file checks in front of them.
#pragma once

#include <cstdint>
#include <string_view>

// Writes the message and a line feed to standard error and ends the program with exit status 1.
[[noreturn]] void FatalError(std::string_view message);

// Ends the program with a fatal error: memory that it asked for cannot be had.
[[noreturn]] void RunOutOfMemory();

// 1 if it is a file on a disk, and no pipe, folder or device.
std::uint8_t IsPlainFile(const char* path);

// 1 if the file can be opened for reading, else 0. A named pipe is taken for one that can, as to
// open it would mean to wait for its other end.
std::uint8_t FileExists(const char* path);

// Returns when the file can be opened for reading; otherwise a fatal error that names it.
void RequireFile(const char* path);
