#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace trotlet::shop {

struct StreakState {
    static constexpr size_t keptDays = 40;

    std::optional<std::string> lastCheckInDay;
    int64_t current = 0;
    int64_t best = 0;
    std::optional<std::string> lastSaverDay;  // the missed day the saver last bridged
    std::vector<std::string> checkInDays;     // newest last
    std::vector<std::string> savedDays;       // newest last
    int64_t totalCheckIns = 0;

    nlohmann::ordered_json toJson() const;
    // Lenient: a field that can't be read keeps its default; a non-object is a fresh streak.
    static StreakState fromJson(const nlohmann::json& json);

    friend bool operator==(const StreakState&, const StreakState&) = default;
};

// What a check-in on a day would make of the streak, without changing anything.
struct StreakPreview {
    int64_t day = 1;
    std::optional<std::string> savedDay;
    std::optional<int64_t> resetFrom;

    friend bool operator==(const StreakPreview&, const StreakPreview&) = default;
};

StreakPreview previewStreak(const StreakState& streak, const std::string& day, int64_t saverCooldownDays);

// Appends a day key and keeps the newest `StreakState::keptDays`.
void appendKeepingNewest(std::vector<std::string>& days, const std::string& day);

}  // namespace trotlet::shop
