#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "alerts/AppEvent.h"
#include "menubar/DisplayUnits.h"
#include "metrics/MetricEnums.h"

namespace trotlet::alerts {

// The words of every alert. Numbers go through the shared Format so a notification reads the
// same as the menu bar and the panel.
namespace texts {

// How texts name the mascot when no name is known yet.
inline constexpr const char* fallbackMascotName = "Your mascot";

std::string highTemperatureTitle(const std::string& mascotName);
// With a known temperature: "It's 109°C in here. …"; else the system's thermal state.
std::string highTemperatureBody(std::optional<double> hottestC, metrics::ThermalState state,
                                menubar::TemperatureUnit unit);

std::string batteryLowTitle(std::int64_t percent);
std::string batteryLowBody(const std::string& mascotName, std::optional<std::int64_t> minutesLeft);

std::string batteryFullTitle();
std::string batteryFullBody();

std::string memoryCriticalTitle();
std::string memoryCriticalBody();

std::string diskAlmostFullTitle(const std::string& volumeName);
std::string diskAlmostFullBody(std::int64_t availableBytes);

std::string highCPUTitle(const std::string& mascotName);
// "CPU at 94% for 2 min. firefox is the busiest." (the culprit sentence only when known).
std::string highCPUBody(double total, std::int64_t minutesHeld,
                        const std::optional<std::string>& busiestProcess);

std::string achievementTitle(const AchievementUnlocked& event);
std::string achievementBody(const AchievementUnlocked& event);

std::string purchaseTitle(const MascotPurchased& event);
std::string purchaseBody();

// "Your daily Fish are waiting" / "Mochi kept today's check-in warm: 25 Fish and day 4 of your
// streak. Open Trotlet to collect."
std::string checkInReminderTitle();
std::string checkInReminderBody(const CheckInReminder& event);

}  // namespace texts
}  // namespace trotlet::alerts
