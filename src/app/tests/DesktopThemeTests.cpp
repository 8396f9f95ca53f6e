#include "app/DesktopTheme.h"

#include <gtest/gtest.h>

namespace trotlet::app {
namespace {

TEST(DesktopTheme, SkipsTheGtkPluginOnlyWhereQtWouldLoadItAndNobodyChose) {
    struct Case {
        const char* desktop;
        const char* chosen;
        bool skip;
    };
    const Case cases[] = {
        {"XFCE", "", true},
        {"GNOME", "", true},
        {"ubuntu:GNOME", "", true},      // the GTK name need not come first
        {"Budgie:GNOME", "", true},
        {"X-Cinnamon", "", true},        // Qt upper-cases the names first
        {"xfce", "", true},
        {"KDE", "", false},              // Qt's own KDE theme loads no toolkit
        {"sway", "", false},
        {"", "", false},
        {":", "", false},
        {"GNOMEX", "", false},
        {"XFCE", "gtk3", false},         // the user asked for it
        {"GNOME", "qt6ct", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(shouldSkipGtkThemePlugin(c.desktop, c.chosen), c.skip)
            << '"' << c.desktop << "\" with theme \"" << c.chosen << '"';
}

}  // namespace
}  // namespace trotlet::app
