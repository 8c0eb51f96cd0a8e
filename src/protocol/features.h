// The features that the engine announces to the front end.
#pragma once

#include <string_view>

void SendFeatures();

// Notes that the front end has accepted the feature that the arguments name.
void ReceiveFeature(std::string_view arguments);
