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

using AppEvent = std::variant<AchievementUnlocked, MascotPurchased>;

// One line for logs and the simulation's step summaries.
std::string describe(const AppEvent& event);

}  // namespace trotlet::alerts
