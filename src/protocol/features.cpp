#include "protocol/features.h"

#include "game/enginestate.h"
#include "notation/text.h"
#include "platform/channel.h"

#include <algorithm>
#include <string>

namespace {

struct Feature {
    char name[32];
    char value[32];
};

constexpr Feature FEATURES[] = {
    {"ping", "1"},     {"setboard", "1"}, {"playother", "1"}, {"san", "1"},
    {"usermove", "1"}, {"time", "1"},     {"draw", "1"},      {"sigint", "0"},
    {"sigterm", "0"},  {"reuse", "1"},    {"analyze", "1"},   {"variants", "\"normal\""},
    {"colors", "0"},   {"ics", "1"},      {"pause", "1"},     {"name", "1"},
};

} // namespace

void SendFeatures() {
    SendCommand("feature done=0");
    SendCommand("feature myname=\"" + std::string(PROGRAM_NAME) + " " +
                std::string(PROGRAM_VERSION) + "\"");
    for (const Feature& feature : FEATURES) {
        SendCommand(std::string("feature ") + feature.name + "=" + feature.value);
    }
    SendCommand("feature done=1");
}

void ReceiveFeature(std::string_view line) {
    constexpr std::string_view ACCEPTED = "accepted";
    std::string_view rest = line.substr(std::min(ACCEPTED.size() + 1, line.size()));
    const std::string_view name = NextWord(rest);
    const auto feature = std::ranges::find_if(
        FEATURES, [&](const Feature& row) { return std::string_view(row.name) == name; });
    if (feature == std::end(FEATURES)) return;
    if (name == "san" && std::string_view(feature->value) == "1" && line.starts_with(ACCEPTED)) {
        engine_state.san_notation = 1;
    }
}
