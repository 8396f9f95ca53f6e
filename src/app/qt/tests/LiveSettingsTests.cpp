// The live app in this process, on a private session bus, with its settings in a throwaway home:
// what Settings changes reaches the running engines at once, and a first run's tour hands over
// the welcome gift exactly once.
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/qt/AppModel.h"
#include "app/qt/LiveApp.h"
#include "app/qt/PanelHost.h"
#include "mascot/qt/MascotAnimator.h"
#include "metrics/qt/MetricsStore.h"
#include "platform/freedesktop/TrayItem.h"
#include "platform/freedesktop/tests/FreedesktopTestSupport.h"
#include "shop/qt/ShopRuntime.h"
#include "ui/controls/ChoiceControl.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ToggleSwitch.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/panel/PanelWindow.h"
#include "ui/settings/SettingsPageView.h"
#include "ui/settings/SettingsView.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::app {
namespace {

using platform::testing::waitUntil;

// One bus for the process: Qt keeps the first session bus it connects to. The test environment
// stops its daemon when the tests are done.
class BusEnvironment : public ::testing::Environment {
public:
    platform::testing::PrivateBus& bus() {
        if (!bus_) bus_ = std::make_unique<platform::testing::PrivateBus>();
        return *bus_;
    }
    void TearDown() override { bus_.reset(); }

private:
    std::unique_ptr<platform::testing::PrivateBus> bus_;
};

BusEnvironment* const environment =
    static_cast<BusEnvironment*>(::testing::AddGlobalTestEnvironment(new BusEnvironment));

platform::testing::PrivateBus& bus() { return environment->bus(); }

class LiveSettings : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(bus().isRunning());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus().address().toUtf8());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus().address().toUtf8());
        qputenv("TROTLET_QA_NO_HOTKEY", "1");
        for (const char* dir : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
            const QString path = home.filePath(QString::fromLatin1(dir));
            QDir().mkpath(path);
            qputenv(dir, path.toUtf8());
        }
        platform::testing::ensureApplication();
        options.fixture = metrics::MetricsFixture::normal;
        options.idleSeconds = 0;
    }

    std::unique_ptr<LiveApp> start() {
        auto app = std::make_unique<LiveApp>(options, std::vector<std::string>{"trotlet"});
        app->openPanel(QStringLiteral("test"));
        return app;
    }

    static void settle() {
        for (int i = 0; i < 4; ++i) QCoreApplication::processEvents();
    }

    static ui::SettingsPageView& open(LiveApp& app, panel::SettingsSection section) {
        app.showPanelTab(panel::PanelTab::settings, QStringLiteral("test"));
        app.panel().settingsView()->openSection(section);
        settle();
        return *app.panel().settingsView()->page();
    }

    static int welcomeGifts(LiveApp& app) {
        int n = 0;
        for (const auto& entry : app.model().shop().engine().wallet().ledger())
            n += entry.reason.kind() == shop::LedgerReason::Kind::welcomeGift;
        return n;
    }

    QTemporaryDir home;
    cli::LaunchOptions options;
};

