// The controller between the settings, the rules and the notifier. Decisions are observed
// through its `alertPosted` signal; the notifier itself is tested against a real bus elsewhere.
#include <gtest/gtest.h>

#include <QStringList>

#include "alerts/SyntheticSample.h"
#include "alerts/qt/NotificationController.h"
#include "settings/DefaultsStore.h"
#include "settings/MonitoringSettings.h"
#include "settings/NotificationSettings.h"

namespace trotlet::alerts {
namespace {

metrics::Timestamp at(double seconds) { return metrics::fromUnixSeconds(1'790'000'000 + seconds); }

struct ControllerTest : ::testing::Test {
    settings::DefaultsStore store = settings::DefaultsStore::ephemeral({"trotlet"});
    settings::NotificationSettings settings{store};
    QStringList posted;  // "identifier | title | body"

    void watch(NotificationController& controller) {
        QObject::connect(&controller, &NotificationController::alertPosted,
                         [this](const QString& id, const QString& title, const QString& body) {
                             posted << id + " | " + title + " | " + body;
                         });
    }
    static NotificationController::Options realData() { return {}; }
};

TEST_F(ControllerTest, PreferencesComeFromTheSettingsAndFollowTheirChanges) {
    settings.setBatteryLowThreshold(30);
    NotificationController controller(settings, nullptr, realData());
    EXPECT_EQ(controller.rules().preferences().batteryLowThreshold, 30);
    EXPECT_FALSE(controller.rules().preferences().highCPU);
    watch(controller);

    const auto busy = SyntheticSample{}.withCpu(0.97);
    controller.onSample(busy.snapshot(at(0)), at(0));
    controller.onSample(busy.snapshot(at(130)), at(130));
    EXPECT_TRUE(posted.isEmpty());

    // Switched on mid-way: the hold that the rules kept tracking counts, so it posts at once.
    settings.setHighCPU(true);
    settings.setHighCPUThreshold(0.95);
    EXPECT_TRUE(controller.rules().preferences().highCPU);
    EXPECT_EQ(controller.rules().preferences().highCPUThreshold, 0.95);
    controller.setMascotName("Kibo");
    controller.onSample(busy.snapshot(at(140)), at(140));
    ASSERT_EQ(posted.size(), 1);
    EXPECT_EQ(posted[0], "trotlet.highCPU | Kibo has the zoomies. | CPU at 97% for 2 min.");

    // Toggling a switch does not re-arm what already fired.
    settings.setHighCPU(false);
    settings.setHighCPU(true);
    controller.onSample(busy.snapshot(at(9000)), at(9000));
    EXPECT_EQ(posted.size(), 1);
}

TEST_F(ControllerTest, PanelOpenHoldsMetricAlertsAndDropsEvents) {
    NotificationController controller(settings, nullptr, realData());
    watch(controller);
    const auto low = SyntheticSample{}.withBattery(9);

    controller.setPanelOpen(true);
    controller.onSample(low.snapshot(at(0)), at(0));
    controller.onEvent(AchievementUnlocked{"Night Owl", "", 25}, at(1));
    EXPECT_TRUE(posted.isEmpty());
    controller.setPanelOpen(false);
    controller.onLatestSample(low.snapshot(at(2)));
    ASSERT_EQ(posted.size(), 1);
    EXPECT_TRUE(posted[0].startsWith("trotlet.batteryLow | Battery low: 9% | "));
    controller.onEvent(MascotPurchased{"Pip"}, at(3));
    ASSERT_EQ(posted.size(), 2);
    EXPECT_EQ(posted[1],
              "trotlet.purchase | Welcome home, Pip! | "
              "Your new friend is ready to run in the menu bar.");
}

TEST_F(ControllerTest, FakeDataKeepsMetricAlertsOffUnlessAskedFor) {
    struct Row {
        bool mock;
        bool fixture;
        const char* env;
        bool metricAlerts;
    };
    const Row rows[] = {
        {false, false, nullptr, true}, {true, false, nullptr, false}, {false, true, nullptr, false},
        {false, true, "1", true},      {true, false, "1", true},      {true, false, "0", false},
    };
    for (const Row& r : rows) {
        cli::LaunchOptions launch;
        launch.mock = r.mock;
        if (r.fixture) launch.fixture = metrics::MetricsFixture::hot;
        if (r.env)
            qputenv("TROTLET_NOTIFY_FAKE_DATA", r.env);
        else
            qunsetenv("TROTLET_NOTIFY_FAKE_DATA");
        EXPECT_EQ(NotificationController::Options::from(launch).metricAlerts, r.metricAlerts)
            << "mock " << r.mock << " fixture " << r.fixture << " env " << (r.env ? r.env : "-");
    }
    qunsetenv("TROTLET_NOTIFY_FAKE_DATA");

    NotificationController::Options off;
    off.metricAlerts = false;
    NotificationController controller(settings, nullptr, off);
    watch(controller);
    const auto hot = SyntheticSample{}.withTemperature(110, metrics::ThermalState::critical);
    controller.onSample(hot.snapshot(at(0)), at(0));
    EXPECT_TRUE(posted.isEmpty());
    controller.onEvent(AchievementUnlocked{"Night Owl", "", 25}, at(1));
    EXPECT_EQ(posted.size(), 1);  // the fun alerts are about the app, not the machine
}

TEST_F(ControllerTest, TemperatureFollowsTheUsersUnit) {
    settings::MonitoringSettings monitoring(store, false);
    NotificationController controller(settings, nullptr, realData());
    controller.followTemperatureUnit(monitoring);
    watch(controller);
    monitoring.setTemperatureUnit(menubar::TemperatureUnit::fahrenheit);
    controller.onSample(SyntheticSample{}.withTemperature(110).snapshot(at(0)), at(0));
    ASSERT_EQ(posted.size(), 1);
    EXPECT_TRUE(posted[0].contains("It's 230°F in here.")) << posted[0].toStdString();
}

TEST_F(ControllerTest, DebugLogHasOneLinePerDecision) {
    NotificationController::Options options;
    options.debugLog = true;
    NotificationController controller(settings, nullptr, options);
    const auto trouble = SyntheticSample{}.withBattery(9).withRootFree(3);
    ::testing::internal::CaptureStderr();
    controller.setPanelOpen(true);
    controller.onSample(trouble.snapshot(at(0)), at(0));
    controller.setPanelOpen(false);
    controller.onSample(trouble.snapshot(at(1)), at(1));
    const std::string log = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 4) << log;
    EXPECT_NE(
        log.find("sample (panel open) -> suppressed batteryLow: panel open (held, stays armed)"),
        std::string::npos)
        << log;
    EXPECT_NE(log.find("sample -> post diskAlmostFull: Root is almost full / "), std::string::npos)
        << log;
}

}  // namespace
}  // namespace trotlet::alerts
