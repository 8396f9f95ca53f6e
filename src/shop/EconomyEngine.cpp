#include "shop/EconomyEngine.h"

#include <algorithm>
#include <cmath>

#include "shop/Catalog.h"

namespace trotlet::shop {

// --- rules -------------------------------------------------------------------------------

double EconomyRules::manekiMultiplier() {
    const auto* maneki = Catalog::item(Catalog::luckyCatId);
    return 1.0 + (maneki ? maneki->perk.fraction : 0.0);
}

int64_t EconomyRules::checkInReward(int64_t streakDay) {
    return checkInBase + std::min(streakStep * std::max<int64_t>(streakDay - 1, 0), streakBonusCap);
}

nlohmann::ordered_json EconomyRules::toJson() {
    nlohmann::ordered_json r = nlohmann::ordered_json::object();
    r["welcomeGift"] = welcomeGift;
    r["passiveSecondsPerFish"] = static_cast<int64_t>(passiveSecondsPerFish);
    r["passiveDailyCap"] = passiveDailyCap;
    r["activeIdleThresholdSeconds"] = static_cast<int64_t>(activeIdleThresholdSeconds);
    r["checkInBase"] = checkInBase;
    r["streakStep"] = streakStep;
    r["streakBonusCap"] = streakBonusCap;
    r["streakSaverCooldownDays"] = streakSaverCooldownDays;
    r["goldenFishValue"] = goldenFishValue;
    r["goldenFishDailyMax"] = goldenFishDailyMax;
    r["goldenFishMinOpenSeconds"] = static_cast<int64_t>(goldenFishMinOpenSeconds);
    r["goldenFishSwimSeconds"] = goldenFishSwimSeconds;
    r["forwardJumpToleranceHours"] = forwardJumpToleranceHours;
    r["manekiMultiplier"] = manekiMultiplier();
    return r;
}

// --- state -------------------------------------------------------------------------------

EconomyEngine::EconomyEngine(ShopState state, const EconomyClock& clock, const Calendar& calendar, uint64_t idSeed)
    : clockSource_(clock),
      calendar_(calendar),
      wallet_([this] { return trustedNow(); }, calendar, idSeed),
      inventory_(std::move(state.owned), std::move(state.equipped)),
      achievements_(std::move(state.achievementProgress), std::move(state.unlockedAchievements)),
      streak_(std::move(state.streak)),
      today_(std::move(state.today)),
      pastDays_(std::move(state.pastDays)),
      lifetime_(std::move(state.lifetime)),
      goldenFishState_(state.goldenFish),
      createdAt_(state.createdAt),
      welcomeGiftGranted_(state.welcomeGiftGranted) {
    clock_.lastSeen = state.lastSeen;
    clock_.anchor = std::move(state.clockAnchor);
    wallet_.load(state.balance, std::move(state.ledger));
}

ShopState EconomyEngine::state() const {
    ShopState s;
    s.balance = wallet_.balance();
    s.ledger = wallet_.ledger();
    s.owned = inventory_.owned();
    s.equipped = inventory_.equipped();
    s.achievementProgress = achievements_.progressList();
    s.unlockedAchievements = achievements_.unlocked();
    s.streak = streak_;
    s.today = today_;
    s.pastDays = pastDays_;
    s.lifetime = lifetime_;
    s.welcomeGiftGranted = welcomeGiftGranted_;
    s.lastSeen = clock_.lastSeen;
    s.clockAnchor = clock_.anchor;
    s.goldenFish = goldenFishState_;
    s.createdAt = createdAt_;
    return s;
}

void EconomyEngine::changed() {
    if (onChange_) onChange_();
}

void EconomyEngine::moment(EconomyMoment::Kind kind, std::string text, std::string id) {
    if (onMoment_) onMoment_(EconomyMoment{kind, std::move(text), std::move(id)});
}

// --- clock -------------------------------------------------------------------------------

ClockObservation EconomyEngine::observeClock() { return observeClock(clockSource_.read()); }

ClockObservation EconomyEngine::observeClock(const ClockReading& reading) {
    bool statusChanged = false;
    const ClockObservation seen = clock_.observe(reading, &statusChanged);
    if (statusChanged) {
        if (clock_.status.kind == ClockStatus::Kind::behind) notices_.raise({ShopNotice::Kind::clockBehind});
        if (clock_.status.kind == ClockStatus::Kind::jumpedForward)
            notices_.raise({ShopNotice::Kind::clockJumpedForward});
    }
    if (seen.verdict != ClockVerdict::behind) rollDayIfNeeded(seen.trusted);
    return seen;
}

Timestamp EconomyEngine::trustedNow() const { return clock_.evaluate(clockSource_.read()).trusted; }

Timestamp EconomyEngine::counterNow() {
    const ClockObservation seen = clock_.evaluate(clockSource_.read());
    if (seen.verdict != ClockVerdict::behind) rollDayIfNeeded(seen.trusted);
    return seen.trusted;
}

void EconomyEngine::rollDayIfNeeded(Timestamp trusted) {
    const std::string day = dayKey(trusted);
    if (today_.day == day) return;
    // The day that ends goes to the archive with what it earned; a day key that went
    // backwards (a trusted clock never does) is dropped rather than archived out of order.
    if (!today_.day.empty() && today_.day < day) {
        if (const auto start = DayKey::startOf(today_.day, calendar_))
            today_.fishEarned = wallet_.earned(*start);
        pastDays_.push_back(std::move(today_));
        pastDays_ = tidyPastDays(std::move(pastDays_), day);
    }
    today_ = DailyCounters{};
    today_.day = day;
}

// --- earning -----------------------------------------------------------------------------

void EconomyEngine::setUserActive(bool active, Timestamp now) {
    if (active == userActive_) return;
    userActive_ = active;
    // Golden Fish counting pauses while the user is away from an open panel.
    if (!panelOpen_) return;
    if (!active) pauseGoldenFishCounting(now);
    else panelOpenTime_ = now;
}

void EconomyEngine::tickPassive(double elapsed, double idle) {
    const ClockObservation seen = observeClock();
    setUserActive(idle < EconomyRules::activeIdleThresholdSeconds, seen.trusted);

    const double credited = std::min(elapsed, elapsed + (EconomyRules::activeIdleThresholdSeconds - idle));
    if (!(elapsed > 0) || elapsed > EconomyRules::longestCreditedTickSeconds || !(credited > 0)) return;

    today_.activeSeconds += credited;
    lifetime_.activeSeconds += credited;
    const int hour = calendar_.localHour(seen.trusted);
    if (hour >= 2 && hour < 4) {
        lifetime_.nightOwlSeconds += credited;
        setAchievementProgress(AchievementID::nightOwl, 1);
    }

    const double multiplier = passiveMultiplier();
    today_.passiveProgress += credited * multiplier;
    const int64_t due = std::min(static_cast<int64_t>(today_.passiveProgress / EconomyRules::passiveSecondsPerFish),
                                 passiveDailyCap());
    if (due - today_.passiveFish >= 1) {
        const int64_t pay = due - today_.passiveFish;
        today_.passiveFish = due;
        wallet_.record(pay, LedgerReason::passive(), true);
    }
    changed();
}

double EconomyEngine::passiveMultiplier() const {
    const auto* item = Catalog::item(inventory_.equipped());
    if (item && item->perk.kind == Perk::Kind::passiveFishBonus) return 1.0 + item->perk.fraction;
    return 1.0;
}

int64_t EconomyEngine::passiveDailyCap() const {
    return std::llround(passiveMultiplier() * static_cast<double>(EconomyRules::passiveDailyCap));
}

PassiveProgress EconomyEngine::nextFish() const {
    PassiveProgress p;
    p.capReached = today_.passiveFish >= passiveDailyCap();
    const double into = std::fmod(today_.passiveProgress, EconomyRules::passiveSecondsPerFish);
    p.fraction = into / EconomyRules::passiveSecondsPerFish;
    p.secondsRemaining = (EconomyRules::passiveSecondsPerFish - into) / passiveMultiplier();
    return p;
}

bool EconomyEngine::grantWelcomeGiftIfNeeded() {
    if (welcomeGiftGranted_) return false;
    observeClock();
    // Only a state without any history is new; a file that lost the flag but holds a ledger
    // already had its gift.
    welcomeGiftGranted_ = true;
    if (!wallet_.ledger().empty()) {
        changed();
        return false;
    }
    wallet_.record(EconomyRules::welcomeGift, LedgerReason::welcomeGift(), false);
    moment(EconomyMoment::Kind::welcomeGift, "Fish welcome gift");
    setAchievementProgress(AchievementID::helloHuman, 1);
    changed();
    return true;
}

void EconomyEngine::grantDebugFish(int64_t amount, const std::string& note) {
    if (amount == 0) return;
    if (amount < 0) {
        if (wallet_.spend(-amount, LedgerReason::debug(note))) return;
    } else {
        wallet_.record(amount, LedgerReason::debug(note), false);
    }
    changed();
}

void EconomyEngine::recordSample(const EconomySample& sample) {
    const Timestamp now = counterNow();
    const double load = std::clamp(sample.cpuLoad, 0.0, 1.0);
    if (load > today_.peakCPU || !today_.peakCPUAt) {
        today_.peakCPU = load;
        today_.peakCPUAt = now;
        today_.peakCPUProcess = sample.topProcess;
    }
    if (sample.hottestCelsius && (!today_.hottestCPU || *sample.hottestCelsius > *today_.hottestCPU)) {
        today_.hottestCPU = sample.hottestCelsius;
        today_.hottestAt = now;
    }
    // High-load moments: enter at 90%, leave below 75%, so a load hovering at the edge
    // counts once.
    if (!inPanicMoment_ && load >= 0.90) {
        inPanicMoment_ = true;
        ++today_.panicMoments;
        ++lifetime_.panicMoments;
    } else if (inPanicMoment_ && load < 0.75) {
        inPanicMoment_ = false;
    }
    // Full Throttle: 95% or more held for 30 seconds by samples no more than 10 s apart;
    // a gap in the samples (sleep, closed lid) restarts the count.
    const bool gap = lastSampleAt_ && (now - *lastSampleAt_ > 10 || now < *lastSampleAt_);
    lastSampleAt_ = now;
    if (load < 0.95 || gap) {
        highLoadSince_.reset();
        fullThrottleCounted_ = false;
    }
    if (load >= 0.95) {
        if (!highLoadSince_) highLoadSince_ = now;
        if (!fullThrottleCounted_ && now - *highLoadSince_ >= 30) {
            fullThrottleCounted_ = true;
            ++lifetime_.fullThrottleMoments;
            if (setAchievementProgress(AchievementID::fullThrottle, 1)) changed();
        }
    }
}

void EconomyEngine::addDistance(double meters) {
    if (!(meters > 0) || !std::isfinite(meters)) return;
    counterNow();
    today_.metersRun += meters;
    lifetime_.metersRun += meters;
    lifetime_.metersByMascot[inventory_.equipped()] += meters;
    if (setAchievementProgress(AchievementID::marathon, lifetime_.metersRun / 1000.0)) changed();
}

void EconomyEngine::addDownloaded(double bytes) {
    if (!(bytes > 0) || !std::isfinite(bytes)) return;
    lifetime_.bytesDownloaded += bytes;
    if (setAchievementProgress(AchievementID::dataHoarder, lifetime_.bytesDownloaded / 1e9)) changed();
}

void EconomyEngine::addSleep(double seconds) {
    if (!(seconds > 0) || !std::isfinite(seconds)) return;
    counterNow();
    today_.secondsAsleep += seconds;
    lifetime_.secondsAsleep += seconds;
    if (setAchievementProgress(AchievementID::catNap, lifetime_.secondsAsleep / 3600.0)) changed();
}

void EconomyEngine::handle(EconomyEvent event) {
    const Timestamp now = counterNow();
    switch (event) {
    case EconomyEvent::panelOpened:
        if (panelOpen_) return;
        panelOpen_ = true;
        openPeriodStart_ = now;
        panelOpenTime_ = userActive_ ? std::optional<Timestamp>(now) : std::nullopt;
        ++lifetime_.panelOpens;
        ++today_.panelOpens;
        setAchievementProgress(AchievementID::curiousPaws, static_cast<double>(lifetime_.panelOpens));
        break;
    case EconomyEvent::panelClosed:
        if (!panelOpen_) return;
        pauseGoldenFishCounting(now);
        if (openPeriodStart_ && now > *openPeriodStart_) today_.panelOpenSeconds += now - *openPeriodStart_;
        panelOpen_ = false;
        openPeriodStart_.reset();
        break;
    case EconomyEvent::pet:
        ++lifetime_.pets;
        setAchievementProgress(AchievementID::goodKitty, static_cast<double>(lifetime_.pets));
        break;
    case EconomyEvent::processQuit:
        ++lifetime_.processesQuit;
        setAchievementProgress(AchievementID::cleanupCrew, static_cast<double>(lifetime_.processesQuit));
        break;
    case EconomyEvent::mascotOverheated:
        ++lifetime_.overheatedMoments;
        setAchievementProgress(AchievementID::hotPaws, 1);
        break;
    }
    changed();
}

// --- achievements and catalog ------------------------------------------------------------

bool EconomyEngine::setAchievementProgress(AchievementID id, double value) {
    if (!achievements_.setProgress(id, value)) return false;
    const Achievement& a = Achievement::of(id);
    wallet_.record(a.reward, LedgerReason::achievement(std::string(Achievement::nameOf(id))), false);
    moment(EconomyMoment::Kind::achievementUnlocked, "Achievement unlocked: " + std::string(a.title),
           std::string(Achievement::nameOf(id)));
    return true;
}

PurchaseResult EconomyEngine::buy(std::string_view id) {
    const CatalogItem* item = Catalog::item(id);
    if (!item) return {PurchaseResult::Kind::unknownItem};
    if (inventory_.owns(id)) return {PurchaseResult::Kind::alreadyOwned};
    if (!item->price.isForSale()) return {PurchaseResult::Kind::notForSale};
    if (const auto error = wallet_.spend(item->price.amount, LedgerReason::purchase(item->id)))
        return {PurchaseResult::Kind::notEnoughFish, error->missing};
    inventory_.unlock(id);
    moment(EconomyMoment::Kind::purchased, "Adopted " + item->name, item->id);
    setAchievementProgress(AchievementID::collector, static_cast<double>(inventory_.owned().size()));
    changed();
    return {PurchaseResult::Kind::bought};
}

bool EconomyEngine::equip(std::string_view id) {
    if (!inventory_.equip(id)) return false;
    changed();
    return true;
}

std::vector<std::string> EconomyEngine::evaluateUnlocks() {
    std::vector<std::string> unlocked;
    if (streak_.current >= Catalog::secretStreakDays && inventory_.unlock(Catalog::secretId)) {
        unlocked.emplace_back(Catalog::secretId);
        moment(EconomyMoment::Kind::mascotEarned, "30 days in a row. The legend is yours.", std::string(Catalog::secretId));
        setAchievementProgress(AchievementID::collector, static_cast<double>(inventory_.owned().size()));
    }
    return unlocked;
}

}  // namespace trotlet::shop