TEST_F(LiveSettings, IntervalReadingAppearanceAndSaveEnergyTakeEffectAtOnce) {
    options.skipOnboarding = true;
    auto app = start();
    ASSERT_TRUE(app->isPanelOpen());
    EXPECT_FALSE(app->panel().isShowingOnboarding());
    EXPECT_EQ(app->panel().settingsView(), nullptr) << "built before its tab was shown";

    auto* interval =
        open(*app, panel::SettingsSection::monitoring).row("monitoring.updateInterval")->choice();
    interval->setFocus();
    QKeyEvent first(QEvent::KeyPress, Qt::Key_Home, Qt::NoModifier);
    QCoreApplication::sendEvent(interval, &first);
    EXPECT_DOUBLE_EQ(app->model().store().plan().intervalSec, 1.0);

    EXPECT_TRUE(app->model().tray().label().isEmpty());
    auto* reading = open(*app, panel::SettingsSection::menuBar).row("menuBar.textMetric")->choice();
    QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QCoreApplication::sendEvent(reading, &right);
    EXPECT_EQ(app->model().tray().label(), QStringLiteral("23%"));

    app->panel().settingsView()->page()->row("menuBar.saveEnergy")->toggle()->activate();
    EXPECT_FALSE(app->model().animator().settings().frame.saveEnergy);

    const bool darkBefore = app->panel().theme().theme().isDark();
    auto* appearance =
        open(*app, panel::SettingsSection::general).row("general.appearance")->choice();
    appearance->setFocus();
    QKeyEvent toDark(QEvent::KeyPress, darkBefore ? Qt::Key_Right : Qt::Key_End, Qt::NoModifier);
    QCoreApplication::sendEvent(appearance, &toDark);
    EXPECT_NE(app->panel().theme().theme().isDark(), darkBefore);
    EXPECT_FALSE(
        QFile::exists(home.filePath(QStringLiteral("XDG_CONFIG_HOME/trotlet/settings.json"))))
        << "an in-memory session writes no settings file";
}

TEST_F(LiveSettings, AFirstRunOpensTheTourAndItsGiftComesOnceEvenAcrossAClosedPanel) {
    auto app = start();
    ASSERT_TRUE(app->panel().isShowingOnboarding());
    EXPECT_EQ(welcomeGifts(*app), 0) << "the gift waits for the tour";
    auto tour = [&] { return qobject_cast<ui::OnboardingView*>(app->panel().window().cover()); };
    for (int step = 0; step < 4; ++step) tour()->primaryButton().activate();
    ASSERT_EQ(tour()->step(), panel::OnboardingStep::gift);
    tour()->giftBox().activate();
    tour()->giftBox().activate();
    EXPECT_EQ(welcomeGifts(*app), 1);
    EXPECT_GE(app->model().shop().engine().wallet().balance(), 100);

    // Closed mid-way, released, opened again: the tour waits at its gift, already opened.
    app->closePanel(QStringLiteral("test"));
    app->panel().release();
    app->openPanel(QStringLiteral("test"));
    ASSERT_TRUE(tour());
    EXPECT_EQ(tour()->step(), panel::OnboardingStep::gift);
    tour()->giftBox().activate();
    EXPECT_EQ(tour()->primaryButton().text(), QStringLiteral("Start"));
    tour()->primaryButton().activate();
    settle();
    EXPECT_FALSE(app->panel().isShowingOnboarding());
    EXPECT_EQ(welcomeGifts(*app), 1);
    EXPECT_TRUE(app->settings().general().hasFinishedOnboardingOnce());

    // Shown again from Settings, it starts over and opens nothing twice.
    open(*app, panel::SettingsSection::general).row("showOnboarding")->button()->activate();
    ASSERT_TRUE(tour());
    EXPECT_EQ(tour()->step(), panel::OnboardingStep::meet);
    tour()->skipButton().activate();
    settle();
    EXPECT_EQ(welcomeGifts(*app), 1);
    app.reset();

    QFile file(home.filePath(QStringLiteral("XDG_CONFIG_HOME/trotlet/settings.json")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto saved = nlohmann::json::parse(file.readAll().toStdString());
    EXPECT_EQ(saved.value("general.hasCompletedOnboarding", false), true);
    EXPECT_EQ(saved.value("general.hasFinishedOnboardingOnce", false), true);
}

TEST_F(LiveSettings, SkippingTheTourStillHandsOverTheGift) {
    auto app = start();
    auto* tour = qobject_cast<ui::OnboardingView*>(app->panel().window().cover());
    ASSERT_TRUE(tour);
    tour->skipButton().activate();
    settle();
    EXPECT_EQ(welcomeGifts(*app), 1);
    EXPECT_FALSE(app->panel().isShowingOnboarding());
    EXPECT_TRUE(app->settings().general().hasCompletedOnboarding());
}

}  // namespace
}  // namespace trotlet::app
