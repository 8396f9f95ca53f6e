#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace trotlet::alerts {

// Every notification the app can post. Metric kinds come from samples, the fun kinds from
// things the user did in the app; the two groups draw on separate hourly budgets.
enum class AlertKind {
    highTemperature,
    batteryLow,
    batteryFull,
    memoryCritical,
    diskAlmostFull,
    highCPU,
    achievement,
    purchase,
    checkInReminder,  // the daily nudge while the check-in waits
};
inline constexpr std::array<std::string_view, 9> AlertKindNames = {
    "highTemperature", "batteryLow",  "batteryFull", "memoryCritical", "diskAlmostFull",
    "highCPU",         "achievement", "purchase",    "checkInReminder"};
inline constexpr std::size_t alertKindCount = AlertKindNames.size();

enum class AlertBudget { alert, fun };

std::string_view rawName(AlertKind kind);
std::optional<AlertKind> alertKindNamed(std::string_view raw);

bool isFun(AlertKind kind);
AlertBudget budgetOf(AlertKind kind);

// The quiet time after a post during which the same kind may not post again. Zero for the fun
// kinds: every achievement or purchase is news.
std::chrono::seconds cooldownOf(AlertKind kind);

// Posts allowed per rolling hour: 4 for metric alerts, 6 for fun ones.
std::size_t budgetLimit(AlertBudget budget);
std::string_view rawName(AlertBudget budget);

// The desktop identifier of a kind's notification, "trotlet." + kind: a new notification of a
// kind replaces the previous one instead of stacking beside it.
std::string notificationIdentifier(AlertKind kind);

}  // namespace trotlet::alerts
