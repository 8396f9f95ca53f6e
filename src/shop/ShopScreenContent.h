#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "shop/EconomyEngine.h"

// What the Shop tab says for a state of the economy: every text, which button, which state of
// a card. The views only draw these values; the rules that choose them live here and are
// tested without pixels.
namespace trotlet::shop {

// How long a mascot tried on in the shop stays in the menu bar and the header.
inline constexpr double tryOnSeconds = 30;

// A whole number of Fish with its sign: "+5", "−250" (a true minus sign), "0".
std::string signedFish(int64_t amount);
// "1,250".
std::string fishCount(int64_t amount);

// --- wallet ------------------------------------------------------------------------------

struct EarnWay {
    std::string symbol;
    std::string title;
    std::string detail;
    friend bool operator==(const EarnWay&, const EarnWay&) = default;
};

struct WalletContent {
    std::string balance;      // "1,250"
    std::string earnedToday;  // "+36 today"
    double nextFishFraction = 0;
    std::string nextFish;  // "Next Fish in 4 min", "Paused while you're away", …
    std::string rate;      // "1 Fish every 10 min, +10% from Maneki"
    std::vector<EarnWay> howToEarn;
    // A user who has never checked in meets the explainer unfolded.
    bool explainFirst = false;
    std::string accessibleSummary;
    friend bool operator==(const WalletContent&, const WalletContent&) = default;
};

WalletContent describeWallet(const EconomyEngine& engine);
// The four ways to earn, worded from the rules themselves.
std::vector<EarnWay> howToEarn(double passiveMultiplier);

// --- check-in ----------------------------------------------------------------------------

struct WeekDot {
    std::string label;  // "M" … "S"
    StreakDot::Kind kind = StreakDot::Kind::future;
    // A day before the first check-in ever: not a miss, just before the streak's story.
    bool beforeFirstCheckIn = false;
    std::string accessibleName;  // "Monday: checked in"
    friend bool operator==(const WeekDot&, const WeekDot&) = default;
};

struct CheckInContent {
    enum class State { ready, savingYesterday, newStreak, collected, clockBehind };
    State state = State::ready;
    std::string title;
    std::string detail;
    std::string streak;  // "Day 5": the streak that stands today
    std::string button;  // "Collect 15 Fish", "Collected"
    bool canCollect = false;
    bool saverReady = false;
    std::string saverTitle;   // "Streak saver ready", "Streak saver recharging"
    std::string saverDetail;  // the saver's rule, or when it is back
    std::vector<WeekDot> week;
    friend bool operator==(const CheckInContent&, const CheckInContent&) = default;
};

CheckInContent describeCheckIn(const EconomyEngine& engine);

// The card's note right after a collect: what it paid, then what happened to the streak
// (the saver bridged a day, a streak ended, the legend was earned), shown once.
struct CheckInNote {
    std::string headline;
    std::vector<std::string> lines;
    bool empty() const { return headline.empty() && lines.empty(); }
};
CheckInNote describeCollect(const CheckInOutcome& outcome,
                            const std::vector<EconomyMoment>& moments, const Calendar& calendar);

// --- Golden Fish and achievements tiles ----------------------------------------------------

struct GoldenFishTileContent {
    std::string caught;  // "1 of 3 today"
    std::string status;  // "Next chance in 12 min of open panel", "Swimming now", …
    int64_t caughtToday = 0;
    int64_t dailyMax = 0;
    bool swimming = false;
    friend bool operator==(const GoldenFishTileContent&, const GoldenFishTileContent&) = default;
};
GoldenFishTileContent describeGoldenFish(const EconomyEngine& engine);

// What a click on a Golden Fish shows where it was: "+5", "Too late", "Daily max reached".
std::string catchReaction(const CatchResult& result);

struct AchievementsSummary {
    int unlocked = 0;
    int total = 0;
    int64_t earned = 0;
    int64_t possible = 0;
    std::string count;   // "5 of 14"
    std::string reward;  // "250 of 1,300 Fish earned"
    friend bool operator==(const AchievementsSummary&, const AchievementsSummary&) = default;
};
AchievementsSummary summarizeAchievements(const AchievementTracker& tracker);

struct AchievementTile {
    std::string id;
    std::string title;
    std::string goal;
    std::string symbol;
    std::string progress;  // "12/25 times", "3.1/42.195 km", "0/1"
    double fraction = 0;
    std::string reward;  // "+25"
    bool unlocked = false;
    // When it was paid, from its ledger row; none once the row has been folded away.
    std::optional<Timestamp> unlockedAt;
    std::string accessibleName;
    friend bool operator==(const AchievementTile&, const AchievementTile&) = default;
};
std::vector<AchievementTile> describeAchievements(const AchievementTracker& tracker,
                                                  const std::vector<LedgerEntry>& ledger);
// "12/25 times": the progress (floored to a tenth, so a goal never looks reached before it
// is) over the goal, with the unit word when there is one.
std::string achievementProgressText(double progress, double goal, std::string_view unit);

// --- catalog -----------------------------------------------------------------------------

struct CatalogCard {
    enum class Action { none, equip, buy };
    std::string id;
    std::string name;
    std::string species;
    std::string tagline;
    std::string rarity;  // "Common"
    Rarity rarityKind = Rarity::common;
    std::string price;  // "250", "Free", "30-day streak"
    bool priceInFish = false;
    // A line under the tagline that sets this mascot apart: its perk, the secret's riddle, or
    // the legend earned.
    std::string highlight;
    std::string highlightSymbol;
    ItemStatus status;
    Action action = Action::none;
    std::string actionLabel;    // "Buy", "Equip"
    std::string note;           // "Equipped", "12 more Fish", "Day 12 of 30"
    double affordFraction = 0;  // how much of the price the balance covers, for needsFish
    bool canTryOn = false;
    bool tryingOn = false;
    std::string tryOnLabel;  // "Try on", "Stop"
    // What stands top right in place of the price: "Equipped", "Trying on", "Owned".
    enum class Badge { none, equipped, tryingOn, owned };
    Badge badge = Badge::none;
    std::string badgeText;
    bool secret = false;  // an earned mascot not yet earned: drawn as a silhouette
    std::string accessibleName;
    std::string accessibleDescription;
    friend bool operator==(const CatalogCard&, const CatalogCard&) = default;
};

CatalogCard describeCatalogItem(const CatalogItem& item, ItemStatus status, int64_t balance,
                                int64_t streakDays, bool tryingOn);
std::vector<CatalogCard> describeCatalog(const EconomyEngine& engine,
                                         const std::optional<std::string>& tryingOn);
std::string rarityTitle(Rarity rarity);
// "3 of 13 owned".
std::string ownedSummary(const Inventory& inventory);

// The confirmation before a purchase and the welcome after it.
std::string purchaseQuestion(const CatalogItem& item);  // "Adopt Kibo for 250 Fish?"
std::string welcomeTitle(const CatalogItem& item);      // "Welcome home, Kibo"
std::string welcomeBody(const CatalogItem& item, bool earned);

// --- ledger ------------------------------------------------------------------------------

struct LedgerRow {
    std::string title;
    std::string subtitle;
    std::string symbol;
    std::string amount;  // "+5", "−250"
    int sign = 0;        // -1, 0, 1: the amount's colour
    Timestamp date = 0;
    friend bool operator==(const LedgerRow&, const LedgerRow&) = default;
};

struct LedgerSection {
    enum class Label { today, yesterday, date, earlier };
    Label label = Label::date;
    Timestamp dayStart = 0;  // local midnight of the section's day, for the date label
    std::vector<LedgerRow> rows;
    friend bool operator==(const LedgerSection&, const LedgerSection&) = default;
};

LedgerRow describeLedgerEntry(const LedgerEntry& entry);
// Newest first, one section per local day; the carryover row last, in a section of its own.
std::vector<LedgerSection> describeLedger(const std::vector<LedgerEntry>& ledger,
                                          const Calendar& calendar, Timestamp now);

// --- banners -----------------------------------------------------------------------------

struct ShopBanner {
    ShopNotice::Kind kind = ShopNotice::Kind::restoredFromBackup;
    std::string title;
    std::string body;
    std::string symbol;
    bool warning = false;  // data was lost or set aside, against a notice that only informs
    friend bool operator==(const ShopBanner&, const ShopBanner&) = default;
};

// The pending notices as banners, oldest first. The clock's banners show only while the clock
// is still in the state they describe.
std::vector<ShopBanner> describeBanners(const std::vector<ShopNotice>& pending,
                                        const ClockStatus& clock);

}  // namespace trotlet::shop
