#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace trotlet::panel {

// Where the panel window opens, decided without a window system so that multi-monitor
// layouts, bottom trays and hosts that report nonsense can be replayed in tests.
//
// All coordinates are Qt's global logical coordinates (device pixels at scale 1).

struct PanelPoint {
    int x = 0;
    int y = 0;
    friend bool operator==(const PanelPoint&, const PanelPoint&) = default;
};

struct PanelSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const PanelSize&, const PanelSize&) = default;
};

// Half-open on the right and bottom: a 1920 wide screen at x 0 holds x 0 to 1919.
struct PanelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    bool contains(PanelPoint p) const {
        return p.x >= x && p.x < right() && p.y >= y && p.y < bottom();
    }
    friend bool operator==(const PanelRect&, const PanelRect&) = default;
};

struct PanelScreen {
    PanelRect geometry;
    // The geometry less the desktop's own panels and docks; empty when the desktop reports none.
    PanelRect available;
    bool primary = false;
};

enum class SessionType { x11, wayland };

// The session as Qt's platform plugin names it: "wayland" (and its variants such as
// "wayland-egl") is Wayland; xcb and everything else, offscreen included, position windows
// the X11 way.
SessionType sessionTypeForPlatform(std::string_view platformName);

struct PanelPlacementRequest {
    SessionType session = SessionType::x11;
    std::vector<PanelScreen> screens;
    // The point the tray host reported for the click. Hosts send 0,0 or points on no screen
    // at all; such a point counts as absent.
    std::optional<PanelPoint> click;
    // Where the pointer is, when the window system tells.
    std::optional<PanelPoint> cursor;
    // The point of the last tray click that placed the panel. An open without a click (the
    // menu, the shortcut, a signal) still drops from the tray when this point is on the
    // screen chosen for it.
    std::optional<PanelPoint> lastTrayClick;
    PanelSize panel;
};

enum class PanelAnchor {
    belowPoint,      // X11: hanging under the click (or the last one), centred on it
    abovePoint,      // X11: standing on it, for a tray at the bottom of the screen
    topRightCorner,  // no usable click, or Wayland
};

struct PanelPlacement {
    // Index into the request's screens; absent only when there are none.
    std::optional<std::size_t> screen;
    PanelAnchor anchor = PanelAnchor::topRightCorner;
    // The window's frame: its top-left, and its size shrunk to the screen's available area
    // when the panel is bigger than that.
    PanelRect frame;
    // False on Wayland, where compositors ignore a client's position for top-level windows
    // and usually pick the output too (sway opens windows on the focused one); there only the
    // size takes effect, and the screen is a hint for the scale the panel first renders at.
    bool positionHonoured = true;
};

inline constexpr int kPanelClickGap = 4;      // between the click point and the panel's edge
inline constexpr int kPanelCornerMargin = 8;  // from the available area's corner
// A click this close to the screen's top or bottom edge is taken to be on a bar along that edge.
inline constexpr int kPanelEdgeBand = 64;
// The thickness assumed for such a bar when nothing reserves its strip.
inline constexpr int kPanelAssumedBar = 32;

PanelPlacement placePanel(const PanelPlacementRequest& request);

}  // namespace trotlet::panel
