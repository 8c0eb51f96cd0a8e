// The user's name and file paths, from environment variables.
#pragma once

#include <filesystem>
#include <string>

// Returns the user's name, or "Player" if the name is unknown.
std::string PersonName();

// Returns the absolute path of a file name that the user has typed. A leading "~/" stands for the
// home folder. Other relative names are relative to the folder in the environment variable
// KORVANE_CALLED_FROM: the launcher stores the user's folder there before it changes the current
// folder.
std::filesystem::path PersonPath(const std::string& name);
