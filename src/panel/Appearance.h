#pragma once

#include <cstdint>
#include <optional>

#include "settings/SettingsEnums.h"

namespace trotlet::panel {

enum class ColorScheme { light, dark };

// The desktop's wish as the settings portal publishes it (org.freedesktop.appearance
// color-scheme): 0 no preference, 1 prefer dark, 2 prefer light. Other values are unknown.
using PortalColorScheme = std::uint32_t;

// Which palette the panel paints with. "light" and "dark" force it; "system" follows the
// portal when it states a preference, and otherwise the toolkit palette the desktop gave us
// (a dark window colour means a dark theme), so desktops without the portal still match.
ColorScheme resolveColorScheme(settings::AppearancePreference preference,
                               std::optional<PortalColorScheme> portal, bool paletteIsDark);

}  // namespace trotlet::panel
