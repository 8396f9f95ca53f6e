#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace trotlet::shop {

enum class AchievementID {
    helloHuman,
    curiousPaws,
    fullThrottle,
    catNap,
    hotPaws,
    cleanupCrew,
    goodKitty,
    dataHoarder,
    nightOwl,
    weekStreak,
    marathon,
    luckyCatch,
    collector,
    monthlyRegular,
};
inline constexpr std::array<std::string_view, 14> AchievementIDNames = {
    "helloHuman", "curiousPaws", "fullThrottle", "catNap",     "hotPaws",
    "cleanupCrew", "goodKitty",  "dataHoarder",  "nightOwl",   "weekStreak",
    "marathon",   "luckyCatch",  "collector",    "monthlyRegular"};

struct Achievement {
    AchievementID id;
    std::string_view title;
    std::string_view goal;
    int64_t reward = 0;
    double goalValue = 1;
    std::string_view unit;  // empty: no unit word
    std::string_view symbol;

    static std::span<const Achievement> all();
    static const Achievement& of(AchievementID id);
    static std::optional<AchievementID> idNamed(std::string_view raw);
    static std::string_view nameOf(AchievementID id);
};

struct AchievementProgress {
    AchievementID id;
    double progress = 0;
};

// Progress per achievement and the list of those reached. Unlocking pays nothing by itself:
// the engine pays the reward when `setProgress` or `unlock` reports a first unlock.
class AchievementTracker {
public:
    AchievementTracker() = default;
    AchievementTracker(std::vector<AchievementProgress> progress, std::vector<AchievementID> unlocked);

    // Returns true when this call unlocked the achievement.
    bool setProgress(AchievementID id, double value);
    bool unlock(AchievementID id);
    bool isUnlocked(AchievementID id) const;
    double progress(AchievementID id) const;
    int64_t totalRewardsEarned() const;

    const std::vector<AchievementProgress>& progressList() const { return progress_; }
    const std::vector<AchievementID>& unlocked() const { return unlocked_; }

private:
    std::vector<AchievementProgress> progress_;
    std::vector<AchievementID> unlocked_;
};

}  // namespace trotlet::shop
