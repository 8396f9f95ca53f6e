#include "settings/GeneralSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

GeneralSettings::GeneralSettings(DefaultsStore& store) : SettingsGroup(store) {
    launchAtLogin_ = stored::asBool(store.object(keys::launchAtLogin)).value_or(false);
    appearance_ = stored::asEnum<AppearancePreference>(store.object(keys::appearance),
                                                       AppearancePreferenceNames)
                      .value_or(AppearancePreference::system);
    globalShortcutEnabled_ =
        stored::asBool(store.object(keys::globalShortcutEnabled)).value_or(true);
    globalShortcutKeyCode_ =
        stored::asInt(store.object(keys::globalShortcutKeyCode)).value_or(defaultShortcutKeyCode);
    globalShortcutModifiers_ = stored::asInt(store.object(keys::globalShortcutModifiers))
                                   .value_or(defaultShortcutModifiers);
    checkInReminders_ = stored::asBool(store.object(keys::checkInReminders)).value_or(false);
    hasCompletedOnboarding_ =
        stored::asBool(store.object(keys::hasCompletedOnboarding)).value_or(false);
    // Users who finished onboarding before this key existed have finished it once.
    hasFinishedOnboardingOnce_ = stored::asBool(store.object(keys::hasFinishedOnboardingOnce))
                                     .value_or(hasCompletedOnboarding_);
}

void GeneralSettings::setLaunchAtLogin(bool value) {
    update(launchAtLogin_, value, keys::launchAtLogin);
}
void GeneralSettings::setAppearance(AppearancePreference value) {
    updateRaw(appearance_, value, AppearancePreferenceNames, keys::appearance);
}
void GeneralSettings::setGlobalShortcutEnabled(bool value) {
    update(globalShortcutEnabled_, value, keys::globalShortcutEnabled);
}
void GeneralSettings::setGlobalShortcutKeyCode(int value) {
    update(globalShortcutKeyCode_, value, keys::globalShortcutKeyCode);
}
void GeneralSettings::setGlobalShortcutModifiers(int value) {
    update(globalShortcutModifiers_, value, keys::globalShortcutModifiers);
}
void GeneralSettings::setCheckInReminders(bool value) {
    update(checkInReminders_, value, keys::checkInReminders);
}
void GeneralSettings::setHasCompletedOnboarding(bool value) {
    update(hasCompletedOnboarding_, value, keys::hasCompletedOnboarding);
}
void GeneralSettings::setHasFinishedOnboardingOnce(bool value) {
    update(hasFinishedOnboardingOnce_, value, keys::hasFinishedOnboardingOnce);
}

void GeneralSettings::completeOnboardingForSession() {
    hasCompletedOnboarding_ = true;
    changed(keys::hasCompletedOnboarding, SettingValue(true));
}

}  // namespace trotlet::settings
