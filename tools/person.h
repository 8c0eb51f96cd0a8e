// The user's name and file paths, from environment variables.
#pragma once

#include <filesystem>
#include <string>

// Returns the user's name, or "Player" if the name is unknown.
std::string PersonName();

// Returns the absolute path of a file name that the user has typed. "~" is the home folder. Other
// relative names begin at the folder KORVANE_CALLED_FROM, because a launcher may have changed the
// current folder.
std::filesystem::path PersonPath(const std::string& name);
