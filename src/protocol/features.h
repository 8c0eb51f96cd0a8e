// The features that the engine announces to the front end.
#pragma once

#include <string_view>

void SendFeatures();

// Handles the front end's answer to a feature, a line that begins with "accepted" or "rejected".
void ReceiveFeature(std::string_view line);
