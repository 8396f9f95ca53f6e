#include <gtest/gtest.h>

#include "menubar/LabelPlacement.h"
#include "menubar/StickyWidth.h"

using namespace trotlet::menubar;

TEST(LabelPlacement, WideIconOnlyWhereTheBarKeepsTheWidth) {
    struct Case {
        const char* desktop;
        const char* override;
        LabelPlacement expected;
    };
    const Case cases[] = {
        {"ubuntu:GNOME", "", LabelPlacement::label},
        {"GNOME", "", LabelPlacement::label},
        {"KDE", "", LabelPlacement::label},
        {"XFCE", "", LabelPlacement::label},
        {"X-Cinnamon", "", LabelPlacement::label},
        {"sway", "", LabelPlacement::inIcon},
        {"Hyprland", "", LabelPlacement::inIcon},
        {"wlroots:sway", "", LabelPlacement::inIcon},
        {"swayfx", "", LabelPlacement::label},  // a whole name, not a prefix
        {"", "", LabelPlacement::label},
        {"KDE", "icon", LabelPlacement::inIcon},
        {"sway", "label", LabelPlacement::label},
        {"sway", "bogus", LabelPlacement::inIcon},
    };
    for (const Case& c : cases)
        EXPECT_EQ(labelPlacementFor(c.desktop, c.override), c.expected)
            << c.desktop << " / " << c.override;
}

TEST(StickyWidth, HoldsAWideTextThenLetsGo) {
    StickyWidth sticky(10);
    // Within the sample width: the sample guide is reserved.
    auto r = sticky.update("↓8.8 MB/s", 60, "↓980 KB/s", 58, 0);
    EXPECT_EQ(r.guide, "↓8.8 MB/s");
    // Wider than every sample: grows to the text.
    r = sticky.update("↓8.8 MB/s", 60, "↓1000 KB/s", 66, 2);
    EXPECT_EQ(r.guide, "↓1000 KB/s");
    EXPECT_EQ(r.width, 66);
    // Narrow again: held for the hold time after the last wide text...
    r = sticky.update("↓8.8 MB/s", 60, "↓12 MB/s", 50, 4);
    EXPECT_EQ(r.width, 66);
    r = sticky.update("↓8.8 MB/s", 60, "↓12 MB/s", 50, 11.9);
    EXPECT_EQ(r.width, 66);
    // ...then shrinks back to the sample width, never below it.
    r = sticky.update("↓8.8 MB/s", 60, "↓12 MB/s", 50, 12);
    EXPECT_EQ(r.guide, "↓8.8 MB/s");
    EXPECT_EQ(r.width, 60);
}

TEST(StickyWidth, ResetDropsTheHeldWidth) {
    StickyWidth sticky(10);
    sticky.update("100%", 30, "100%", 30, 0);
    sticky.update("100%", 30, "1000%", 40, 1);
    sticky.reset();
    EXPECT_EQ(sticky.update("100%", 30, "5%", 12, 2).width, 30);
}
