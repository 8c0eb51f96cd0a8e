// Command-line options: a table of options, and functions that read and check the arguments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr std::size_t OPTION_NAME_SIZE = 64;
inline constexpr std::size_t OPTION_VALUE_SIZE = 512;
inline constexpr std::size_t FILE_NAME_SIZE = 32;

struct Option {
    char name[OPTION_NAME_SIZE]; // with dashes, such as "--help"
    char value[OPTION_VALUE_SIZE];
    std::uint8_t is_switch; // 1 if the option takes no value
    std::uint8_t present;
};

// An option that is valid together with an action, such as "-o" with "--make-book".
struct AllowedOption {
    std::string_view name;
    bool is_required;
};

// The file name under which the program was started, without the directory. Used in error messages.
// A long name is cut.
extern char MY_FILE_NAME[FILE_NAME_SIZE];
void SetMyFileName(std::string_view invocation);

// Returns the index of the option in an argument "NAME" or "NAME=VALUE". Returns -1 for an unknown
// option.
int GetOptionIndex(std::span<const Option> options, std::string_view argument);
bool IsKnownOption(std::span<const Option> options, std::string_view argument);
bool IsPresentOption(std::span<const Option> options, std::string_view name);

// Stores the value of an option and sets `present`. A long value is cut.
void SetOptionValueByName(std::span<Option> options, std::string_view name, std::string_view value);

// Returns the option's value in a static buffer. The text is empty if the option was not given.
const char* GetOptionValueByName(std::span<const Option> options, std::string_view name);

// Reads the arguments into `options`. An unknown option or a missing value is a fatal error.
void ReadArguments(std::span<Option> options, std::span<const char* const> arguments);

// Ends the program with an error if a required option is missing or an option outside `allowed` is
// present.
void EnsureOptionConfiguration(std::span<const Option> options,
                               std::span<const AllowedOption> allowed);

// Ends the program with the error "invalid option value".
[[noreturn]] void RefuseOptionValue(std::string_view name, std::string_view value);
