#pragma once

#include <string_view>

namespace trotlet::menubar {

// Where the ticker text can be seen, by tray host. Every host gets the text in the tooltip,
// and the item always publishes it as its Ayatana label (GNOME's AppIndicator extension shows
// that beside the icon; KDE, XFCE and Cinnamon ignore it). Drawing the text into the icon only
// helps where the host keeps a wide icon's width: waybar and the other wlroots bars do, while
// KDE and XFCE squeeze every icon into a square, where the text would be unreadable.
enum class LabelPlacement { label, inIcon };

// `currentDesktop` is $XDG_CURRENT_DESKTOP (colon-separated, e.g. "ubuntu:GNOME");
// `override` is $TROTLET_TRAY_LABEL ("label" or "icon"), which wins when it is one of those.
LabelPlacement labelPlacementFor(std::string_view currentDesktop, std::string_view override);

}  // namespace trotlet::menubar
