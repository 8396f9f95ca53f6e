#include "panel/PanelPlacement.h"

#include <algorithm>

namespace trotlet::panel {

namespace {

std::optional<std::size_t> screenContaining(const std::vector<PanelScreen>& screens,
                                            const std::optional<PanelPoint>& point) {
    if (!point) return std::nullopt;
    for (std::size_t i = 0; i < screens.size(); ++i)
        if (screens[i].geometry.contains(*point)) return i;
    return std::nullopt;
}

std::size_t primaryScreen(const std::vector<PanelScreen>& screens) {
    const auto found = std::find_if(screens.begin(), screens.end(),
                                    [](const PanelScreen& s) { return s.primary; });
    return found == screens.end() ? 0 : std::size_t(found - screens.begin());
}

// Some X11 setups report no work area at all; the whole screen is then the best guess.
PanelRect usableArea(const PanelScreen& screen) {
    return screen.available.isEmpty() ? screen.geometry : screen.available;
}

// Moves a span of `length` starting at `start` into [areaStart, areaEnd). A span longer than
// the area starts at the area's start, so the panel's top-left corner (its header and close
// controls) stays reachable.
int keepInside(int start, int length, int areaStart, int areaEnd) {
    return std::max(areaStart, std::min(start, areaEnd - length));
}

}  // namespace

SessionType sessionTypeForPlatform(std::string_view platformName) {
    return platformName.starts_with("wayland") ? SessionType::wayland : SessionType::x11;
}

PanelPlacement placePanel(const PanelPlacementRequest& request) {
    PanelPlacement placement;
    placement.positionHonoured = request.session == SessionType::x11;
    const PanelSize wanted{std::max(0, request.panel.width), std::max(0, request.panel.height)};
    if (request.screens.empty()) {
        placement.frame = PanelRect{0, 0, wanted.width, wanted.height};
        return placement;
    }

    const auto clickScreen = screenContaining(request.screens, request.click);
    const auto cursorScreen = screenContaining(request.screens, request.cursor);
    const std::size_t index = clickScreen    ? *clickScreen
                              : cursorScreen ? *cursorScreen
                                             : primaryScreen(request.screens);
    placement.screen = index;

    const PanelScreen& screen = request.screens[index];
    const PanelRect area = usableArea(screen);
    const int width = std::min(wanted.width, area.width);
    const int height = std::min(wanted.height, area.height);
    placement.frame.width = width;
    placement.frame.height = height;

    int x = area.right() - width - kPanelCornerMargin;
    // A work area that reaches the screen's top may still have an unreserved bar there.
    int y = area.y > screen.geometry.y ? area.y + kPanelCornerMargin
                                       : area.y + std::max(kPanelCornerMargin, kPanelAssumedBar);
    placement.anchor = PanelAnchor::topRightCorner;
    // Wayland compositors place top-level windows themselves, and the point a host reports
    // there is rarely in global coordinates, so only X11 hangs the panel off the click.
    std::optional<PanelPoint> anchorPoint;
    if (clickScreen)
        anchorPoint = request.click;
    else if (screenContaining(request.screens, request.lastTrayClick) == index)
        anchorPoint = request.lastTrayClick;
    if (request.session == SessionType::x11 && anchorPoint) {
        const PanelPoint p = *anchorPoint;
        x = p.x - width / 2;
        // A click in the lower half means the tray sits at the bottom: open upwards so the
        // panel never covers the tray it came from. The work area's edge wins over the gap
        // when the click lands inside the desktop's own panel strip.
        const PanelRect& whole = screen.geometry;
        if (p.y >= whole.y + whole.height / 2) {
            placement.anchor = PanelAnchor::abovePoint;
            int bottom = std::min(p.y - kPanelClickGap, area.bottom());
            // Without a window manager nothing reserves the bar's strip, so the work area
            // reaches the screen's edge. Tray icons sit mid-bar: mirror the click's distance
            // from the edge to find where the bar begins, and assume a bar at least as thick
            // as the usual ones, since a click on the icon's outer half mirrors short.
            const int fromEdge = whole.bottom() - 1 - p.y;
            if (area.bottom() >= whole.bottom() && fromEdge < kPanelEdgeBand)
                bottom =
                    std::min(bottom, whole.bottom() - std::max(2 * fromEdge + 1, kPanelAssumedBar));
            y = bottom - height;
        } else {
            placement.anchor = PanelAnchor::belowPoint;
            y = std::max(p.y + kPanelClickGap, area.y);
            const int fromEdge = p.y - whole.y;
            if (area.y <= whole.y && fromEdge < kPanelEdgeBand)
                y = std::max(y, whole.y + std::max(2 * fromEdge + 1, kPanelAssumedBar));
        }
    }
    placement.frame.x = keepInside(x, width, area.x, area.right());
    placement.frame.y = keepInside(y, height, area.y, area.bottom());
    return placement;
}

}  // namespace trotlet::panel
