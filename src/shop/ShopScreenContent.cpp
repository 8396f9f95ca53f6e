// The Shop tab's wallet, check-in card, Golden Fish tile and banners.
#include "shop/ShopScreenContent.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "panel/HeaderContent.h"
#include "shop/PlatformNoun.h"

namespace trotlet::shop {

namespace {

constexpr std::string_view minus = "\xE2\x88\x92";          // U+2212, the typographic minus
constexpr std::string_view fishGlyph = "\xF0\x9F\x90\x9F";  // U+1F41F, drawn as the Fish symbol

std::string percentOf(double fraction) { return std::to_string(std::lround(fraction * 100)) + "%"; }

long long wholeMinutes(double seconds) { return std::llround(seconds / 60); }

std::string days(long long n) { return std::to_string(n) + (n == 1 ? " day" : " days"); }

}  // namespace

std::string fishCount(int64_t amount) { return panel::groupedNumber(amount); }

std::string signedFish(int64_t amount) {
    if (amount == 0) return "0";
    // Written from the magnitude, so the smallest 64-bit value keeps its digits.
    const std::string digits = panel::groupedNumber(amount);
    // GCC 12 warns falsely about "+" + std::string, so the texts are built by appending.
    return amount > 0 ? std::string("+").append(digits)
                      : std::string(minus).append(digits.substr(1));
}

// --- wallet ------------------------------------------------------------------------------

std::vector<EarnWay> howToEarn(double multiplier) {
    using R = EconomyRules;
    const long long cap = std::llround(multiplier * static_cast<double>(R::passiveDailyCap));
    int64_t achievementFish = 0;
    for (const auto& a : Achievement::all()) achievementFish += a.reward;
    // The reward stops growing on the first day at which the bonus reaches its cap.
    const int64_t topReward = R::checkInReward(R::streakBonusCap / R::streakStep + 1);
    return {
        {"pawprint.fill", "Paw-time",
         "1 Fish every " + std::to_string(wholeMinutes(R::passiveSecondsPerFish)) +
             withPlatformNoun(" min while you're at your ", ", up to ") + std::to_string(cap) +
             " a day"},
        {"flame.fill", "Daily check-in",
         std::to_string(R::checkInBase) + " Fish on day 1, " + std::to_string(R::streakStep) +
             " more each day of a streak, up to " + std::to_string(topReward)},
        {"fish.fill", "Golden Fish",
         std::to_string(R::goldenFishValue) + " Fish for each one you catch in the header, up to " +
             std::to_string(R::goldenFishDailyMax) + " a day"},
        {"star.fill", "Achievements",
         std::to_string(Achievement::all().size()) + " goals worth " + fishCount(achievementFish) +
             " Fish in all"},
    };
}

WalletContent describeWallet(const EconomyEngine& engine) {
    WalletContent w;
    const Timestamp now = engine.trustedNow();
    const int64_t balance = engine.wallet().balance();
    w.balance = fishCount(balance);
    const int64_t today = engine.wallet().earned(now);
    w.earnedToday = today > 0 ? signedFish(today).append(" today") : "Nothing earned yet today";

    const PassiveProgress next = engine.nextFish();
    const double multiplier = engine.passiveMultiplier();
    if (next.capReached) {
        w.nextFishFraction = 1;
        w.nextFish = "All " + std::to_string(engine.passiveDailyCap()) +
                     " Paw-time Fish are in. More tomorrow";
    } else {
        w.nextFishFraction = std::clamp(next.fraction, 0.0, 1.0);
        if (!engine.isUserActive())
            w.nextFish = "Paused while you're away";
        else if (next.secondsRemaining < 60)
            w.nextFish = "Next Fish in under a minute";
        else
            w.nextFish = "Next Fish in " +
                         std::to_string(std::llround(std::ceil(next.secondsRemaining / 60))) +
                         " min";
    }
    w.rate = "1 Fish every " + std::to_string(wholeMinutes(EconomyRules::passiveSecondsPerFish)) +
             " min";
    if (multiplier > 1) {
        const CatalogItem* item = Catalog::item(engine.inventory().equipped());
        w.rate +=
            ", +" + percentOf(multiplier - 1) + " from " + (item ? item->name : "your mascot");
    }
    w.howToEarn = howToEarn(multiplier);
    w.explainFirst = engine.streak().totalCheckIns == 0;
    w.accessibleSummary = w.balance + " Fish. " + w.earnedToday + ". " + w.nextFish + ".";
    return w;
}

// --- check-in ----------------------------------------------------------------------------

namespace {

constexpr std::array<std::string_view, 7> weekdayLetters = {"M", "T", "W", "T", "F", "S", "S"};
constexpr std::array<std::string_view, 7> weekdayNames = {
    "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};

std::string_view dotWords(StreakDot::Kind kind) {
    switch (kind) {
        case StreakDot::Kind::checkedIn:
            return "checked in";
        case StreakDot::Kind::saved:
            return "saved by the streak saver";
        case StreakDot::Kind::missed:
            return "missed";
        case StreakDot::Kind::today:
            return "today, not collected yet";
        case StreakDot::Kind::future:
            return "still to come";
    }
    return {};
}

std::string tomorrowLine(int64_t tomorrowReward) {
    return "Tomorrow: " + std::string(fishGlyph) + " " + std::to_string(tomorrowReward);
}

}  // namespace

CheckInContent describeCheckIn(const EconomyEngine& engine) {
    using R = EconomyRules;
    CheckInContent c;
    const StreakState& streak = engine.streak();
    const CheckInCard card = engine.checkInCard();
    const std::vector<StreakDot> dots = engine.streakWeek();
    // Day keys compare as text in calendar order.
    const auto first = std::min_element(streak.checkInDays.begin(), streak.checkInDays.end());
    for (size_t i = 0; i < dots.size() && i < weekdayLetters.size(); ++i) {
        const bool before = dots[i].kind == StreakDot::Kind::missed &&
                            (first == streak.checkInDays.end() || dots[i].day < *first);
        c.week.push_back(
            {std::string(weekdayLetters[i]), dots[i].kind, before,
             std::string(weekdayNames[i]) + ": " +
                 (before ? std::string("no check-in") : std::string(dotWords(dots[i].kind)))});
    }

    c.saverReady = card.saverReady;
    if (card.saverReady) {
        c.saverTitle = "Streak saver ready";
        c.saverDetail = "Miss a day and your streak survives. Recharges every " +
                        days(R::streakSaverCooldownDays) + ".";
    } else {
        c.saverTitle = "Streak saver recharging";
        const std::string today = engine.dayKey(engine.trustedNow());
        const auto yesterday = DayKey::offset(today, -1);
        long long left = R::streakSaverCooldownDays;
        if (streak.lastSaverDay && yesterday)
            left -= DayKey::distance(*streak.lastSaverDay, *yesterday).value_or(0);
        left = std::clamp<long long>(left, 1, R::streakSaverCooldownDays);
        c.saverDetail =
            left == 1 ? std::string("Ready again tomorrow") : "Ready again in " + days(left);
    }

    if (engine.clockStatus().kind == ClockStatus::Kind::behind) {
        c.state = CheckInContent::State::clockBehind;
        CheckInOutcome behind;
        behind.kind = CheckInOutcome::Kind::clockBehind;
        behind.collectAfter = engine.lastSeen().value_or(engine.trustedNow());
        c.title = behind.message(engine.calendar());
        c.detail = "Check-ins and Golden Fish resume when your clock catches up.";
        c.button = "Collect";
        if (streak.current > 0) c.streak = std::to_string(streak.current) + "-day streak";
        return c;
    }

    switch (card.kind) {
        case CheckInCard::Kind::collected:
            c.state = CheckInContent::State::collected;
            c.title = card.title;
            c.detail = (streak.current <= 1
                            ? std::string("New streak starts today. ")
                            : "Day " + std::to_string(streak.current) + " of your streak. ") +
                       tomorrowLine(card.reward);
            c.button = "Collected";
            break;
        case CheckInCard::Kind::savingYesterday:
            c.state = CheckInContent::State::savingYesterday;
            c.title = card.title;
            c.detail = card.detail;
            break;
        case CheckInCard::Kind::newStreak: {
            c.state = CheckInContent::State::newStreak;
            c.title = card.title;
            if (streak.totalCheckIns == 0) {
                c.detail = "Check in every day: " + std::to_string(R::checkInBase) +
                           " Fish today, " + std::to_string(R::streakStep) +
                           " more each day after.";
            } else {
                const std::string today = engine.dayKey(engine.trustedNow());
                const auto gap = streak.lastCheckInDay
                                     ? DayKey::distance(*streak.lastCheckInDay, today)
                                     : std::nullopt;
                c.detail = gap && *gap > 1 ? "Your last check-in was " + days(*gap) + " ago."
                                           : std::string("Your streak starts over today.");
            }
            break;
        }
        case CheckInCard::Kind::ready: {
            c.state = CheckInContent::State::ready;
            c.title = card.title;
            const int64_t day = engine.preview(engine.dayKey(engine.trustedNow())).day;
            // The day that earns the secret mascot is worth a word, without naming the secret.
            c.detail =
                day == Catalog::secretStreakDays && !engine.inventory().owns(Catalog::secretId)
                    ? "Collect today for " + std::to_string(day) + " days in a row."
                    : "Check in today to keep it going. " + tomorrowLine(R::checkInReward(day + 1));
            break;
        }
    }
    if (c.state != CheckInContent::State::collected) {
        c.canCollect = true;
        c.button = "Collect " + std::to_string(card.reward) + " Fish";
    }
    // The streak that stands today; a streak about to start over shows none.
    if (streak.current > 0 && c.state != CheckInContent::State::newStreak)
        c.streak = std::to_string(streak.current) + "-day streak";
    return c;
}

CheckInNote describeCollect(const CheckInOutcome& outcome,
                            const std::vector<EconomyMoment>& moments, const Calendar& calendar) {
    CheckInNote note;
    note.headline = outcome.message(calendar);
    if (outcome.kind == CheckInOutcome::Kind::clockBehind) {
        note.lines.push_back(outcome.detail());
        return note;
    }
    for (const EconomyMoment& m : moments) {
        using K = EconomyMoment::Kind;
        if (m.kind == K::saverUsed || m.kind == K::streakBroken || m.kind == K::mascotEarned)
            note.lines.push_back(m.text);
    }
    return note;
}

// --- Golden Fish -------------------------------------------------------------------------

GoldenFishTileContent describeGoldenFish(const EconomyEngine& engine) {
    GoldenFishTileContent g;
    const GoldenFishStatus s = engine.goldenFish();
    g.caught = std::to_string(s.caughtToday) + " of " + std::to_string(s.dailyMax) + " today";
    g.caughtToday = s.caughtToday;
    g.dailyMax = s.dailyMax;
    if (engine.activeGoldenFish() && engine.goldenFishEnabled()) {
        g.swimming = true;
        g.status = "Swimming across the header now";
    } else if (engine.clockStatus().kind == ClockStatus::Kind::behind) {
        g.status = "Paused until your clock catches up";
    } else {
        g.status = s.text();
    }
    return g;
}

std::string catchReaction(const CatchResult& result) {
    switch (result.kind) {
        case CatchResult::Kind::caught:
            return signedFish(result.fish);
        case CatchResult::Kind::tooLate:
            return "Too late";
        case CatchResult::Kind::dailyMaxReached:
            return "Daily max reached";
        case CatchResult::Kind::noSuchFish:
            return {};
    }
    return {};
}

// --- banners -----------------------------------------------------------------------------

std::vector<ShopBanner> describeBanners(const std::vector<ShopNotice>& pending,
                                        const ClockStatus& clock) {
    std::vector<ShopBanner> banners;
    for (const ShopNotice& notice : pending) {
        using K = ShopNotice::Kind;
        ShopBanner b{notice.kind, notice.title(), notice.body(), "exclamationmark.triangle.fill",
                     true};
        switch (notice.kind) {
            case K::clockBehind:
                if (clock.kind != ClockStatus::Kind::behind) continue;
                b.symbol = "clock.fill";
                break;
            case K::clockJumpedForward:
                if (clock.kind != ClockStatus::Kind::jumpedForward) continue;
                b.symbol = "clock.fill";
                b.warning = false;
                break;
            case K::balanceCorrected:
                b.symbol = "checkmark.seal.fill";
                b.warning = false;
                break;
            case K::restoredFromBackup:
                b.symbol = "arrow.counterclockwise";
                break;
            default:
                break;
        }
        banners.push_back(std::move(b));
    }
    return banners;
}

}  // namespace trotlet::shop
