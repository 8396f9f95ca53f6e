#include "shop/Achievement.h"

#include <algorithm>

namespace trotlet::shop {

namespace {

using A = AchievementID;
const std::array<Achievement, 14> table = {{
    {A::helloHuman, "Hello, Human", "Open Trotlet for the first time", 50, 1, "", "hand.wave.fill"},
    {A::curiousPaws, "Curious Paws", "Open the panel 25 times", 25, 25, "times", "eyes"},
    {A::fullThrottle, "Full Throttle", "Witness 95% CPU for 30 seconds", 50, 1, "", "gauge.with.dots.needle.100percent"},
    {A::catNap, "Cat Nap", "Your mascot sleeps for 1 hour in total", 50, 1, "h", "moon.zzz.fill"},
    {A::hotPaws, "Hot Paws", "Reach the overheated state", 75, 1, "", "flame.fill"},
    {A::cleanupCrew, "Cleanup Crew", "Quit a process from the Processes tab", 25, 1, "", "xmark.circle.fill"},
    {A::goodKitty, "Good Kitty", "Pet your mascot 50 times", 50, 50, "pets", "heart.fill"},
    {A::dataHoarder, "Data Hoarder", "Download 10 GB while Trotlet watches", 75, 10, "GB", "arrow.down.circle.fill"},
    {A::nightOwl, "Night Owl", "Use Trotlet between 2 and 4 AM", 50, 1, "", "moon.stars.fill"},
    {A::weekStreak, "Week Streak", "Check in 7 days in a row", 100, 7, "days", "calendar"},
    {A::marathon, "Marathon", "Run 42.195 km in total", 150, 42.195, "km", "figure.run"},
    {A::luckyCatch, "Lucky Catch", "Catch 10 Golden Fish", 100, 10, "fish", "fish.fill"},
    {A::collector, "Collector", "Own 5 mascots", 200, 5, "mascots", "square.grid.2x2.fill"},
    {A::monthlyRegular, "Monthly Regular", "Check in 30 days in a row", 300, 30, "days", "calendar.badge.checkmark"},
}};

}  // namespace

std::span<const Achievement> Achievement::all() { return table; }
const Achievement& Achievement::of(AchievementID id) { return table[static_cast<size_t>(id)]; }
std::string_view Achievement::nameOf(AchievementID id) { return AchievementIDNames[static_cast<size_t>(id)]; }

std::optional<AchievementID> Achievement::idNamed(std::string_view raw) {
    for (size_t i = 0; i < AchievementIDNames.size(); ++i)
        if (AchievementIDNames[i] == raw) return static_cast<AchievementID>(i);
    return std::nullopt;
}

AchievementTracker::AchievementTracker(std::vector<AchievementProgress> progress,
                                       std::vector<AchievementID> unlocked) {
    // Stored lists may repeat an id after a hand edit; keep the first of each.
    for (const auto& p : progress)
        if (std::none_of(progress_.begin(), progress_.end(), [&](const auto& q) { return q.id == p.id; }))
            progress_.push_back(p);
    for (auto id : unlocked)
        if (!isUnlocked(id)) unlocked_.push_back(id);
}

bool AchievementTracker::setProgress(AchievementID id, double value) {
    auto it = std::find_if(progress_.begin(), progress_.end(), [&](const auto& p) { return p.id == id; });
    if (it == progress_.end()) progress_.push_back({id, value});
    else it->progress = value;
    if (value + 1e-9 >= Achievement::of(id).goalValue) return unlock(id);
    return false;
}

bool AchievementTracker::unlock(AchievementID id) {
    if (isUnlocked(id)) return false;
    unlocked_.push_back(id);
    return true;
}

bool AchievementTracker::isUnlocked(AchievementID id) const {
    return std::find(unlocked_.begin(), unlocked_.end(), id) != unlocked_.end();
}

double AchievementTracker::progress(AchievementID id) const {
    for (const auto& p : progress_)
        if (p.id == id) return p.progress;
    return isUnlocked(id) ? Achievement::of(id).goalValue : 0;
}

int64_t AchievementTracker::totalRewardsEarned() const {
    int64_t total = 0;
    for (auto id : unlocked_) total += Achievement::of(id).reward;
    return total;
}

}  // namespace trotlet::shop
