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

void ReceiveFeature(std::string_view arguments) {
    arguments.remove_prefix(std::min<std::size_t>(1, arguments.size()));
    const std::string_view name = NextWord(arguments);
    const auto feature = std::ranges::find(FEATURES, name, &Feature::name);
    if (feature == std::end(FEATURES)) return;
    if (name == "san" && std::string_view(feature->value) == "1") engine_state.san_notation = 1;
}
