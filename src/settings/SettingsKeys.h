#pragma once

#include <string>

namespace trotlet::settings::keys {

// Every key the settings groups read, as stored. Dotted lower camel case under a group prefix.
inline const std::string launchAtLogin = "general.launchAtLogin";
inline const std::string appearance = "general.appearance";
inline const std::string globalShortcutEnabled = "general.globalShortcutEnabled";
inline const std::string globalShortcutKeyCode = "general.globalShortcutKeyCode";
inline const std::string globalShortcutModifiers = "general.globalShortcutModifiers";
inline const std::string checkInReminders = "general.checkInReminders";
inline const std::string hasCompletedOnboarding = "general.hasCompletedOnboarding";
inline const std::string hasFinishedOnboardingOnce = "general.hasFinishedOnboardingOnce";

inline const std::string updateInterval = "monitoring.updateInterval";
inline const std::string temperatureUnit = "monitoring.temperatureUnit";
inline const std::string networkUnit = "monitoring.networkUnit";
inline const std::string showPerCoreCPU = "monitoring.showPerCoreCPU";
inline const std::string hiddenCards = "monitoring.hiddenCards";
inline const std::string processListSize = "monitoring.processListSize";

inline const std::string showMascot = "menuBar.showMascot";
inline const std::string textMetric = "menuBar.textMetric";
inline const std::string textPosition = "menuBar.textPosition";
inline const std::string speedSource = "menuBar.speedSource";
inline const std::string speedSensitivity = "menuBar.speedSensitivity";
inline const std::string maxFPS = "menuBar.maxFPS";
inline const std::string saveEnergy = "menuBar.saveEnergy";
inline const std::string pauseAnimation = "menuBar.pauseAnimation";
inline const std::string animateWithReduceMotion = "menuBar.animateWithReduceMotion";

inline const std::string stateReactions = "mascot.stateReactions";
inline const std::string sleepWhenIdle = "mascot.sleepWhenIdle";
inline const std::string showMoodLine = "mascot.showMoodLine";
inline const std::string goldenFish = "mascot.goldenFish";

inline const std::string highCPU = "notifications.highCPU";
inline const std::string highCPUThreshold = "notifications.highCPUThreshold";
inline const std::string highTemperature = "notifications.highTemperature";
inline const std::string batteryLow = "notifications.batteryLow";
inline const std::string batteryLowThreshold = "notifications.batteryLowThreshold";
inline const std::string batteryFull = "notifications.batteryFull";
inline const std::string diskAlmostFull = "notifications.diskAlmostFull";
inline const std::string diskFreeThresholdGB = "notifications.diskFreeThresholdGB";
inline const std::string memoryCritical = "notifications.memoryCritical";
inline const std::string achievementUnlocked = "notifications.achievementUnlocked";

inline const std::string weatherLocation = "weather.location";
inline const std::string weatherShowInHeader = "weather.showInHeader";
inline const std::string weatherShowInMenuBar = "weather.showInMenuBar";

inline const std::string layoutOverview = "layout.overview";

// Read and written directly on the store by the components that own them, not by a group.
inline const std::string launchAtLoginRegisteredOnce = "general.launchAtLoginRegisteredOnce";
// The day (a day key) the last check-in reminder went out.
inline const std::string lastCheckInReminderDay = "general.lastCheckInReminderDay";
inline const std::string lastLaunchedVersion = "release.lastLaunchedVersion";
inline const std::string whatsNewVersion = "release.whatsNewVersion";
inline const std::string whatsNewSince = "release.whatsNewSince";
inline const std::string feedURLOverride = "updates.feedURLOverride";
inline const std::string usingFallbackFeed = "updates.usingFallbackFeed";
// The version the user upgraded from while What's new notes are pending.
inline const std::string whatsNewAfter = "release.whatsNewAfter";
// When the last update check ran (ISO 8601): automatic checks keep a day apart across restarts.
inline const std::string lastUpdateCheck = "updates.lastCheckedAt";
// The program path whose "Install for this user" offer the user turned down.
inline const std::string installOfferDeclined = "updates.installOfferDeclined";

}  // namespace trotlet::settings::keys
