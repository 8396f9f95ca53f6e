#include "settings/NotificationSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

NotificationSettings::NotificationSettings(DefaultsStore& store) : SettingsGroup(store) {
    highCPU_ = stored::asBool(store.object(keys::highCPU)).value_or(false);
    highCPUThreshold_ = stored::asDouble(store.object(keys::highCPUThreshold)).value_or(0.9);
    highTemperature_ = stored::asBool(store.object(keys::highTemperature)).value_or(true);
    batteryLow_ = stored::asBool(store.object(keys::batteryLow)).value_or(true);
    batteryLowThreshold_ = stored::asInt(store.object(keys::batteryLowThreshold)).value_or(15);
    batteryFull_ = stored::asBool(store.object(keys::batteryFull)).value_or(false);
    diskAlmostFull_ = stored::asBool(store.object(keys::diskAlmostFull)).value_or(true);
    diskFreeThresholdGB_ = stored::asInt(store.object(keys::diskFreeThresholdGB)).value_or(10);
    memoryCritical_ = stored::asBool(store.object(keys::memoryCritical)).value_or(true);
    achievementUnlocked_ = stored::asBool(store.object(keys::achievementUnlocked)).value_or(true);
}

void NotificationSettings::setHighCPU(bool value) { update(highCPU_, value, keys::highCPU); }
void NotificationSettings::setHighCPUThreshold(double fraction) {
    update(highCPUThreshold_, fraction, keys::highCPUThreshold);
}
void NotificationSettings::setHighTemperature(bool value) {
    update(highTemperature_, value, keys::highTemperature);
}
void NotificationSettings::setBatteryLow(bool value) {
    update(batteryLow_, value, keys::batteryLow);
}
void NotificationSettings::setBatteryLowThreshold(int percent) {
    update(batteryLowThreshold_, percent, keys::batteryLowThreshold);
}
void NotificationSettings::setBatteryFull(bool value) {
    update(batteryFull_, value, keys::batteryFull);
}
void NotificationSettings::setDiskAlmostFull(bool value) {
    update(diskAlmostFull_, value, keys::diskAlmostFull);
}
void NotificationSettings::setDiskFreeThresholdGB(int gigabytes) {
    update(diskFreeThresholdGB_, gigabytes, keys::diskFreeThresholdGB);
}
void NotificationSettings::setMemoryCritical(bool value) {
    update(memoryCritical_, value, keys::memoryCritical);
}
void NotificationSettings::setAchievementUnlocked(bool value) {
    update(achievementUnlocked_, value, keys::achievementUnlocked);
}

}  // namespace trotlet::settings
