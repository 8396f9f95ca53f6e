#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "shop/Timestamp.h"

namespace trotlet::shop {

// The day's counters; they start afresh when the trusted day rolls over.
struct DailyCounters {
    std::string day;
    int64_t passiveFish = 0;
    double activeSeconds = 0;
    double passiveProgress = 0;  // active seconds weighted by the multiplier in force
    int64_t goldenFishCaught = 0;
    int64_t goldenFishSpawned = 0;
    double metersRun = 0;
    double secondsAsleep = 0;
    double panelOpenSeconds = 0;
    int64_t panicMoments = 0;
    double peakCPU = 0;
    std::optional<Timestamp> peakCPUAt;
    std::string peakCPUProcess;
    std::optional<double> hottestCPU;  // absent until a temperature was read
    std::optional<Timestamp> hottestAt;
    // Extras for the Paw Report: panel opens today, and the Fish the day earned, filled in
    // when the day is archived (today's earnings are the wallet's to tell).
    int64_t panelOpens = 0;
    int64_t fishEarned = 0;

    nlohmann::ordered_json toJson() const;
    // Lenient; `hadPassiveProgress` tells the version-1 migration whether the key existed.
    static DailyCounters fromJson(const nlohmann::json& json, bool* hadPassiveProgress = nullptr);

    friend bool operator==(const DailyCounters&, const DailyCounters&) = default;
};

// How many past days the shop keeps for the Paw Report's week and beyond.
inline constexpr std::size_t pastDaysKept = 35;

// The past days in order: sorted by day, one entry a day (the later one wins), none without a
// valid day or on or after `today` (when not empty), at most the newest `pastDaysKept`.
std::vector<DailyCounters> tidyPastDays(std::vector<DailyCounters> days, std::string_view today);

// Never reset. The first eleven keys are the panel's statistics; the rest feed achievements.
struct LifetimeStats {
    double metersRun = 0;
    std::map<std::string, double> metersByMascot;
    int64_t panelOpens = 0;
    int64_t pets = 0;
    int64_t processesQuit = 0;
    int64_t goldenFishCaught = 0;
    int64_t goldenFishMissed = 0;
    double bytesDownloaded = 0;
    double secondsAsleep = 0;
    double activeSeconds = 0;
    int64_t panicMoments = 0;
    // Achievement counters: moments of 95% CPU held 30 s, overheated moods, and active
    // seconds between 02:00 and 04:00 local time.
    int64_t fullThrottleMoments = 0;
    int64_t overheatedMoments = 0;
    double nightOwlSeconds = 0;

    nlohmann::ordered_json toJson() const;
    static LifetimeStats fromJson(const nlohmann::json& json);

    friend bool operator==(const LifetimeStats&, const LifetimeStats&) = default;
};

}  // namespace trotlet::shop
