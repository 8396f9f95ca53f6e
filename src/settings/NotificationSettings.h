#pragma once

#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// Which desktop notifications the user wants, and their levels. Levels are not clamped.
class NotificationSettings : public SettingsGroup {
public:
    explicit NotificationSettings(DefaultsStore& store);

    bool highCPU() const { return highCPU_; }
    double highCPUThreshold() const { return highCPUThreshold_; }  // fraction 0..1
    bool highTemperature() const { return highTemperature_; }
    bool batteryLow() const { return batteryLow_; }
    int batteryLowThreshold() const { return batteryLowThreshold_; }  // percent
    bool batteryFull() const { return batteryFull_; }
    bool diskAlmostFull() const { return diskAlmostFull_; }
    int diskFreeThresholdGB() const { return diskFreeThresholdGB_; }
    bool memoryCritical() const { return memoryCritical_; }
    bool achievementUnlocked() const { return achievementUnlocked_; }

    void setHighCPU(bool value);
    void setHighCPUThreshold(double fraction);
    void setHighTemperature(bool value);
    void setBatteryLow(bool value);
    void setBatteryLowThreshold(int percent);
    void setBatteryFull(bool value);
    void setDiskAlmostFull(bool value);
    void setDiskFreeThresholdGB(int gigabytes);
    void setMemoryCritical(bool value);
    void setAchievementUnlocked(bool value);

private:
    bool highCPU_;
    double highCPUThreshold_;
    bool highTemperature_;
    bool batteryLow_;
    int batteryLowThreshold_;
    bool batteryFull_;
    bool diskAlmostFull_;
    int diskFreeThresholdGB_;
    bool memoryCritical_;
    bool achievementUnlocked_;
};

}  // namespace trotlet::settings
