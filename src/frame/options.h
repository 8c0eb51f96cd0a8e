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

// The program's invocation name without its directory, cut to its size; used in error messages.
extern char MY_FILE_NAME[FILE_NAME_SIZE];
void SetMyFileName(std::string_view invocation);

// Returns the index of the first option that the argument names, alone or before "=value", or -1.
int GetOptionIndex(std::span<const Option> options, std::string_view argument);
bool IsKnownOption(std::span<const Option> options, std::string_view argument);
bool IsPresentOption(std::span<const Option> options, std::string_view name);

// Stores a value, cut to its field, and marks the option present.
void SetOptionValueByName(std::span<Option> options, std::string_view name, std::string_view value);

// Returns the value in a static buffer; empty if the option was not given.
const char* GetOptionValueByName(std::span<const Option> options, std::string_view name);

// Sets `present` and the value of each option from the arguments. An unknown argument or a missing
// value is a fatal error.
void ReadArguments(std::span<Option> options, std::span<const char* const> arguments);

// Ends the program with an error unless all required options and no unlisted ones are present.
void EnsureOptionConfiguration(std::span<const Option> options,
                               std::span<const AllowedOption> allowed);

// Ends the program with an error: the value is invalid for the option.
[[noreturn]] void RefuseOptionValue(std::string_view name, std::string_view value);
