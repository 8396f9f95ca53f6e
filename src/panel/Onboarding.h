#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mascot/Gait.h"
#include "mascot/MascotState.h"
#include "panel/SettingsScreen.h"

namespace trotlet::settings {
class AppSettings;
class GeneralSettings;
}  // namespace trotlet::settings
namespace trotlet::mascot {
struct MascotCharacter;
}

namespace trotlet::panel {

// The first run: a short walk through what the mascot means and the few choices worth making on
// day one, ending with the welcome gift. It opens by itself until it has been finished once, can
// be skipped at any step and can be shown again from Settings.
enum class OnboardingStep { meet, menuBar, notifications, weather, gift };
inline constexpr std::array<std::string_view, 5> OnboardingStepNames = {
    "meet", "menuBar", "notifications", "weather", "gift"};

struct OnboardingPage {
    std::string title;
    std::string body;
    std::string primary;  // the main button: "Continue", "Open the gift", "Start"
    bool canGoBack = true;
    bool canSkip = true;
};
OnboardingPage onboardingPage(OnboardingStep step, const std::string& mascotName, bool giftOpened);

std::optional<OnboardingStep> nextStep(OnboardingStep step);
std::optional<OnboardingStep> previousStep(OnboardingStep step);
inline int stepIndex(OnboardingStep step) { return int(step); }
inline constexpr int onboardingStepCount = int(OnboardingStepNames.size());

// One gait as the first page shows it: its name, what it says about the machine, and the
// mascot's state and frame rate at a load typical of the gait, so the page can animate it.
struct GaitShowcase {
    mascot::Gait gait;
    std::string name;     // "Trotting"
    std::string meaning;  // "Steady work"
    double load = 0;
    mascot::MascotState state;
    double framesPerSecond = 1;
};
std::vector<GaitShowcase> gaitShowcase(const mascot::MascotCharacter& character);

// The welcome gift's card: closed ("Welcome gift, click to open") until the engine has granted
// it, then what it held.
struct GiftCard {
    std::string title;
    std::string detail;
    bool opened = false;
};
GiftCard giftCard(bool granted, long long fish);

// The settings a step offers, as the rows Settings shows for them (none for the first and the
// last step, which show the gaits and the gift).
std::vector<SettingsBlock> onboardingBlocks(OnboardingStep step,
                                            const settings::AppSettings& settings,
                                            const SettingsFacts& facts);

// Whether the panel opens on the tour by itself at start.
bool opensOnStart(const settings::GeneralSettings& general);
// Finishing or skipping: the tour counts as done, now and for good.
void finishOnboarding(settings::GeneralSettings& general);

// The lower-case, dashed form of a camel-case name, for scene and object names ("menuBar" →
// "menu-bar").
std::string dashed(std::string_view camel);

}  // namespace trotlet::panel
