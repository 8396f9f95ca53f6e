#include "platform/freedesktop/IdleMonitor.h"

#include "FreedesktopFakeServices.h"
#include "FreedesktopTestSupport.h"

#include <gtest/gtest.h>

namespace trotlet::platform {
namespace {

using testing::waitUntil;

class IdleMonitorTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::ensureApplication();
        ASSERT_TRUE(bus.isRunning());
        appBus = bus.connect(QStringLiteral("app"));
    }
    IdleMonitor::Options noX11() {
        IdleMonitor::Options options;
        options.tryX11 = false;
        return options;
    }
    testing::PrivateBus bus;
    QDBusConnection appBus{QString()};
};

TEST_F(IdleMonitorTest, PrefersMutterAndConvertsItsMilliseconds) {
    testing::FakeMutterIdleMonitor mutter;
    testing::FakeScreenSaver screenSaver;
    ASSERT_TRUE(mutter.start(bus.connect(QStringLiteral("mutter"))));
    ASSERT_TRUE(screenSaver.start(bus.connect(QStringLiteral("saver"))));
    mutter.idleMs = 93'500;
    screenSaver.idleSeconds = 7;

    IdleMonitor monitor(appBus, noX11());
    EXPECT_FALSE(monitor.idleSeconds());  // nothing before the first answer
    monitor.refresh();
    ASSERT_TRUE(waitUntil([&] { return monitor.idleSeconds().has_value(); }));
    EXPECT_EQ(monitor.source(), IdleMonitor::Source::mutter);
    EXPECT_DOUBLE_EQ(*monitor.idleSeconds(), 93.5);

    // A refresh while a query is in flight does not stack a second one.
    mutter.idleMs = 0;
    monitor.refresh();
    monitor.refresh();
    ASSERT_TRUE(waitUntil([&] { return monitor.idleSeconds() == 0.0; }));
    testing::spinFor(50);
    EXPECT_EQ(mutter.calls, 2);
}

TEST_F(IdleMonitorTest, FallsBackToTheScreenSaverThenToNothing) {
    auto screenSaver = std::make_unique<testing::FakeScreenSaver>();
    ASSERT_TRUE(screenSaver->start(bus.connect(QStringLiteral("saver"))));
    screenSaver->idleSeconds = 42;

    IdleMonitor monitor(appBus, noX11());
    monitor.refresh();
    ASSERT_TRUE(waitUntil([&] { return monitor.idleSeconds().has_value(); }));
    EXPECT_EQ(monitor.source(), IdleMonitor::Source::screenSaver);
    EXPECT_DOUBLE_EQ(*monitor.idleSeconds(), 42.0);

    // The service goes away: the reading becomes absent, never a stale or zero value.
    screenSaver.reset();
    bus.disconnect(QStringLiteral("saver"));
    monitor.refresh();
    ASSERT_TRUE(waitUntil([&] { return !monitor.idleSeconds().has_value(); }));
    monitor.refresh();
    ASSERT_TRUE(waitUntil([&] { return monitor.exhausted(); }));
    EXPECT_EQ(monitor.source(), IdleMonitor::Source::none);
    EXPECT_FALSE(monitor.idleSeconds());
}

TEST_F(IdleMonitorTest, FixedSecondsWinOverEverySource) {
    testing::FakeMutterIdleMonitor mutter;
    ASSERT_TRUE(mutter.start(bus.connect(QStringLiteral("mutter"))));
    IdleMonitor::Options options = noX11();
    options.fixedSeconds = 600;
    IdleMonitor monitor(appBus, options);
    monitor.refresh();
    testing::spinFor(50);
    EXPECT_EQ(monitor.source(), IdleMonitor::Source::fixed);
    EXPECT_EQ(monitor.idleSeconds(), 600.0);
    EXPECT_EQ(mutter.calls, 0);
}

TEST(IdleMonitorOptions, ReadsTheOverrideAndTheSessionType) {
    const struct {
        const char* idle;
        const char* display;
        const char* wayland;
        std::optional<double> fixed;
        bool x11;
    } cases[] = {
        {"120", ":0", "", 120.0, true},
        {"", ":0", "wayland-0", std::nullopt, false},
        {"-3", "", "", std::nullopt, false},
        {"abc", ":1", "", std::nullopt, true},
        {"0", ":1", "", 0.0, true},
    };
    for (const auto& c : cases) {
        qputenv("TROTLET_QA_IDLE_SECONDS", c.idle);
        qputenv("DISPLAY", c.display);
        qputenv("WAYLAND_DISPLAY", c.wayland);
        qunsetenv("XDG_SESSION_TYPE");
        const auto options = IdleMonitor::Options::fromEnvironment();
        EXPECT_EQ(options.fixedSeconds, c.fixed) << c.idle;
        EXPECT_EQ(options.tryX11, c.x11) << c.display << " " << c.wayland;
    }
    qunsetenv("TROTLET_QA_IDLE_SECONDS");
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
}

}  // namespace
}  // namespace trotlet::platform
