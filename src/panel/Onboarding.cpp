#include "panel/Onboarding.h"

#include <cctype>

#include "mascot/MascotCharacter.h"
#include "mascot/MascotMotion.h"
#include "mascot/MascotStateMachine.h"
#include "settings/GeneralSettings.h"
#include "settings/Platform.h"

namespace trotlet::panel {

OnboardingPage onboardingPage(OnboardingStep step, const std::string& mascotName, bool giftOpened) {
    const std::string machine(settings::machineNoun);
    switch (step) {
        case OnboardingStep::meet:
            return {"Meet " + mascotName,
                    mascotName + " lives in your menu bar and runs at the speed of your " +
                        machine + ". The busier it gets, the faster " + mascotName + " goes.",
                    "Continue", false, true};
        case OnboardingStep::menuBar:
            return {"A number beside " + mascotName,
                    "Add one short reading to the menu bar, or keep " + mascotName +
                        " on its own. You can change it any time in Settings.",
                    "Continue", true, true};
        case OnboardingStep::notifications:
            return {"Heads-up, not noise",
                    "Trotlet speaks up only when something needs you, and never more than a few "
                    "times an hour.",
                    "Continue", true, true};
        case OnboardingStep::weather:
            return {"Weather, if you like",
                    "Pick a city to see its sky in the panel. You can skip this and add one "
                    "later.",
                    "Continue", true, true};
        case OnboardingStep::gift:
            return {giftOpened ? "You're all set" : "One more thing",
                    giftOpened ? "Spend Fish in the Shop on new friends. You earn more just by "
                                 "being at your " +
                                     machine + ", and by checking in each day."
                               : "Every new friend of " + mascotName +
                                     " gets a welcome gift. Open it to start your Fish "
                                     "collection.",
                    giftOpened ? "Start" : "Open the gift", true, !giftOpened};
    }
    return {};
}

std::optional<OnboardingStep> nextStep(OnboardingStep step) {
    if (step == OnboardingStep::gift) return std::nullopt;
    return OnboardingStep(int(step) + 1);
}

std::optional<OnboardingStep> previousStep(OnboardingStep step) {
    if (step == OnboardingStep::meet) return std::nullopt;
    return OnboardingStep(int(step) - 1);
}

std::vector<GaitShowcase> gaitShowcase(const mascot::MascotCharacter& character) {
    struct Row {
        mascot::Gait gait;
        const char* name;
        const char* meaning;
        double load;
    };
    // A load in the middle of each gait's range, so each row shows the gait's typical pace.
    static const Row rows[] = {
        {mascot::Gait::napping, "Napping", "Nothing much going on", 0.02},
        {mascot::Gait::strolling, "Strolling", "Light work: mail, music, a few tabs", 0.12},
        {mascot::Gait::trotting, "Trotting", "Steady work", 0.32},
        {mascot::Gait::running, "Running", "Busy: a build, a video call", 0.58},
        {mascot::Gait::sprinting, "Sprinting", "Working hard", 0.8},
        {mascot::Gait::zoomies, "Zoomies", "Everything at full tilt", 0.97},
    };
    std::vector<GaitShowcase> out;
    for (const Row& row : rows) {
        GaitShowcase g;
        g.gait = row.gait;
        g.name = row.name;
        g.meaning = row.meaning;
        g.load = row.load;
        g.state.load = row.load;
        g.state.gait = row.gait;
        g.state.mood = row.gait == mascot::Gait::napping ? mascot::MascotMood::sleeping
                                                         : mascot::MascotMood::running;
        std::uint8_t band = 0;
        for (double threshold : character.loadBands)
            if (row.load >= threshold) ++band;
        g.state.loadBand = band;
        g.state.cyclesPerSecond = mascot::cyclesPerSecond(g.state.mood, row.load, 0.75, character);
        g.framesPerSecond = mascot::menuBarFPS(g.state, character, mascot::FrameEnvironment{});
        out.push_back(g);
    }
    return out;
}

GiftCard giftCard(bool granted, long long fish) {
    if (!granted) return {"Welcome gift, click to open", "Something fishy is inside", false};
    return {std::to_string(fish) + " Fish are yours", "And your first achievement: Hello, Human",
            true};
}

namespace {

// The rows of Settings with these ids, in this order; ids that do not apply now are left out.
std::vector<SettingsRow> rowsWithIds(const settings::AppSettings& settings,
                                     const SettingsFacts& facts,
                                     std::initializer_list<std::string_view> ids) {
    std::vector<SettingsRow> all;
    for (std::size_t i = 0; i < SettingsSectionNames.size(); ++i)
        for (auto& block : settingsBlocks(SettingsSection(i), settings, facts))
            for (auto& row : block.rows) all.push_back(std::move(row));
    std::vector<SettingsRow> picked;
    for (std::string_view id : ids)
        for (const auto& row : all)
            if (row.id == id) picked.push_back(row);
    return picked;
}

}  // namespace

std::vector<SettingsBlock> onboardingBlocks(OnboardingStep step,
                                            const settings::AppSettings& settings,
                                            const SettingsFacts& facts) {
    switch (step) {
        case OnboardingStep::meet:
        case OnboardingStep::gift:
            return {};
        case OnboardingStep::menuBar: {
            SettingsBlock preview{{}, rowsWithIds(settings, facts, {"preview"}), {}};
            SettingsBlock reading{
                {},
                rowsWithIds(settings, facts, {"menuBar.textMetric", "menuBar.textPosition"}),
                {}};
            return {preview, reading};
        }
        case OnboardingStep::notifications: {
            SettingsBlock alerts{
                "Notifications",
                rowsWithIds(settings, facts,
                            {"notifications.highTemperature", "notifications.batteryLow",
                             "notifications.diskAlmostFull", "notifications.achievementUnlocked",
                             "general.checkInReminders"}),
                {}};
            SettingsBlock startup{
                "Startup", rowsWithIds(settings, facts, {"general.launchAtLogin"}), {}};
            return {alerts, startup};
        }
        case OnboardingStep::weather: {
            SettingsBlock city{{},
                               rowsWithIds(settings, facts, {"place", "placeSearch"}),
                               std::string(weatherPrivacySentence)};
            return {city};
        }
    }
    return {};
}

bool opensOnStart(const settings::GeneralSettings& general) {
    return !general.hasCompletedOnboarding();
}

void finishOnboarding(settings::GeneralSettings& general) {
    general.setHasCompletedOnboarding(true);
    general.setHasFinishedOnboardingOnce(true);
}

std::string dashed(std::string_view camel) {
    std::string out;
    for (char c : camel) {
        if (std::isupper(static_cast<unsigned char>(c))) {
            out += '-';
            out += char(std::tolower(static_cast<unsigned char>(c)));
        } else {
            out += c;
        }
    }
    return out;
}

}  // namespace trotlet::panel
