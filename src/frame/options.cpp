#include "frame/options.h"

#include "notation/text.h"
#include "platform/enforce.h"

#include <algorithm>
#include <cassert>
#include <string>

char MY_FILE_NAME[FILE_NAME_SIZE];

namespace {

std::string MessageOf(std::string_view text) {
    return std::string(MY_FILE_NAME) + ": " + std::string(text);
}

std::string Quoted(std::string_view text) { return std::string("\"").append(text).append("\""); }

// Returns the value of the option in arguments.front(): the text after "=", or the next argument.
// If the value is the next argument, removes the option, so that `arguments` begins with the value.
// A missing value is a fatal error.
std::string_view TakeValue(std::span<const Option> options,
                           std::span<const char* const>& arguments) {
    const std::string_view argument = arguments.front();
    const std::size_t equals = argument.find('=');
    if (equals != std::string_view::npos) return argument.substr(equals + 1);
    if (arguments.size() < 2 || IsKnownOption(options, arguments[1])) {
        FatalError(MessageOf("option value not specified (" + Quoted(argument) + ")"));
    }
    arguments = arguments.subspan(1);
    return arguments.front();
}

} // namespace

void SetMyFileName(std::string_view invocation) {
    CopyText(MY_FILE_NAME, invocation.substr(invocation.find_last_of("/\\") + 1));
}

int GetOptionIndex(std::span<const Option> options, std::string_view argument) {
    const auto option = std::ranges::find_if(options, [&](const Option& candidate) {
        const std::string_view name = candidate.name;
        return argument.starts_with(name) &&
               (argument.size() == name.size() || argument[name.size()] == '=');
    });
    return option == options.end() ? -1 : static_cast<int>(option - options.begin());
}

bool IsKnownOption(std::span<const Option> options, std::string_view argument) {
    return GetOptionIndex(options, argument) >= 0;
}

bool IsPresentOption(std::span<const Option> options, std::string_view name) {
    const int index = GetOptionIndex(options, name);
    return index >= 0 && options[static_cast<std::size_t>(index)].present;
}

void SetOptionValueByName(std::span<Option> options, std::string_view name,
                          std::string_view value) {
    const int index = GetOptionIndex(options, name);
    assert(index >= 0);
    Option& option = options[static_cast<std::size_t>(index)];
    CopyText(option.value, value);
    option.present = 1;
}

const char* GetOptionValueByName(std::span<const Option> options, std::string_view name) {
    static char value[OPTION_VALUE_SIZE];
    const int index = GetOptionIndex(options, name);
    CopyText(value, index >= 0 ? options[static_cast<std::size_t>(index)].value : "");
    return value;
}

void ReadArguments(std::span<Option> options, std::span<const char* const> arguments) {
    for (Option& option : options) {
        option.value[0] = '\0';
        option.present = 0;
    }
    for (; !arguments.empty(); arguments = arguments.subspan(1)) {
        const int index = GetOptionIndex(options, arguments.front());
        if (index < 0) {
            FatalError(MessageOf("unrecognized option " + Quoted(arguments.front())));
        }
        Option& option = options[static_cast<std::size_t>(index)];
        SetOptionValueByName(options, option.name,
                             option.is_switch ? "" : TakeValue(options, arguments));
    }
}

void EnsureOptionConfiguration(std::span<const Option> options,
                               std::span<const AllowedOption> allowed) {
    const auto is_right = [&](const Option& option) {
        const auto found = std::ranges::find(allowed, option.name, &AllowedOption::name);
        if (found == allowed.end()) return !option.present;
        return option.present || !found->is_required;
    };
    if (!std::ranges::all_of(options, is_right)) {
        FatalError(MessageOf("invalid option configuration"));
    }
}

void RefuseOptionValue(std::string_view name, std::string_view value) {
    FatalError(MessageOf("invalid option value (" +
                         Quoted(std::string(name) + "=" + std::string(value)) + ")"));
}
