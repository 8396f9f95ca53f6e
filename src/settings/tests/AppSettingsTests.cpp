#include "settings/AppSettings.h"

#include <functional>

#include <gtest/gtest.h>

#include "settings/SettingsKeys.h"

namespace trotlet::settings {
namespace {

struct Session {
    explicit Session(std::map<std::string, SettingValue> values = {}, bool usesUS = false)
        : backing(std::make_shared<InMemorySettingsBacking>(std::move(values))),
          settings(DefaultsStore(backing), usesUS) {}
    std::shared_ptr<InMemorySettingsBacking> backing;
    AppSettings settings;
};

TEST(AppSettings, FreshUserReadsEveryDefault) {
    Session s;
    const AppSettings& a = s.settings;
    EXPECT_FALSE(a.general().launchAtLogin());
    EXPECT_EQ(a.general().appearance(), AppearancePreference::system);
    EXPECT_TRUE(a.general().globalShortcutEnabled());
    EXPECT_EQ(a.general().globalShortcutKeyCode(), 35);            // P
    EXPECT_EQ(a.general().globalShortcutModifiers(), 256 + 2048);  // Command-Option
    EXPECT_FALSE(a.general().checkInReminders());
    EXPECT_FALSE(a.general().hasCompletedOnboarding());
    EXPECT_FALSE(a.general().hasFinishedOnboardingOnce());

    EXPECT_DOUBLE_EQ(a.monitoring().updateInterval(), 2.0);
    EXPECT_EQ(a.monitoring().temperatureUnit(), TemperatureUnit::celsius);
    EXPECT_EQ(a.monitoring().networkUnit(), NetworkUnit::bytes);
    EXPECT_TRUE(a.monitoring().showPerCoreCPU());
    EXPECT_TRUE(a.monitoring().hiddenCards().empty());
    EXPECT_EQ(a.monitoring().processListSize(), 8);

    EXPECT_TRUE(a.menuBar().showMascot());
    EXPECT_EQ(a.menuBar().textMetric(), MenuBarTextMetric::none);
    EXPECT_EQ(a.menuBar().textPosition(), MenuBarTextPosition::right);
    EXPECT_EQ(a.menuBar().speedSource(), LoadSource::cpu);
    EXPECT_DOUBLE_EQ(a.menuBar().speedSensitivity(), 0.75);
    EXPECT_EQ(a.menuBar().maxFPS(), 24);
    EXPECT_TRUE(a.menuBar().saveEnergy());
    EXPECT_FALSE(a.menuBar().pauseAnimation());
    EXPECT_FALSE(a.menuBar().animateWithReduceMotion());

    EXPECT_TRUE(a.mascot().stateReactions());
    EXPECT_TRUE(a.mascot().sleepWhenIdle());
    EXPECT_TRUE(a.mascot().showMoodLine());
    EXPECT_TRUE(a.mascot().goldenFish());

    EXPECT_FALSE(a.notifications().highCPU());
    EXPECT_DOUBLE_EQ(a.notifications().highCPUThreshold(), 0.9);
    EXPECT_TRUE(a.notifications().highTemperature());
    EXPECT_TRUE(a.notifications().batteryLow());
    EXPECT_EQ(a.notifications().batteryLowThreshold(), 15);
    EXPECT_FALSE(a.notifications().batteryFull());
    EXPECT_TRUE(a.notifications().diskAlmostFull());
    EXPECT_EQ(a.notifications().diskFreeThresholdGB(), 10);
    EXPECT_TRUE(a.notifications().memoryCritical());
    EXPECT_TRUE(a.notifications().achievementUnlocked());

    EXPECT_FALSE(a.weather().encodedLocation());
    EXPECT_TRUE(a.weather().showInHeader());
    EXPECT_FALSE(a.weather().showInMenuBar());

    EXPECT_FALSE(a.layout().overview());

    EXPECT_EQ(s.backing->writeCount(), 0) << "reading the defaults writes nothing";
}

TEST(AppSettings, TemperatureDefaultFollowsTheMeasurementSystem) {
    EXPECT_EQ(Session({}, true).settings.monitoring().temperatureUnit(),
              TemperatureUnit::fahrenheit);
    EXPECT_EQ(Session({}, false).settings.monitoring().temperatureUnit(), TemperatureUnit::celsius);
    // An unknown unit keeps the locale's default rather than a fixed one.
    EXPECT_EQ(
        Session({{keys::temperatureUnit, "kelvin"}}, true).settings.monitoring().temperatureUnit(),
        TemperatureUnit::fahrenheit);
    EXPECT_EQ(
        Session({{keys::temperatureUnit, "kelvin"}}, false).settings.monitoring().temperatureUnit(),
        TemperatureUnit::celsius);
    // A stored choice beats the locale.
    EXPECT_EQ(
        Session({{keys::temperatureUnit, "celsius"}}, true).settings.monitoring().temperatureUnit(),
        TemperatureUnit::celsius);
}

// A stored value of the wrong type reads as the default and stays in the store untouched.
TEST(AppSettings, WrongTypesReadAsTheDefaultAndAreNotRewritten) {
    struct Case {
        std::string key;
        SettingValue stored;
        std::function<bool(const AppSettings&)> readsDefault;
    };
    const std::vector<Case> cases = {
        {keys::updateInterval, "5", [](auto& a) { return a.monitoring().updateInterval() == 2.0; }},
        {keys::updateInterval, true,
         [](auto& a) { return a.monitoring().updateInterval() == 2.0; }},
        {keys::speedSensitivity, false,
         [](auto& a) { return a.menuBar().speedSensitivity() == 0.75; }},
        {keys::maxFPS, true, [](auto& a) { return a.menuBar().maxFPS() == 24; }},
        {keys::maxFPS, 30.5, [](auto& a) { return a.menuBar().maxFPS() == 24; }},
        {keys::maxFPS, 1e12, [](auto& a) { return a.menuBar().maxFPS() == 24; }},
        {keys::maxFPS, "30", [](auto& a) { return a.menuBar().maxFPS() == 24; }},
        {keys::showMascot, 0, [](auto& a) { return a.menuBar().showMascot(); }},
        {keys::showMascot, "false", [](auto& a) { return a.menuBar().showMascot(); }},
        {keys::highCPU, 1, [](auto& a) { return !a.notifications().highCPU(); }},
        {keys::hiddenCards, "gpu", [](auto& a) { return a.monitoring().hiddenCards().empty(); }},
        {keys::hiddenCards, SettingValue::array({"gpu", 3}),
         [](auto& a) { return a.monitoring().hiddenCards().empty(); }},
        {keys::textMetric, 2,
         [](auto& a) { return a.menuBar().textMetric() == MenuBarTextMetric::none; }},
        {keys::textPosition, true,
         [](auto& a) { return a.menuBar().textPosition() == MenuBarTextPosition::right; }},
        {keys::networkUnit, 1,
         [](auto& a) { return a.monitoring().networkUnit() == NetworkUnit::bytes; }},
        {keys::weatherLocation, 42, [](auto& a) { return !a.weather().encodedLocation(); }},
        {keys::layoutOverview, 7, [](auto& a) { return !a.layout().overview(); }},
        {keys::hasCompletedOnboarding, "yes",
         [](auto& a) { return !a.general().hasCompletedOnboarding(); }},
        {keys::globalShortcutKeyCode, "P",
         [](auto& a) { return a.general().globalShortcutKeyCode() == 35; }},
        {keys::batteryLowThreshold, SettingValue::object(),
         [](auto& a) { return a.notifications().batteryLowThreshold() == 15; }},
    };
    for (const auto& c : cases) {
        Session s(std::map<std::string, SettingValue>{{c.key, SettingValue(c.stored)}});
        EXPECT_TRUE(c.readsDefault(s.settings)) << c.key << " = " << c.stored.dump();
        EXPECT_EQ(s.backing->writeCount(), 0) << c.key;
        EXPECT_EQ(s.backing->values().at(c.key), c.stored) << c.key;
    }
}

TEST(AppSettings, NumbersCrossBetweenIntegerAndDouble) {
    Session s({{keys::updateInterval, 5},
               {keys::maxFPS, 30.0},
               {keys::highCPUThreshold, 1},
               {keys::processListSize, 12u}});
    EXPECT_DOUBLE_EQ(s.settings.monitoring().updateInterval(), 5.0);
    EXPECT_EQ(s.settings.menuBar().maxFPS(), 30);
    EXPECT_DOUBLE_EQ(s.settings.notifications().highCPUThreshold(), 1.0);
    EXPECT_EQ(s.settings.monitoring().processListSize(), 12);
}

TEST(AppSettings, UnknownEnumStringsFallBackAsTheTableSays) {
    struct Case {
        std::string key;
        std::string stored;
        std::function<bool(const AppSettings&)> check;
    };
    const std::vector<Case> cases = {
        {keys::textMetric, "sparkles",
         [](auto& a) { return a.menuBar().textMetric() == MenuBarTextMetric::none; }},
        {keys::textMetric, "CPU",
         [](auto& a) { return a.menuBar().textMetric() == MenuBarTextMetric::none; }},
        {keys::textMetric, "cpuTemperature",
         [](auto& a) { return a.menuBar().textMetric() == MenuBarTextMetric::cpuTemperature; }},
        {keys::textPosition, "center",
         [](auto& a) { return a.menuBar().textPosition() == MenuBarTextPosition::right; }},
        {keys::textPosition, "left",
         [](auto& a) { return a.menuBar().textPosition() == MenuBarTextPosition::left; }},
        {keys::speedSource, "disk",
         [](auto& a) { return a.menuBar().speedSource() == LoadSource::cpu; }},
        {keys::speedSource, "busiest",
         [](auto& a) { return a.menuBar().speedSource() == LoadSource::busiest; }},
        {keys::networkUnit, "BITS",
         [](auto& a) { return a.monitoring().networkUnit() == NetworkUnit::bytes; }},
        {keys::networkUnit, "bits",
         [](auto& a) { return a.monitoring().networkUnit() == NetworkUnit::bits; }},
        {keys::appearance, "sepia",
         [](auto& a) { return a.general().appearance() == AppearancePreference::system; }},
        {keys::appearance, "dark",
         [](auto& a) { return a.general().appearance() == AppearancePreference::dark; }},
    };
    for (const auto& c : cases) {
        Session s(std::map<std::string, SettingValue>{{c.key, SettingValue(c.stored)}});
        EXPECT_TRUE(c.check(s.settings)) << c.key << " = " << c.stored;
    }
}

// Every setter writes its own key with the raw value, and a fresh read gives it back.
TEST(AppSettings, ChangedValuesSurviveARead) {
    struct Case {
        std::string key;
        SettingValue expected;
        std::function<void(AppSettings&)> change;
        std::function<bool(const AppSettings&)> check;
    };
    const std::vector<Case> cases = {
        {keys::launchAtLogin, true, [](auto& a) { a.general().setLaunchAtLogin(true); },
         [](auto& a) { return a.general().launchAtLogin(); }},
        {keys::appearance, "light",
         [](auto& a) { a.general().setAppearance(AppearancePreference::light); },
         [](auto& a) { return a.general().appearance() == AppearancePreference::light; }},
        {keys::globalShortcutModifiers, 4352,
         [](auto& a) { a.general().setGlobalShortcutModifiers(4352); },
         [](auto& a) { return a.general().globalShortcutModifiers() == 4352; }},
        {keys::updateInterval, 0.5, [](auto& a) { a.monitoring().setUpdateInterval(0.5); },
         [](auto& a) { return a.monitoring().updateInterval() == 0.5; }},
        {keys::temperatureUnit, "fahrenheit",
         [](auto& a) { a.monitoring().setTemperatureUnit(TemperatureUnit::fahrenheit); },
         [](auto& a) { return a.monitoring().temperatureUnit() == TemperatureUnit::fahrenheit; }},
        {keys::networkUnit, "bits",
         [](auto& a) { a.monitoring().setNetworkUnit(NetworkUnit::bits); },
         [](auto& a) { return a.monitoring().networkUnit() == NetworkUnit::bits; }},
        {keys::hiddenCards, SettingValue::array({"gpu", "battery"}),
         [](auto& a) {
             a.monitoring().setHiddenCards({"gpu", "battery"});
         },
         [](auto& a) {
             return a.monitoring().hiddenCards() == std::vector<std::string>{"gpu", "battery"};
         }},
        {keys::textMetric, "battery",
         [](auto& a) { a.menuBar().setTextMetric(MenuBarTextMetric::battery); },
         [](auto& a) { return a.menuBar().textMetric() == MenuBarTextMetric::battery; }},
        {keys::speedSource, "network",
         [](auto& a) { a.menuBar().setSpeedSource(LoadSource::network); },
         [](auto& a) { return a.menuBar().speedSource() == LoadSource::network; }},
        {keys::maxFPS, 60, [](auto& a) { a.menuBar().setMaxFPS(60); },
         [](auto& a) { return a.menuBar().maxFPS() == 60; }},
        {keys::goldenFish, false, [](auto& a) { a.mascot().setGoldenFish(false); },
         [](auto& a) { return !a.mascot().goldenFish(); }},
        {keys::diskFreeThresholdGB, 25,
         [](auto& a) { a.notifications().setDiskFreeThresholdGB(25); },
         [](auto& a) { return a.notifications().diskFreeThresholdGB() == 25; }},
        {keys::highCPUThreshold, 1.5, [](auto& a) { a.notifications().setHighCPUThreshold(1.5); },
         [](auto& a) { return a.notifications().highCPUThreshold() == 1.5; }},  // never clamped
        {keys::weatherLocation, "{\"name\":\"Oslo\"}",
         [](auto& a) { a.weather().setEncodedLocation("{\"name\":\"Oslo\"}"); },
         [](auto& a) { return a.weather().encodedLocation() == "{\"name\":\"Oslo\"}"; }},
        {keys::layoutOverview, "{\"version\":1,\"cards\":[]}",
         [](auto& a) { a.layout().setOverview("{\"version\":1,\"cards\":[]}"); },
         [](auto& a) { return a.layout().overview() == "{\"version\":1,\"cards\":[]}"; }},
    };
    for (const auto& c : cases) {
        Session s;
        c.change(s.settings);
        ASSERT_TRUE(s.backing->values().count(c.key)) << c.key;
        EXPECT_EQ(s.backing->values().at(c.key), c.expected) << c.key;
        EXPECT_EQ(s.backing->values().at(c.key).type(), c.expected.type()) << c.key;
        EXPECT_EQ(s.backing->writeCount(), 1) << c.key;
        AppSettings reread(DefaultsStore(s.backing), false);
        EXPECT_TRUE(c.check(reread)) << c.key;
    }
}

TEST(AppSettings, ObserversHearOnlyRealChangesBeforeTheWrite) {
    Session s;
    MenuBarSettings& menuBar = s.settings.menuBar();
    std::vector<std::string> heard;
    std::optional<SettingValue> storedWhenHeard;
    menuBar.observe([&](const std::string& key) {
        heard.push_back(key);
        storedWhenHeard = s.settings.store().object(key);
        EXPECT_EQ(menuBar.maxFPS(), 30) << "observers read the new value";
    });

    menuBar.setMaxFPS(24);  // the current value
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(s.backing->writeCount(), 0);

    menuBar.setMaxFPS(30);
    ASSERT_EQ(heard, std::vector<std::string>{keys::maxFPS});
    EXPECT_FALSE(storedWhenHeard) << "observers are told before the key is written";
    EXPECT_EQ(s.settings.store().object(keys::maxFPS), SettingValue(30));

    menuBar.setMaxFPS(30);
    EXPECT_EQ(heard.size(), 1u);
    EXPECT_EQ(s.backing->writeCount(), 1);
}

TEST(AppSettings, UnobservedObserversHearNothing) {
    Session s;
    int calls = 0;
    auto id = s.settings.mascot().observe([&](const std::string&) { ++calls; });
    s.settings.mascot().setSleepWhenIdle(false);
    s.settings.mascot().unobserve(id);
    s.settings.mascot().setSleepWhenIdle(true);
    EXPECT_EQ(calls, 1);
    // Other groups' observers are separate.
    s.settings.general().setLaunchAtLogin(true);
    EXPECT_EQ(calls, 1);
}

TEST(AppSettings, ClearingOptionalValuesRemovesTheKey) {
    Session s({{keys::weatherLocation, "x"}, {keys::layoutOverview, "{}"}});
    s.settings.weather().setEncodedLocation(std::nullopt);
    s.settings.layout().setOverview(std::nullopt);
    EXPECT_TRUE(s.backing->values().empty());
    s.settings.layout().setOverview(std::nullopt);
    EXPECT_EQ(s.backing->writeCount(), 2);
}

TEST(AppSettings, LayoutDocumentStoredAsAnObjectStillReads) {
    Session s({{keys::layoutOverview, SettingValue::parse(R"({"version":1,"cards":[]})")}});
    ASSERT_TRUE(s.settings.layout().overview());
    EXPECT_EQ(SettingValue::parse(*s.settings.layout().overview()),
              SettingValue::parse(R"({"version":1,"cards":[]})"));
}

TEST(AppSettings, FinishedOnceInheritsTheCompletedFlagWhenMissing) {
    struct Case {
        std::map<std::string, SettingValue> stored;
        bool finishedOnce;
    };
    const Case cases[] = {
        {{}, false},
        {{{keys::hasCompletedOnboarding, true}}, true},  // a user from before the key existed
        {{{keys::hasCompletedOnboarding, false}}, false},
        {{{keys::hasCompletedOnboarding, true}, {keys::hasFinishedOnboardingOnce, false}}, false},
        {{{keys::hasCompletedOnboarding, false}, {keys::hasFinishedOnboardingOnce, true}}, true},
        {{{keys::hasCompletedOnboarding, true}, {keys::hasFinishedOnboardingOnce, "no"}}, true},
    };
    for (const auto& c : cases) {
        Session s(c.stored);
        EXPECT_EQ(s.settings.general().hasFinishedOnboardingOnce(), c.finishedOnce)
            << SettingValue(c.stored).dump();
        EXPECT_EQ(s.backing->writeCount(), 0);
    }
}

TEST(AppSettings, SessionOnboardingRunsItsHookOnceEvenWhenAlreadyDone) {
    for (bool alreadyDone : {false, true}) {
        Session s({{keys::hasCompletedOnboarding, alreadyDone}});
        int calls = 0;
        s.settings.general().observe([&](const std::string& key) {
            EXPECT_EQ(key, keys::hasCompletedOnboarding);
            ++calls;
        });
        s.settings.general().completeOnboardingForSession();
        EXPECT_TRUE(s.settings.general().hasCompletedOnboarding());
        EXPECT_EQ(calls, 1) << alreadyDone;
        EXPECT_EQ(s.backing->values().at(keys::hasCompletedOnboarding), SettingValue(true));
    }
}

}  // namespace
}  // namespace trotlet::settings
