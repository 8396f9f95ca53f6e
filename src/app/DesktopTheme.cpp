#include "app/DesktopTheme.h"

#include <array>
#include <cstddef>

namespace trotlet::app {

namespace {

// The desktops for which Qt 6 tries the GTK 3 theme plugin first.
constexpr std::array<std::string_view, 6> kGtkDesktops = {"GNOME", "X-CINNAMON", "UNITY",
                                                          "MATE",  "XFCE",       "LXDE"};

// Qt upper-cases the desktop names before it compares them.
bool isGtkDesktop(std::string_view name) {
    for (std::string_view gtk : kGtkDesktops) {
        if (name.size() != gtk.size()) continue;
        bool same = true;
        for (std::size_t i = 0; i < name.size() && same; ++i) {
            const char c = name[i];
            same = (c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) == gtk[i];
        }
        if (same) return true;
    }
    return false;
}

}  // namespace

bool shouldSkipGtkThemePlugin(std::string_view currentDesktop, std::string_view chosenTheme) {
    if (!chosenTheme.empty()) return false;
    while (!currentDesktop.empty()) {
        const auto colon = currentDesktop.find(':');
        if (isGtkDesktop(currentDesktop.substr(0, colon))) return true;
        if (colon == std::string_view::npos) break;
        currentDesktop.remove_prefix(colon + 1);
    }
    return false;
}

}  // namespace trotlet::app
