#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "shop/Achievement.h"
#include "shop/ClockGuard.h"
#include "shop/DailyCounters.h"
#include "shop/GoldenFish.h"
#include "shop/LedgerEntry.h"
#include "shop/StreakState.h"

namespace trotlet::shop {

// Everything the shop keeps between runs, as one value ("shop.json").
struct ShopState {
    static constexpr int currentSchemaVersion = 2;

    int schemaVersion = currentSchemaVersion;
    int64_t balance = 0;
    std::vector<LedgerEntry> ledger;
    std::vector<std::string> owned{"cat"};
    std::string equipped = "cat";
    std::vector<AchievementProgress> achievementProgress;
    std::vector<AchievementID> unlockedAchievements;
    StreakState streak;
    DailyCounters today;
    // The days before today, oldest first, for the Paw Report's week: at most
    // `pastDaysKept`, one per day key.
    std::vector<DailyCounters> pastDays;
    LifetimeStats lifetime;
    bool welcomeGiftGranted = false;
    std::optional<Timestamp> lastSeen;
    std::optional<ClockAnchor> clockAnchor;
    GoldenFishState goldenFish;
    Timestamp createdAt = 0;

    // A new user's state. The seed starts the Golden Fish generator, so two users (or two
    // simulator profiles) don't see the same fish.
    static ShopState fresh(Timestamp createdAt, uint64_t seed);
};

}  // namespace trotlet::shop
