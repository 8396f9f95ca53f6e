#pragma once

#include <string_view>

namespace trotlet::app {

// On GNOME-family desktops Qt prefers its GTK 3 theme plugin, which maps GTK, GDK, cairo and
// pango into the process: about 13 MB resident for a tray app that draws its own panel and
// uses no native dialogs. Unless the user picked a Qt platform theme, the app starts without
// desktop settings there, so Qt falls back to its built-in generic theme.
//
// `currentDesktop` is XDG_CURRENT_DESKTOP (a colon-separated list), `chosenTheme` is
// QT_QPA_PLATFORMTHEME; either may be empty.
bool shouldSkipGtkThemePlugin(std::string_view currentDesktop, std::string_view chosenTheme);

}  // namespace trotlet::app
