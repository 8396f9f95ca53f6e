#include "platform/freedesktop/GlobalShortcut.h"
#include "platform/freedesktop/GlobalShortcutKeys.h"

#include "FreedesktopTestSupport.h"

#include <gtest/gtest.h>

#include <set>

namespace trotlet::platform {
namespace {

TEST(GlobalShortcutKeys, TranslatesCarbonCodesAndModifiers) {
    const struct {
        int keyCode;
        int modifiers;
        unsigned long keysym;
        unsigned int x11;
        const char* trigger;
        const char* display;
    } cases[] = {
        {35, 2304, 0x70, 64 | 8, "LOGO+ALT+p", "Super+Alt+P"},  // the default
        {0, 256, 0x61, 64, "LOGO+a", "Super+A"},
        {12, 4096 | 512, 0x71, 4 | 1, "CTRL+SHIFT+q", "Ctrl+Shift+Q"},
        {18, 2048, 0x31, 8, "ALT+1", "Alt+1"},
        {29, 256 | 4096, 0x30, 64 | 4, "LOGO+CTRL+0", "Super+Ctrl+0"},
        {49, 4096 | 2048, 0x20, 4 | 8, "CTRL+ALT+space", "Ctrl+Alt+Space"},
        {122, 256, 0xffbe, 64, "LOGO+F1", "Super+F1"},
        {111, 512 | 2048, 0xffc9, 8 | 1, "ALT+SHIFT+F12", "Alt+Shift+F12"},
        {126, 256 | 512 | 2048 | 4096, 0xff52, 64 | 4 | 8 | 1, "LOGO+CTRL+ALT+SHIFT+Up", "Super+Ctrl+Alt+Shift+Up"},
        {27, 2048, 0x2d, 8, "ALT+minus", "Alt+-"},
        {53, 4096, 0xff1b, 4, "CTRL+Escape", "Ctrl+Esc"},
    };
    for (const auto& c : cases) {
        const auto keys = GlobalShortcutKeys::fromCarbon(c.keyCode, c.modifiers);
        ASSERT_TRUE(keys) << c.keyCode;
        EXPECT_EQ(keys->keysym, c.keysym) << c.keyCode;
        EXPECT_EQ(keys->x11Modifiers, c.x11) << c.keyCode;
        EXPECT_EQ(keys->portalTrigger, c.trigger);
        EXPECT_EQ(keys->displayText, c.display);
    }
}

TEST(GlobalShortcutKeys, RefusesUnknownKeysAndBareKeys) {
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(35, 0));       // P alone would steal the key
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(35, 1 << 16)); // Caps Lock is not a modifier here
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(10, 256));     // ISO section key: not in the table
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(-1, 256));
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(200, 256));
}

TEST(GlobalShortcutKeys, EveryLetterAndDigitHasExactlyOneCode) {
    std::set<unsigned long> seen;
    for (int code = 0; code < 128; ++code) {
        if (const auto keys = GlobalShortcutKeys::fromCarbon(code, 256)) {
            EXPECT_TRUE(seen.insert(keys->keysym).second) << "keysym twice, code " << code;
        }
    }
    for (unsigned long c = 'a'; c <= 'z'; ++c) EXPECT_TRUE(seen.count(c)) << char(c);
    for (unsigned long c = '0'; c <= '9'; ++c) EXPECT_TRUE(seen.count(c)) << char(c);
}

TEST(GlobalShortcut, ReportsWhyItIsUnavailable) {
    testing::ensureApplication();
    GlobalShortcut none(QDBusConnection(QString()), GlobalShortcut::Backend::none);
    none.setShortcut(35, 2304);
    EXPECT_EQ(none.state(), GlobalShortcut::State::unavailable);
    EXPECT_FALSE(none.unavailableReason().isEmpty());
    EXPECT_EQ(none.displayText(), QStringLiteral("Super+Alt+P"));

    // A desktop without the portal: the bus answers that nobody owns the name.
    testing::PrivateBus bus;
    ASSERT_TRUE(bus.isRunning());
    GlobalShortcut portal(bus.connect(QStringLiteral("app")), GlobalShortcut::Backend::portal);
    portal.setShortcut(35, 2304);
    EXPECT_EQ(portal.state(), GlobalShortcut::State::pending);
    ASSERT_TRUE(testing::waitUntil([&] { return portal.state() == GlobalShortcut::State::unavailable; }));
    EXPECT_EQ(portal.unavailableReason(), QStringLiteral("This desktop does not offer global shortcuts to apps"));

    portal.setShortcut(35, 0);
    EXPECT_EQ(portal.state(), GlobalShortcut::State::unavailable);
    portal.clear();
    EXPECT_EQ(portal.state(), GlobalShortcut::State::off);
}

}  // namespace
}  // namespace trotlet::platform
