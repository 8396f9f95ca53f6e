// EconomyEngine: the Golden Fish that swims across the open panel's header.
#include <algorithm>
#include <cmath>

#include "shop/EconomyEngine.h"

namespace trotlet::shop {

std::string GoldenFishStatus::text() const {
    switch (kind) {
    case Kind::dailyMaxReached: return "Daily max reached. More tomorrow";
    case Kind::paused: return "Paused while you're away";
    case Kind::disabled: return "Golden Fish are off";
    case Kind::counting:
    case Kind::waitingForPanel: {
        const long long minutes = std::llround(std::ceil(openSecondsUntilNext / 60.0));
        return "Next chance in " + std::to_string(minutes) + " min of open panel";
    }
    }
    return {};
}

void EconomyEngine::pauseGoldenFishCounting(Timestamp now) {
    if (panelOpenTime_ && now > *panelOpenTime_) goldenFishState_.openSeconds += now - *panelOpenTime_;
    panelOpenTime_.reset();
}

std::optional<Timestamp> EconomyEngine::nextGoldenFishEventDate() const {
    if (activeFish_) return activeFish_->endsAt + EconomyRules::goldenFishCatchGraceSeconds;
    if (!goldenFishEnabled_ || !panelOpen_ || !panelOpenTime_ ||
        today_.goldenFishCaught >= EconomyRules::goldenFishDailyMax ||
        today_.goldenFishSpawned >= EconomyRules::goldenFishDailySpawnMax)
        return std::nullopt;
    const double missing = std::max(0.0, goldenFishState_.openSecondsUntilNext - goldenFishState_.openSeconds);
    const double sinceOpen = openPeriodStart_ ? *panelOpenTime_ - *openPeriodStart_ : 0.0;
    const double settle = std::max(0.0, EconomyRules::goldenFishOpenDelaySeconds - sinceOpen);
    return *panelOpenTime_ + std::max(missing, settle);
}

void EconomyEngine::advanceGoldenFish() {
    const Timestamp now = trustedNow();
    if (activeFish_) {
        if (now > activeFish_->endsAt + EconomyRules::goldenFishCatchGraceSeconds) {
            activeFish_.reset();
            ++lifetime_.goldenFishMissed;
            changed();
        }
        return;
    }
    const auto due = nextGoldenFishEventDate();
    if (!due || now < *due) return;
    const ClockObservation seen = observeClock();
    if (seen.verdict == ClockVerdict::behind) return;
    if (today_.goldenFishCaught < EconomyRules::goldenFishDailyMax &&
        today_.goldenFishSpawned < EconomyRules::goldenFishDailySpawnMax)
        spawnGoldenFish(seen.trusted);
}

void EconomyEngine::spawnGoldenFish(Timestamp t) {
    const auto draws = drawGoldenFish(goldenFishState_.randomState);
    goldenFishState_.openSeconds = 0;
    goldenFishState_.openSecondsUntilNext =
        EconomyRules::goldenFishMinOpenSeconds + EconomyRules::goldenFishExtraOpenSeconds * draws[3];
    panelOpenTime_ = t;
    ++today_.goldenFishSpawned;
    ++goldenFishState_.spawnCounter;
    activeFish_ = GoldenFishSpawn{goldenFishState_.spawnCounter,
                                  t,
                                  t + EconomyRules::goldenFishSwimSeconds,
                                  0.18 + 0.42 * draws[0],
                                  draws[1] < 0.5,
                                  EconomyRules::goldenFishValue};
    changed();
}

CatchResult EconomyEngine::catchGoldenFish(int64_t id) {
    if (!activeFish_ || activeFish_->id != id) return {CatchResult::Kind::noSuchFish};
    const GoldenFishSpawn fish = *activeFish_;
    activeFish_.reset();
    const ClockObservation seen = observeClock();
    if (seen.verdict != ClockVerdict::behind && seen.trusted <= fish.endsAt + EconomyRules::goldenFishCatchGraceSeconds) {
        if (today_.goldenFishCaught >= EconomyRules::goldenFishDailyMax) return {CatchResult::Kind::dailyMaxReached};
        ++today_.goldenFishCaught;
        ++lifetime_.goldenFishCaught;
        wallet_.record(fish.value, LedgerReason::goldenFish(), false);
        setAchievementProgress(AchievementID::luckyCatch, static_cast<double>(lifetime_.goldenFishCaught));
        changed();
        return {CatchResult::Kind::caught, fish.value};
    }
    ++lifetime_.goldenFishMissed;
    changed();
    return {CatchResult::Kind::tooLate};
}

GoldenFishStatus EconomyEngine::goldenFish() const {
    GoldenFishStatus s;
    s.caughtToday = today_.goldenFishCaught;
    const Timestamp now = trustedNow();
    double counted = goldenFishState_.openSeconds;
    if (panelOpen_ && panelOpenTime_ && now > *panelOpenTime_) counted += now - *panelOpenTime_;
    s.openSecondsUntilNext = std::max(0.0, goldenFishState_.openSecondsUntilNext - counted);
    if (!goldenFishEnabled_) s.kind = GoldenFishStatus::Kind::disabled;
    else if (today_.goldenFishCaught >= EconomyRules::goldenFishDailyMax ||
             today_.goldenFishSpawned >= EconomyRules::goldenFishDailySpawnMax)
        s.kind = GoldenFishStatus::Kind::dailyMaxReached;
    else if (panelOpen_ && !userActive_) s.kind = GoldenFishStatus::Kind::paused;
    else if (panelOpen_) {
        s.kind = GoldenFishStatus::Kind::counting;
        if (const auto due = nextGoldenFishEventDate()) s.secondsRemaining = std::max(0.0, *due - now);
    } else {
        s.kind = GoldenFishStatus::Kind::waitingForPanel;
    }
    return s;
}

}  // namespace trotlet::shop
