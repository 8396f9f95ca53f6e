#include "alerts/AppEvent.h"

namespace trotlet::alerts {

std::string describe(const AppEvent& event) {
    if (const auto* a = std::get_if<AchievementUnlocked>(&event))
        return "achievement \"" + a->title + "\" (+" + std::to_string(a->fishReward) + " Fish)";
    if (const auto* r = std::get_if<CheckInReminder>(&event))
        return "check-in reminder (day " + std::to_string(r->streakDay) + ", " +
               std::to_string(r->reward) + " Fish)";
    return "purchase \"" + std::get<MascotPurchased>(event).mascotName + "\"";
}

}  // namespace trotlet::alerts
