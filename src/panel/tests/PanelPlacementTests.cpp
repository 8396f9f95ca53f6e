#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "panel/PanelPlacement.h"

namespace trotlet::panel {

void PrintTo(const PanelRect& r, std::ostream* os) {
    *os << r.x << "," << r.y << " " << r.width << "x" << r.height;
}

namespace {

constexpr PanelSize kPanel{360, 240};

PanelScreen screen(PanelRect geometry, PanelRect available, bool primary = false) {
    return PanelScreen{geometry, available, primary};
}

// A 1920x1080 screen at the origin with a 28 px desktop panel along the top.
const PanelScreen kTopBar = screen({0, 0, 1920, 1080}, {0, 28, 1920, 1052}, true);
// The same screen with the desktop panel along the bottom.
const PanelScreen kBottomBar = screen({0, 0, 1920, 1080}, {0, 0, 1920, 1052}, true);
// A larger screen to the right of kTopBar with its own 32 px top panel.
const PanelScreen kRightTall = screen({1920, 0, 2560, 1440}, {1920, 32, 2560, 1408});
// A screen left of the origin, lower down, with a bottom panel: negative coordinates.
const PanelScreen kLeftLow = screen({-1280, 200, 1280, 1024}, {-1280, 200, 1280, 992});
// An 800x600 screen with a top bar, smaller than a large panel.
const PanelScreen kSmall = screen({0, 0, 800, 600}, {0, 28, 800, 572}, true);
// The 1920x1080 screen with nothing reserved: a bar the window manager does not know about.
const PanelScreen kBare = screen({0, 0, 1920, 1080}, {0, 0, 1920, 1080}, true);
// A left-hand vertical desktop panel 48 px wide.
const PanelScreen kSideBar = screen({0, 0, 1920, 1080}, {48, 0, 1872, 1080}, true);

// One placement: the request (the panel's size is kPanel unless given) and what it must give.
struct Case {
    const char* name;
    PanelPlacementRequest request;
    struct {
        std::optional<std::size_t> screen;
        PanelAnchor anchor;
        PanelRect frame;
    } want;
};

std::string anchorName(PanelAnchor a) {
    switch (a) {
        case PanelAnchor::belowPoint:
            return "belowPoint";
        case PanelAnchor::abovePoint:
            return "abovePoint";
        case PanelAnchor::topRightCorner:
            return "topRightCorner";
    }
    return "?";
}

// Opens from a click on the tray, from the cursor, and, without either (the menu, the
// shortcut), from the last tray click.
TEST(PanelPlacement, PlacesThePanelForEachLayout) {
    using P = PanelPoint;
    const auto x11 = SessionType::x11;
    const auto wl = SessionType::wayland;
    const auto below = PanelAnchor::belowPoint;
    const auto above = PanelAnchor::abovePoint;
    const auto corner = PanelAnchor::topRightCorner;
    const auto none = std::nullopt;
    const std::vector<Case> cases = {
        {"centred under a click mid-bar; the bar's strip pushes it below the bar",
         {x11, {kTopBar}, P{960, 14}},
         {0, below, {780, 28, 360, 240}}},
        {"a click near the right edge keeps the panel on screen",
         {x11, {kTopBar}, P{1900, 14}},
         {0, below, {1560, 28, 360, 240}}},
        {"a click near the left edge keeps the panel on screen",
         {x11, {kTopBar}, P{5, 14}},
         {0, below, {0, 28, 360, 240}}},
        {"an unreserved top bar (no window manager): below the bar the click sits in the middle of",
         {x11, {kBare}, P{960, 14}},
         {0, below, {780, 32, 360, 240}}},
        {"an unreserved top bar clicked near its bottom edge: twice the distance",
         {x11, {kBare}, P{960, 22}},
         {0, below, {780, 45, 360, 240}}},
        {"a click well away from the edges keeps just the gap",
         {x11, {kBare}, P{960, 100}},
         {0, below, {780, 104, 360, 240}}},
        {"an unreserved bottom bar: above the bar the click sits in the middle of",
         {x11, {kBare}, P{960, 1066}},
         {0, above, {780, 808, 360, 240}}},
        {"a bottom tray opens upwards, above the bar's strip",
         {x11, {kBottomBar}, P{960, 1066}},
         {0, above, {780, 812, 360, 240}}},
        {"a bottom tray clicked above its strip keeps the gap",
         {x11, {kBare}, P{960, 1000}},
         {0, above, {780, 756, 360, 240}}},
        {"the second monitor's tray, near its right edge",
         {x11, {kTopBar, kRightTall}, P{4400, 16}},
         {1, below, {4120, 32, 360, 240}}},
        {"the first pixel of the second monitor belongs to it",
         {x11, {kTopBar, kRightTall}, P{1920, 16}},
         {1, below, {1920, 32, 360, 240}}},
        {"the last pixel of the first monitor belongs to it",
         {x11, {kTopBar, kRightTall}, P{1919, 16}},
         {0, below, {1560, 28, 360, 240}}},
        {"negative coordinates and a bottom bar on a lower left monitor",
         {x11, {kTopBar, kLeftLow}, P{-1270, 1210}},
         {1, above, {-1280, 952, 360, 240}}},
        {"stacked monitors: the lower one's bottom tray",
         {x11, {kBottomBar, screen({0, 1080, 1920, 1080}, {0, 1080, 1920, 1052})}, P{100, 2150}},
         {1, above, {0, 1892, 360, 240}}},
        {"a left side bar: the panel stays right of it",
         {x11, {kSideBar}, P{24, 300}},
         {0, below, {48, 304, 360, 240}}},
        {"a click on no screen is ignored; the cursor's screen gets the corner",
         {x11, {kTopBar, kRightTall}, P{9000, 9000}, P{3000, 700}},
         {1, corner, {4112, 40, 360, 240}}},
        {"0,0 on a layout that starts right of the origin is no click",
         {x11, {screen({1920, 0, 1920, 1080}, {1920, 28, 1920, 1052}, true)}, P{-1, -1}},
         {0, corner, {3472, 36, 360, 240}}},
        {"no click and no cursor: the primary screen's corner",
         {x11, {kRightTall, kTopBar}},
         {1, corner, {1552, 36, 360, 240}}},
        {"no primary flagged: the first screen",
         {x11, {kRightTall, screen({0, 0, 1920, 1080}, {0, 28, 1920, 1052})}},
         {0, corner, {4112, 40, 360, 240}}},
        {"a panel larger than the screen shrinks to its work area",
         {x11, {kSmall}, P{700, 10}, none, none, {1000, 700}},
         {0, below, {0, 28, 800, 572}}},
        {"a screen that reports no work area uses its whole geometry",
         {x11, {screen({0, 0, 1280, 800}, {0, 0, 0, 0}, true)}},
         {0, corner, {912, 32, 360, 240}}},
        {"a bar reserved only at the bottom: the corner still clears a top bar",
         {x11, {kBottomBar}},
         {0, corner, {1552, 32, 360, 240}}},
        {"wayland: the click's screen, but the corner, never the point",
         {wl, {kTopBar, kRightTall}, P{4400, 16}},
         {1, corner, {4112, 40, 360, 240}}},
        {"wayland: the cursor's screen when the host sent 0,0 outside the layout",
         {wl, {kRightTall, kTopBar}, none, P{100, 100}},
         {1, corner, {1552, 36, 360, 240}}},
        {"wayland: the primary screen when nothing is known",
         {wl, {kRightTall, kTopBar}},
         {1, corner, {1552, 36, 360, 240}}},
        {"no screens at all: the size alone",
         {x11, {}, P{10, 10}},
         {none, corner, {0, 0, 360, 240}}},
        {"the menu's Settings item after a click on the top tray",
         {x11, {kTopBar}, none, P{500, 500}, P{1900, 14}},
         {0, below, {1560, 28, 360, 240}}},
        {"the shortcut on the screen of a bottom tray",
         {x11, {kBottomBar}, none, none, P{960, 1066}},
         {0, above, {780, 812, 360, 240}}},
        {"the cursor on another screen than the tray: that screen's corner",
         {x11, {kTopBar, kRightTall}, none, P{3000, 700}, P{1900, 14}},
         {1, corner, {4112, 40, 360, 240}}},
        {"a new click wins over the last one",
         {x11, {kTopBar, kRightTall}, P{4400, 16}, none, P{1900, 14}},
         {1, below, {4120, 32, 360, 240}}},
        {"a last click on no screen (a monitor unplugged since) is forgotten",
         {x11, {kTopBar}, none, none, P{3000, 14}},
         {0, corner, {1552, 36, 360, 240}}},
        {"wayland keeps the corner",
         {wl, {kTopBar}, none, none, P{1900, 14}},
         {0, corner, {1552, 36, 360, 240}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PanelPlacementRequest request = c.request;
        if (request.panel == PanelSize{}) request.panel = kPanel;
        const PanelPlacement got = placePanel(request);
        EXPECT_EQ(got.screen, c.want.screen);
        EXPECT_EQ(anchorName(got.anchor), anchorName(c.want.anchor));
        EXPECT_EQ(got.frame, c.want.frame);
        EXPECT_EQ(got.positionHonoured, request.session == SessionType::x11);
    }
}

// Every click on a grid over a three-monitor layout: the panel lies inside its screen's work
// area, on the screen clicked, and never covers the click point (the tray).
TEST(PanelPlacement, NeverLeavesTheScreenOrCoversTheClick) {
    const std::vector<PanelScreen> layout = {kTopBar, kRightTall, kLeftLow};
    int placed = 0;
    for (int x = -1400; x < 4600; x += 37) {
        for (int y = -50; y < 1500; y += 23) {
            const PanelPoint click{x, y};
            const PanelPlacement got =
                placePanel({SessionType::x11, layout, click, std::nullopt, std::nullopt, kPanel});
            ASSERT_TRUE(got.screen);
            const PanelScreen& s = layout[*got.screen];
            const PanelRect& f = got.frame;
            SCOPED_TRACE(std::to_string(x) + "," + std::to_string(y));
            EXPECT_GE(f.x, s.available.x);
            EXPECT_GE(f.y, s.available.y);
            EXPECT_LE(f.right(), s.available.right());
            EXPECT_LE(f.bottom(), s.available.bottom());
            if (!s.geometry.contains(click)) {
                EXPECT_EQ(got.anchor, PanelAnchor::topRightCorner);
                continue;
            }
            ++placed;
            EXPECT_FALSE(f.contains(click));
            if (got.anchor == PanelAnchor::belowPoint) {
                EXPECT_GT(f.y, click.y);
            } else if (got.anchor == PanelAnchor::abovePoint) {
                EXPECT_LE(f.bottom(), click.y);
            }
            EXPECT_NE(got.anchor, PanelAnchor::topRightCorner);
        }
    }
    EXPECT_GT(placed, 1000);
}

TEST(PanelPlacement, SessionTypeFollowsThePlatformPlugin) {
    const std::vector<std::pair<std::string, SessionType>> table = {
        {"wayland", SessionType::wayland},
        {"wayland-egl", SessionType::wayland},
        {"xcb", SessionType::x11},
        {"offscreen", SessionType::x11},
        {"", SessionType::x11},
        {"minimal", SessionType::x11},
    };
    for (const auto& [name, expected] : table)
        EXPECT_EQ(sessionTypeForPlatform(name), expected) << name;
}

}  // namespace
}  // namespace trotlet::panel
