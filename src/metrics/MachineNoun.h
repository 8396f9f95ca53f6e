#pragma once

#include <string_view>

namespace trotlet::metrics {

// The word for this machine in user-facing texts ("Temperature sensors aren't available on this
// computer."). Kept in one place so every text names the platform the same way.
inline constexpr std::string_view kMachineNoun = "computer";

}  // namespace trotlet::metrics
