#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace trotlet::alerts {

// Things the user did in the app that are worth a notification. The economy engine raises them;
// the alert rules turn them into the fun kinds of alert.

struct AchievementUnlocked {
    std::string title;       // "Night Owl"
    std::string detail;      // what it took, a sentence; may be empty
    std::int64_t fishReward = 0;
};

struct MascotPurchased {
    std::string mascotName;  // the new friend's display name
};

// Today's check-in is still waiting, late in the user's day.
struct CheckInReminder {
    std::string mascotName;
    std::int64_t reward = 0;     // what collecting today pays
    std::int64_t streakDay = 1;  // the streak day collecting today makes
};

using AppEvent = std::variant<AchievementUnlocked, MascotPurchased, CheckInReminder>;

// One line for logs and the simulation's step summaries.
std::string describe(const AppEvent& event);

}  // namespace trotlet::alerts
