#pragma once

#include <string_view>

namespace trotlet::settings {

// Words for the machine and its system in user-facing text, kept in one place.
inline constexpr std::string_view machineNoun = "computer";
inline constexpr std::string_view systemName = "Linux";

}  // namespace trotlet::settings
