#pragma once

#include <string_view>

namespace trotlet::app {

// With TROTLET_DEBUG_LOG=1 the app explains its panel, shortcut, hotkey and notification
// decisions on stderr, one "trotlet: " line each. Off otherwise, and cheap to call.
bool debugLogEnabled();
void debugLog(std::string_view line);

}  // namespace trotlet::app
