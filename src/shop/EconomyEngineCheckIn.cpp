// EconomyEngine: daily check-ins, streaks and the reminder.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "shop/EconomyEngine.h"
#include "shop/PlatformNoun.h"

namespace trotlet::shop {

std::string CheckInOutcome::message(const Calendar& calendar) const {
    switch (kind) {
    case Kind::collected:
        return std::string("+").append(std::to_string(reward)).append(" Fish, day ").append(std::to_string(day)).append(" of your streak");
    case Kind::alreadyCollected: return "Come back tomorrow for " + std::to_string(reward) + " Fish";
    case Kind::clockBehind: {
        const double local = calendar.localSeconds(collectAfter);
        const long long secondOfDay = static_cast<long long>(std::floor(local)) -
                                      static_cast<long long>(std::floor(local / 86400)) * 86400;
        char time[32];
        std::snprintf(time, sizeof time, "%02d:%02d", static_cast<int>(secondOfDay / 3600 % 24),
                      static_cast<int>(secondOfDay / 60 % 60));
        return withPlatformNoun("Your ", "'s clock is behind. Collect after ") + DayKey::of(collectAfter, calendar) +
               " " + time + ".";
    }
    }
    return {};
}

std::string CheckInOutcome::detail() const {
    if (kind != Kind::clockBehind) return {};
    return "Trotlet already saw a later time today, so the check-in waits until your clock catches up.";
}

CheckInCard EconomyEngine::checkInCard() const {
    const std::string today = dayKey(trustedNow());
    CheckInCard card;
    const auto yesterday = DayKey::offset(today, -1).value_or(today);
    card.saverReady = !streak_.lastSaverDay ||
                      DayKey::distance(*streak_.lastSaverDay, yesterday).value_or(0) >= EconomyRules::streakSaverCooldownDays;
    if (streak_.lastCheckInDay == today) {
        card.kind = CheckInCard::Kind::collected;
        card.title = streak_.current >= streak_.best ? std::string("Collected today, your best yet")
                                                     : "Collected today, best is " + std::to_string(streak_.best);
        card.reward = EconomyRules::checkInReward(streak_.current + 1);
        return card;
    }
    const StreakPreview p = preview(today);
    card.reward = EconomyRules::checkInReward(p.day);
    if (p.savedDay) {
        card.kind = CheckInCard::Kind::savingYesterday;
        card.title = "Saving yesterday";
        card.detail = "You missed yesterday. Collect today and your streak saver keeps the streak going.";
    } else if (p.day == 1) {
        card.kind = CheckInCard::Kind::newStreak;
        card.title = streak_.totalCheckIns == 0 ? "Start a streak today" : "New streak starts today";
        card.detail = "New streak starts today. Tomorrow: 🐟";
    } else {
        card.kind = CheckInCard::Kind::ready;
        card.title = "Day " + std::to_string(p.day) + " of your streak";
        if (card.saverReady) card.detail = "Streak saver ready";
    }
    return card;
}

StreakPreview EconomyEngine::preview(const std::string& day) const {
    return previewStreak(streak_, day, EconomyRules::streakSaverCooldownDays);
}

CheckInOutcome EconomyEngine::checkInOutcome() {
    const ClockObservation seen = observeClock();
    CheckInOutcome outcome;
    if (seen.verdict == ClockVerdict::behind) {
        outcome.kind = CheckInOutcome::Kind::clockBehind;
        outcome.collectAfter = seen.trusted;
        return outcome;
    }
    const std::string t = dayKey(seen.trusted);
    if (streak_.lastCheckInDay == t) {
        outcome.kind = CheckInOutcome::Kind::alreadyCollected;
        outcome.day = streak_.current;
        outcome.reward = EconomyRules::checkInReward(streak_.current + 1);
        return outcome;
    }
    const StreakPreview p = preview(t);
    const int64_t reward = EconomyRules::checkInReward(p.day);

    streak_.current = p.day;
    streak_.best = std::max(streak_.best, p.day);
    streak_.lastCheckInDay = t;
    ++streak_.totalCheckIns;
    appendKeepingNewest(streak_.checkInDays, t);
    if (p.savedDay) {
        streak_.lastSaverDay = p.savedDay;
        appendKeepingNewest(streak_.savedDays, *p.savedDay);
    }
    wallet_.record(reward, LedgerReason::checkIn(p.day), false);

    setAchievementProgress(AchievementID::weekStreak, static_cast<double>(p.day));
    setAchievementProgress(AchievementID::monthlyRegular, static_cast<double>(p.day));
    outcome.unlocked = evaluateUnlocks();

    if (p.savedDay)
        moment(EconomyMoment::Kind::saverUsed, "Your streak saver covered a missed day. It recharges in 7 days.");
    if (p.resetFrom && *p.resetFrom >= 2)
        moment(EconomyMoment::Kind::streakBroken, std::to_string(*p.resetFrom) + "-day streak ended. Day 1 starts now.");
    changed();

    outcome.kind = CheckInOutcome::Kind::collected;
    outcome.day = p.day;
    outcome.reward = reward;
    outcome.savedDay = p.savedDay;
    outcome.resetFrom = p.resetFrom;
    outcome.clockAhead = seen.verdict == ClockVerdict::ahead;
    return outcome;
}

std::vector<StreakDot> EconomyEngine::streakWeek() const {
    const std::string today = dayKey(trustedNow());
    // Weeks start on Monday; day 0 of the Unix calendar was a Thursday.
    const auto sinceEpoch = DayKey::distance("1970-01-01", today).value_or(0);
    const long long weekday = ((sinceEpoch % 7) + 7 + 3) % 7;  // 0 = Monday
    std::vector<StreakDot> dots;
    for (long long i = 0; i < 7; ++i) {
        const std::string day = DayKey::offset(today, i - weekday).value_or(today);
        const auto has = [&](const std::vector<std::string>& days) {
            return std::find(days.begin(), days.end(), day) != days.end();
        };
        StreakDot::Kind kind = StreakDot::Kind::missed;
        if (has(streak_.checkInDays)) kind = StreakDot::Kind::checkedIn;
        else if (has(streak_.savedDays)) kind = StreakDot::Kind::saved;
        else if (day == today) kind = StreakDot::Kind::today;
        else if (i > weekday) kind = StreakDot::Kind::future;
        dots.push_back({day, kind});
    }
    return dots;
}

bool EconomyEngine::isCheckInReminderDue(bool enabled, const std::optional<std::string>& lastRemindedDay) const {
    if (!enabled) return false;
    const ClockObservation seen = clock_.evaluate(clockSource_.read());
    if (seen.verdict == ClockVerdict::behind) return false;
    const std::string today = dayKey(seen.trusted);
    if (streak_.lastCheckInDay == today || lastRemindedDay == today) return false;
    return calendar_.localHour(seen.trusted) >= 18;
}

}  // namespace trotlet::shop
