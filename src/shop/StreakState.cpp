#include "shop/StreakState.h"

#include <algorithm>

#include "shop/Calendar.h"
#include "shop/JsonFields.h"

namespace trotlet::shop {

nlohmann::ordered_json StreakState::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["lastCheckInDay"] = lastCheckInDay ? nlohmann::ordered_json(*lastCheckInDay) : nlohmann::ordered_json(nullptr);
    out["current"] = current;
    out["best"] = best;
    out["lastSaverDay"] = lastSaverDay ? nlohmann::ordered_json(*lastSaverDay) : nlohmann::ordered_json(nullptr);
    out["checkInDays"] = checkInDays;
    out["savedDays"] = savedDays;
    out["totalCheckIns"] = totalCheckIns;
    return out;
}

StreakState StreakState::fromJson(const nlohmann::json& object) {
    StreakState s;
    if (!object.is_object()) return s;
    std::string day;
    json::read(object, "lastCheckInDay", day);
    if (DayKey::isValid(day)) s.lastCheckInDay = day;
    day.clear();
    json::read(object, "lastSaverDay", day);
    if (DayKey::isValid(day)) s.lastSaverDay = day;
    json::read(object, "current", s.current);
    json::read(object, "best", s.best);
    json::read(object, "totalCheckIns", s.totalCheckIns);
    s.current = std::max<int64_t>(0, s.current);
    s.best = std::max(s.best, s.current);
    json::readStrings(object, "checkInDays", s.checkInDays);
    json::readStrings(object, "savedDays", s.savedDays);
    std::erase_if(s.checkInDays, [](const auto& d) { return !DayKey::isValid(d); });
    std::erase_if(s.savedDays, [](const auto& d) { return !DayKey::isValid(d); });
    return s;
}

StreakPreview previewStreak(const StreakState& streak, const std::string& day, int64_t saverCooldownDays) {
    const int64_t n = streak.current;
    if (!streak.lastCheckInDay) return {};
    const auto distance = DayKey::distance(*streak.lastCheckInDay, day);
    if (!distance) return {};
    if (*distance <= 0) return {std::max<int64_t>(n, 1), std::nullopt, std::nullopt};
    if (*distance == 1) return {n + 1, std::nullopt, std::nullopt};
    if (*distance == 2) {
        const auto yesterday = DayKey::offset(day, -1);
        bool ready = !streak.lastSaverDay.has_value();
        if (!ready && yesterday) {
            const auto sinceSaver = DayKey::distance(*streak.lastSaverDay, *yesterday);
            ready = sinceSaver && *sinceSaver >= saverCooldownDays;
        }
        if (ready && yesterday) return {n + 2, *yesterday, std::nullopt};
    }
    return {1, std::nullopt, n};
}

void appendKeepingNewest(std::vector<std::string>& days, const std::string& day) {
    days.push_back(day);
    if (days.size() > StreakState::keptDays)
        days.erase(days.begin(), days.begin() + static_cast<std::ptrdiff_t>(days.size() - StreakState::keptDays));
}

}  // namespace trotlet::shop
