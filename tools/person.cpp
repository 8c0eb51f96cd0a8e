#include "person.h"

#include "platform/system.h"

#include <algorithm>
#include <system_error>

std::string PersonName() {
    for (const char* const variable : {"USER", "USERNAME"}) {
        const std::string name = EnvironmentValue(variable);
        if (!name.empty()) return name;
    }
    return "Player";
}

std::filesystem::path PersonPath(const std::string& name) {
    constexpr const char* HOME_FOLDERS[] = {"HOME", "USERPROFILE"};
    if (name == "~" || name.starts_with("~/") || name.starts_with("~\\")) {
        for (const char* const variable : HOME_FOLDERS) {
            const std::string home = EnvironmentValue(variable);
            if (!home.empty())
                return PathOf(home) / PathOf(name.substr(std::min<std::size_t>(2, name.size())));
        }
    }
    std::error_code error;
    const auto folder = PathOf(EnvironmentValue("KORVANE_CALLED_FROM"));
    return std::filesystem::absolute(folder / PathOf(name), error);
}
