#pragma once

#include "settings/SettingsEnums.h"
#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// Start-up, appearance, the global hotkey and onboarding.
class GeneralSettings : public SettingsGroup {
public:
    explicit GeneralSettings(DefaultsStore& store);

    bool launchAtLogin() const { return launchAtLogin_; }
    AppearancePreference appearance() const { return appearance_; }
    bool globalShortcutEnabled() const { return globalShortcutEnabled_; }
    // A virtual key code and a modifier mask in the classic event-modifier encoding
    // (Command 256, Shift 512, Option 2048, Control 4096); the default is Command-Option-P.
    int globalShortcutKeyCode() const { return globalShortcutKeyCode_; }
    int globalShortcutModifiers() const { return globalShortcutModifiers_; }
    bool checkInReminders() const { return checkInReminders_; }
    bool hasCompletedOnboarding() const { return hasCompletedOnboarding_; }
    bool hasFinishedOnboardingOnce() const { return hasFinishedOnboardingOnce_; }

    void setLaunchAtLogin(bool value);
    void setAppearance(AppearancePreference value);
    void setGlobalShortcutEnabled(bool value);
    void setGlobalShortcutKeyCode(int value);
    void setGlobalShortcutModifiers(int value);
    void setCheckInReminders(bool value);
    void setHasCompletedOnboarding(bool value);
    void setHasFinishedOnboardingOnce(bool value);

    // For in-memory sessions: onboarding counts as done. Unlike the setter, the change is
    // announced and stored even when the flag was already set, so whatever hangs on it runs once.
    void completeOnboardingForSession();

    static constexpr int defaultShortcutKeyCode = 35;      // P
    static constexpr int defaultShortcutModifiers = 2304;  // Command + Option

private:
    bool launchAtLogin_;
    AppearancePreference appearance_;
    bool globalShortcutEnabled_;
    int globalShortcutKeyCode_;
    int globalShortcutModifiers_;
    bool checkInReminders_;
    bool hasCompletedOnboarding_;
    bool hasFinishedOnboardingOnce_;
};

}  // namespace trotlet::settings
