// The user's name and files, from the operating system.
#pragma once

#include <filesystem>
#include <string>

// The user's name, or "Player".
std::string PersonName();

// Resolves a file name as the person means it: "~" is their home folder, and other names are
// relative to the folder where they called the program. The launcher may have changed folders
// since.
std::filesystem::path PersonPath(const std::string& name);
