#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "shop/Achievement.h"
#include "shop/Calendar.h"
#include "shop/EconomyClock.h"
#include "shop/GoldenFish.h"
#include "shop/Inventory.h"
#include "shop/ShopNotice.h"
#include "shop/ShopState.h"
#include "shop/Wallet.h"

namespace trotlet::shop {

// The economy's fixed rules.
struct EconomyRules {
    static constexpr int64_t welcomeGift = 100;
    static constexpr double passiveSecondsPerFish = 600;
    static constexpr int64_t passiveDailyCap = 48;
    static constexpr double activeIdleThresholdSeconds = 300;
    static constexpr double longestCreditedTickSeconds = 180;
    static constexpr int64_t checkInBase = 10;
    static constexpr int64_t streakStep = 5;
    static constexpr int64_t streakBonusCap = 30;
    static constexpr int64_t streakSaverCooldownDays = 7;
    static constexpr int64_t goldenFishValue = 5;
    static constexpr int64_t goldenFishDailyMax = 3;
    static constexpr int64_t goldenFishDailySpawnMax = 5;
    static constexpr double goldenFishMinOpenSeconds = 900;
    static constexpr double goldenFishExtraOpenSeconds = 240;
    static constexpr double goldenFishSwimSeconds = 4.2;
    static constexpr double goldenFishCatchGraceSeconds = 0.5;
    static constexpr double goldenFishOpenDelaySeconds = 2.5;
    static constexpr int64_t forwardJumpToleranceHours = 26;

    static double manekiMultiplier();
    static int64_t checkInReward(int64_t streakDay);
    // The simulator's `rules` object.
    static nlohmann::ordered_json toJson();
};

// Application events that move counters.
enum class EconomyEvent { panelOpened, panelClosed, pet, processQuit, mascotOverheated };

// One metrics sample as the economy sees it: CPU load as a fraction 0…1, the busiest
// process, and the hottest CPU temperature in °C when the machine has a sensor.
struct EconomySample {
    double cpuLoad = 0;
    std::string topProcess;
    std::optional<double> hottestCelsius;
};

// Something the user should hear about (a notification or a panel toast).
struct EconomyMoment {
    enum class Kind { achievementUnlocked, saverUsed, streakBroken, mascotEarned, purchased, welcomeGift };
    Kind kind;
    std::string text;
    std::string id;  // achievement or mascot id where one applies
};

struct CheckInOutcome {
    enum class Kind { collected, alreadyCollected, clockBehind };
    Kind kind = Kind::collected;
    int64_t day = 0;
    int64_t reward = 0;  // collected: paid; alreadyCollected: tomorrow's reward
    std::optional<std::string> savedDay;
    std::optional<int64_t> resetFrom;
    std::vector<std::string> unlocked;
    bool clockAhead = false;
    Timestamp collectAfter = 0;  // clockBehind: the latest time already seen

    // The check-in card's line; times in the user's zone.
    std::string message(const Calendar& calendar) const;
    // The second line for a rejected check-in; empty otherwise.
    std::string detail() const;
};

// The panel's check-in card for today, from the streak preview.
struct CheckInCard {
    enum class Kind { ready, savingYesterday, newStreak, collected };
    Kind kind = Kind::ready;
    std::string title;
    std::string detail;
    int64_t reward = 0;       // what collecting pays (collected: what tomorrow pays)
    bool saverReady = false;  // "Streak saver ready"
};

struct CatchResult {
    enum class Kind { caught, tooLate, dailyMaxReached, noSuchFish };
    Kind kind = Kind::noSuchFish;
    int64_t fish = 0;
};

struct PurchaseResult {
    enum class Kind { bought, unknownItem, alreadyOwned, notForSale, notEnoughFish };
    Kind kind = Kind::bought;
    int64_t missing = 0;
};

struct GoldenFishStatus {
    enum class Kind { counting, waitingForPanel, paused, dailyMaxReached, disabled };
    Kind kind = Kind::waitingForPanel;
    int64_t caughtToday = 0;
    int64_t dailyMax = EconomyRules::goldenFishDailyMax;
    double openSecondsUntilNext = 0;
    std::optional<double> secondsRemaining;  // while counting with the panel open

    std::string text() const;
};

struct PassiveProgress {
    double fraction = 0;  // toward the next Fish
    double secondsRemaining = 0;
    bool capReached = false;
};

struct StreakDot {
    enum class Kind { checkedIn, saved, missed, today, future };
    std::string day;
    Kind kind;
};

class EconomyEngine {
public:
    EconomyEngine(ShopState state, const EconomyClock& clock, const Calendar& calendar, uint64_t idSeed);
    EconomyEngine(const EconomyEngine&) = delete;
    EconomyEngine& operator=(const EconomyEngine&) = delete;

    ShopState state() const;

