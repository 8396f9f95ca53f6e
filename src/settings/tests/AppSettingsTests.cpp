#include "settings/AppSettings.h"

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
