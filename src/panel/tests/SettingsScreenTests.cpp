#include "panel/SettingsScreen.h"

#include <gtest/gtest.h>

#include <set>

#include "layout/LayoutStore.h"
#include "mascot/MascotCharacter.h"
#include "panel/Onboarding.h"
#include "panel/SensitivityScale.h"
#include "settings/AppSettings.h"
#include "settings/KeyedAccess.h"

namespace trotlet::panel {
namespace {

struct Session {
    settings::AppSettings settings{settings::DefaultsStore::ephemeral({}), false};
    layout::LayoutStore layout{settings.layout(), settings.monitoring()};
    SettingsFacts facts() const {
        SettingsFacts f;
        f.cards = cardFacts(layout);
        f.canResetLayout = layout.canReset();
        f.shortcutText = "Super+Alt+P";
        return f;
    }
};

std::vector<std::string> ids(SettingsSection section, const Session& s,
                             const SettingsFacts& facts) {
    std::vector<std::string> out;
    for (const auto& block : settingsBlocks(section, s.settings, facts))
        for (const auto& row : block.rows) out.push_back(row.id);
    return out;
}

bool shows(SettingsSection section, const Session& s, const std::string& id,
           const SettingsFacts& facts) {
    const auto all = ids(section, s, facts);
    return std::find(all.begin(), all.end(), id) != all.end();
}

TEST(SensitivityScale, TheSliderMapsBothWaysAndHoldsItsBounds) {
    const struct {
        double exponent;
        double position;
        int step;
    } rows[] = {
        {1.0, 0.0, 0},                     // the left end: speed in plain proportion to the load
        {0.75, 0.5, 5},                    // the default
        {0.5, 1.0, 10},  {0.25, 1.5, 15},  // the right end
        {1.3, -0.6, 0},  // a hand-edited exponent beyond the ends shows at the end
        {0.05, 1.9, 15},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.exponent);
        EXPECT_NEAR(SensitivityScale::positionFor(r.exponent), r.position, 1e-12);
        EXPECT_EQ(SensitivityScale::stepFor(r.exponent), r.step);
    }
    EXPECT_DOUBLE_EQ(SensitivityScale::exponentAt(0.5), 0.75);
    EXPECT_DOUBLE_EQ(SensitivityScale::exponentAt(-1), 1.0);
    EXPECT_DOUBLE_EQ(SensitivityScale::exponentAt(2), 0.25);
    for (int step = 0; step <= SensitivityScale::steps; ++step) {
        const double exponent = SensitivityScale::exponentAtStep(step);
        EXPECT_EQ(SensitivityScale::stepFor(exponent), step);
        EXPECT_NEAR(exponent, SensitivityScale::exponentAt(step * SensitivityScale::stepSize),
                    1e-12);
    }
}

TEST(SettingsScreen, RowsComeAndGoWithWhatTheyDependOn) {
    using S = SettingsSection;
    const struct {
        const char* name;
        S section;
        std::string row;
        std::function<void(Session&, SettingsFacts&)> change;
    } cases[] = {
        {"a threshold under its alert", S::notifications, "notifications.highCPUThreshold",
         [](Session& s, SettingsFacts&) { s.settings.notifications().setHighCPU(true); }},
        {"the battery level under its alert", S::notifications, "notifications.batteryLowThreshold",
         [](Session& s, SettingsFacts&) { s.settings.notifications().setBatteryLow(true); }},
        {"the reading's side once there is a reading", S::menuBar, "menuBar.textPosition",
         [](Session& s, SettingsFacts&) {
             s.settings.menuBar().setTextMetric(settings::MenuBarTextMetric::memory);
         }},
        {"the reading's side for the weather alone", S::menuBar, "menuBar.textPosition",
         [](Session& s, SettingsFacts&) { s.settings.weather().setShowInMenuBar(true); }},
        {"the recorder while the shortcut is on", S::general, "shortcut",
         [](Session& s, SettingsFacts&) { s.settings.general().setGlobalShortcutEnabled(true); }},
        {"Reset layout once the layout differs", S::monitoring, "resetLayout",
         [](Session& s, SettingsFacts& f) {
             s.layout.hiddenBinding().set({"gpu"});
             f = s.facts();
         }},
        {"the chosen place", S::weather, "place",
         [](Session&, SettingsFacts& f) { f.placeName = "Lyon, France"; }},
        {"Check for updates once an update engine is there", S::about, "checkForUpdates",
         [](Session&, SettingsFacts& f) { f.updatesAvailable = true; }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Session s;
        s.settings.notifications().setBatteryLow(false);
        s.settings.general().setGlobalShortcutEnabled(false);
        SettingsFacts facts = s.facts();
        EXPECT_FALSE(shows(c.section, s, c.row, facts));
        c.change(s, facts);
        EXPECT_TRUE(shows(c.section, s, c.row, facts));
    }
}

TEST(SettingsScreen, EveryKeyOfTheGroupsHasAControl) {
    Session s;
    // Switch on what hides rows, so every row is there at once.
    s.settings.notifications().setHighCPU(true);
    s.settings.menuBar().setTextMetric(settings::MenuBarTextMetric::cpu);
    std::set<std::string> written;
    for (std::size_t i = 0; i < SettingsSectionNames.size(); ++i)
        for (const auto& block : settingsBlocks(SettingsSection(i), s.settings, s.facts()))
            for (const auto& row : block.rows) {
                if (!row.key.empty()) written.insert(row.key);
                // The recorder writes both halves of the shortcut; the cards the layout.
                if (row.kind == RowKind::shortcut)
                    written.insert("general.globalShortcutModifiers");
                if (row.kind == RowKind::cardToggle) written.insert("layout.overview");
            }
    // The tour writes its own two flags; "Reset layout" empties the older hidden list.
    for (const char* key : {"general.hasCompletedOnboarding", "general.hasFinishedOnboardingOnce",
                            "monitoring.hiddenCards"})
        written.insert(key);
    const auto& all = settings::keyed::keys();
    EXPECT_EQ(written, std::set<std::string>(all.begin(), all.end()));
}

TEST(SettingsScreen, ChoicesKeepAHandEditedValueAndMatchNumbersByValue) {
    EXPECT_EQ(ladderWith({1, 2, 3, 5}, 2), (std::vector<double>{1, 2, 3, 5}));
    EXPECT_EQ(ladderWith({1, 2, 3, 5}, 1.5), (std::vector<double>{1, 1.5, 2, 3, 5}));
    EXPECT_EQ(ladderWith({1, 2, 3, 5}, 9), (std::vector<double>{1, 2, 3, 5, 9}));

    Session s;
    s.settings.monitoring().setUpdateInterval(4);
    const auto blocks = settingsBlocks(SettingsSection::monitoring, s.settings, s.facts());
    const SettingsRow& interval = blocks.front().rows.front();
    ASSERT_EQ(interval.key, "monitoring.updateInterval");
    ASSERT_EQ(interval.options.size(), 5u);
    EXPECT_EQ(interval.options[3].label, "4 s");
    EXPECT_EQ(interval.selected, 3u);
    EXPECT_EQ(optionMatching(interval.options, settings::SettingValue(2)), 1u) << "2 is 2.0";
    EXPECT_FALSE(optionMatching(interval.options, settings::SettingValue("2")));
}

TEST(SettingsScreen, WordsForTheShortcutThePlaceAndTheSearch) {
    EXPECT_FALSE(judgeShortcut(true, 0).accepted);
    EXPECT_FALSE(judgeShortcut(true, 512).accepted) << "Shift alone would take a capital letter";
    EXPECT_FALSE(judgeShortcut(false, 4096 | 2048).accepted);
    EXPECT_TRUE(judgeShortcut(true, 4096 | 2048).accepted);
    EXPECT_TRUE(judgeShortcut(true, 256).accepted);
    EXPECT_EQ(recordingPrompt(256 | 2048), "Super+Alt+…");

    weather::WeatherLocation berlin{1, "Berlin", "Land Berlin", "Germany", "DE", 52.5, 13.4, ""};
    EXPECT_EQ(placeWords(berlin), "Berlin, Germany");
    weather::WeatherLocation springfield{2, "Springfield", "Illinois", "United States", "US", 0, 0,
                                         ""};
    EXPECT_EQ(placeLine(springfield).where, "Illinois, United States");

    EXPECT_EQ(placeSearchLine(PlaceSearchPhase::empty, "Xq", ""), "No place called “Xq”");
    EXPECT_EQ(placeSearchLine(PlaceSearchPhase::failed, "Paris", "You're offline"),
              "You're offline");
    EXPECT_EQ(placeSearchLine(PlaceSearchPhase::results, "Paris", ""), "");
}

TEST(Onboarding, WalksFiveStepsAndFinishesForGood) {
    std::vector<OnboardingStep> walked{OnboardingStep::meet};
    while (auto next = nextStep(walked.back())) walked.push_back(*next);
    ASSERT_EQ(walked.size(), std::size_t(onboardingStepCount));
    EXPECT_FALSE(previousStep(OnboardingStep::meet));
    EXPECT_EQ(previousStep(OnboardingStep::gift), OnboardingStep::weather);
    EXPECT_EQ(giftCard(false, 100).title, "Welcome gift, click to open");
    EXPECT_EQ(giftCard(true, 100).title, "100 Fish are yours");
    EXPECT_FALSE(onboardingPage(OnboardingStep::gift, "Mochi", true).canSkip);

    Session s;
    EXPECT_TRUE(opensOnStart(s.settings.general()));
    finishOnboarding(s.settings.general());
    EXPECT_FALSE(opensOnStart(s.settings.general()));
    EXPECT_TRUE(s.settings.general().hasFinishedOnboardingOnce());
    EXPECT_EQ(dashed("menuBar"), "menu-bar");

    // The gaits run faster as the load rises, and only napping sleeps.
    const auto gaits = gaitShowcase(mascot::characterFor("cat"));
    ASSERT_EQ(gaits.size(), 6u);
    for (std::size_t i = 0; i < gaits.size(); ++i) {
        EXPECT_EQ(mascot::gaitForLoad(gaits[i].load), gaits[i].gait);
        if (i > 1) {
            EXPECT_GT(gaits[i].state.cyclesPerSecond, gaits[i - 1].state.cyclesPerSecond);
        }
    }
}

}  // namespace
}  // namespace trotlet::panel