    // Called after every change that must be kept (the owner saves). Counter-only changes
    // (samples, distance, sleep) don't call it; they go out with the next save.
    void setChangeCallback(std::function<void()> callback) { onChange_ = std::move(callback); }
    void setMomentCallback(std::function<void(const EconomyMoment&)> callback) { onMoment_ = std::move(callback); }

    Wallet& wallet() { return wallet_; }
    const Wallet& wallet() const { return wallet_; }
    const Inventory& inventory() const { return inventory_; }
    const AchievementTracker& achievements() const { return achievements_; }
    const StreakState& streak() const { return streak_; }
    const DailyCounters& today() const { return today_; }
    // The archived days before today, oldest first.
    const std::vector<DailyCounters>& pastDays() const { return pastDays_; }
    const LifetimeStats& lifetime() const { return lifetime_; }
    const ClockStatus& clockStatus() const { return clock_.status; }
    std::optional<Timestamp> lastSeen() const { return clock_.lastSeen; }
    const Calendar& calendar() const { return calendar_; }
    ShopNotices& notices() { return notices_; }
    bool isUserActive() const { return userActive_; }
    bool isPanelOpen() const { return panelOpen_; }
    bool welcomeGiftGranted() const { return welcomeGiftGranted_; }
    bool goldenFishEnabled() const { return goldenFishEnabled_; }
    void setGoldenFishEnabled(bool enabled) { goldenFishEnabled_ = enabled; }

    // Clock guard.
    ClockObservation observeClock();
    ClockObservation observeClock(const ClockReading& reading);
    Timestamp trustedNow() const;
    std::string dayKey(Timestamp t) const { return DayKey::of(t, calendar_); }

    // Earning.
    void tickPassive(double elapsedSeconds, double idleSeconds);
    bool grantWelcomeGiftIfNeeded();
    void recordSample(const EconomySample& sample);
    void addDistance(double meters);
    void addDownloaded(double bytes);
    void addSleep(double seconds);
    void handle(EconomyEvent event);
    double passiveMultiplier() const;
    int64_t passiveDailyCap() const;
    PassiveProgress nextFish() const;
    void grantDebugFish(int64_t amount, const std::string& note);

    // Streaks.
    StreakPreview preview(const std::string& day) const;
    CheckInOutcome checkInOutcome();
    CheckInCard checkInCard() const;
    std::vector<StreakDot> streakWeek() const;
    // The daily reminder is due once a day from 18:00 local time while today's check-in is
    // still open and the clock is trusted.
    bool isCheckInReminderDue(bool enabled, const std::optional<std::string>& lastRemindedDay) const;

    // Golden Fish.
    std::optional<Timestamp> nextGoldenFishEventDate() const;
    void advanceGoldenFish();
    void spawnGoldenFish(Timestamp t);
    CatchResult catchGoldenFish(int64_t id);
    GoldenFishStatus goldenFish() const;
    const std::optional<GoldenFishSpawn>& activeGoldenFish() const { return activeFish_; }
    const GoldenFishState& goldenFishState() const { return goldenFishState_; }

    // Catalog.
    ItemStatus status(const CatalogItem& item) const { return inventory_.status(item, wallet_.balance()); }
    PurchaseResult buy(std::string_view id);
    bool equip(std::string_view id);
    std::vector<std::string> evaluateUnlocks();

private:
    void changed();
    void moment(EconomyMoment::Kind kind, std::string text, std::string id = {});
    void rollDayIfNeeded(Timestamp trusted);
    // The trusted time for counters, with the day rolled, without moving the clock guard.
    Timestamp counterNow();
    bool setAchievementProgress(AchievementID id, double value);
    void pauseGoldenFishCounting(Timestamp now);
    void setUserActive(bool active, Timestamp now);

    const EconomyClock& clockSource_;
    const Calendar& calendar_;
    Wallet wallet_;
    Inventory inventory_;
    AchievementTracker achievements_;
    StreakState streak_;
    DailyCounters today_;
    std::vector<DailyCounters> pastDays_;
    LifetimeStats lifetime_;
    ClockGuard clock_;
    GoldenFishState goldenFishState_;
    Timestamp createdAt_ = 0;
    bool welcomeGiftGranted_ = false;
    ShopNotices notices_;

    // Held in memory only.
    bool userActive_ = true;
    bool panelOpen_ = false;
    bool goldenFishEnabled_ = true;
    std::optional<Timestamp> panelOpenTime_;     // start of the counted stretch (open or last spawn)
    std::optional<Timestamp> openPeriodStart_;   // when the panel last opened
    std::optional<GoldenFishSpawn> activeFish_;
    std::optional<Timestamp> highLoadSince_;
    std::optional<Timestamp> lastSampleAt_;
    bool fullThrottleCounted_ = false;
    bool inPanicMoment_ = false;

    std::function<void()> onChange_;
    std::function<void(const EconomyMoment&)> onMoment_;
};

}  // namespace trotlet::shop
