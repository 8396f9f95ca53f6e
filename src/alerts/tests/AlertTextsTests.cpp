#include <gtest/gtest.h>

#include "alerts/AlertTexts.h"

namespace trotlet::alerts::texts {
namespace {

using menubar::TemperatureUnit;
using metrics::ThermalState;

TEST(AlertTexts, TemperatureBodyUsesTheUsersUnitAndWholeDegrees) {
    EXPECT_EQ(highTemperatureBody(108.4, ThermalState::nominal, TemperatureUnit::celsius),
              "It's 108°C in here. Maybe close something heavy?");
    EXPECT_EQ(highTemperatureBody(100, ThermalState::serious, TemperatureUnit::fahrenheit),
              "It's 212°F in here. Maybe close something heavy?");
    EXPECT_EQ(highTemperatureBody(std::nullopt, ThermalState::serious, TemperatureUnit::celsius),
              "The system reports a serious thermal state. Maybe close something heavy?");
}

TEST(AlertTexts, BatteryLowMentionsTheTimeLeftOnlyWhenKnown) {
    EXPECT_EQ(batteryLowTitle(9), "Battery low: 9%");
    EXPECT_EQ(batteryLowBody("Miso", 125),
              "Miso is running on fumes, about 2h 5m left. Time to find a charger.");
    EXPECT_EQ(batteryLowBody("Miso", std::nullopt), "Miso is running on fumes. Time to find a charger.");
    EXPECT_EQ(batteryLowBody("", std::nullopt),
              "Your mascot is running on fumes. Time to find a charger.");
}

TEST(AlertTexts, HighCPUBodyRoundsThePercentAndTruncatesMinutes) {
    EXPECT_EQ(highCPUBody(0.996, 7, std::string("ffmpeg")), "CPU at 100% for 7 min. ffmpeg is the busiest.");
    EXPECT_EQ(highCPUBody(0.904, 2, std::nullopt), "CPU at 90% for 2 min.");
}

TEST(AlertTexts, AchievementBodyEndsWithTheReward) {
    EXPECT_EQ(achievementBody({"Marathon", "Run 42 km", 100}), "Run 42 km. You earned 100 Fish.");
    EXPECT_EQ(achievementBody({"Marathon", "Ran far!", 100}), "Ran far! You earned 100 Fish.");
    EXPECT_EQ(achievementBody({"Marathon", "", 5}), "Nicely done. You earned 5 Fish.");
}

TEST(AlertTexts, DiskBodyUsesTheSharedByteFormat) {
    EXPECT_EQ(diskAlmostFullBody(512), "512 B free. Time for a little spring cleaning.");
    EXPECT_EQ(diskAlmostFullBody(9'500'000'000), "8.85 GB free. Time for a little spring cleaning.");
}

}  // namespace
}  // namespace trotlet::alerts::texts
