#include "menubar/LabelPlacement.h"

#include <array>

namespace trotlet::menubar {

namespace {

// Desktops whose bar is usually waybar (or another bar that keeps a wide icon's width).
constexpr std::array<std::string_view, 6> wideIconDesktops = {"sway",  "Hyprland", "river",
                                                               "wayfire", "niri",  "labwc"};

bool containsDesktop(std::string_view list, std::string_view name) {
    while (!list.empty()) {
        const auto colon = list.find(':');
        if (list.substr(0, colon) == name) return true;
        if (colon == std::string_view::npos) break;
        list.remove_prefix(colon + 1);
    }
    return false;
}

}  // namespace

LabelPlacement labelPlacementFor(std::string_view currentDesktop, std::string_view override) {
    if (override == "icon") return LabelPlacement::inIcon;
    if (override == "label") return LabelPlacement::label;
    for (std::string_view desktop : wideIconDesktops)
        if (containsDesktop(currentDesktop, desktop)) return LabelPlacement::inIcon;
    return LabelPlacement::label;
}

}  // namespace trotlet::menubar
