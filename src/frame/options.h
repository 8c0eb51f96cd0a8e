// The command-line options: the table, matching and values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr std::size_t OPTION_NAME_SIZE = 64;
inline constexpr std::size_t OPTION_VALUE_SIZE = 512;
inline constexpr std::size_t FILE_NAME_SIZE = 32;

struct Option {
    char name[OPTION_NAME_SIZE]; // as typed, with its dashes
    char value[OPTION_VALUE_SIZE];
    std::uint8_t is_switch; // takes no value
    std::uint8_t present;
};

// An option that an action allows.
struct AllowedOption {
    std::string_view name;
    bool is_required;
};

// The program's invocation name without its directory, cut to its size; stands in every message.
extern char MY_FILE_NAME[FILE_NAME_SIZE];
void SetMyFileName(std::string_view invocation);

// Index of the first option whose name the argument has, alone or in front of "=value"; -1: none.
int GetOptionIndex(std::span<const Option> options, std::string_view argument);
bool IsKnownOption(std::span<const Option> options, std::string_view argument);
bool IsPresentOption(std::span<const Option> options, std::string_view name);

// Stores a value, cut to its field, and marks the option present.
void SetOptionValueByName(std::span<Option> options, std::string_view name, std::string_view value);

// The value in a static buffer; empty when the option was not given.
const char* GetOptionValueByName(std::span<const Option> options, std::string_view name);

// Marks the options that the arguments name, and no others, and stores their values. A fatal error
// for an argument that is no option, or for an option without its value.
void ReadArguments(std::span<Option> options, std::span<const char* const> arguments);

// A fatal error unless all required options of these are present, and none but these.
void EnsureOptionConfiguration(std::span<const Option> options,
                               std::span<const AllowedOption> allowed);

// Ends the program over a value that an option cannot have.
[[noreturn]] void RefuseOptionValue(std::string_view name, std::string_view value);
