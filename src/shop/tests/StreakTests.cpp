#include "EngineFixture.h"

namespace trotlet::shop {
namespace {

using testing::EngineFixture;
using testing::day1;
using Kind = CheckInOutcome::Kind;

struct StreakStep {
    double advanceDays;  // real time before the check-in
    Kind kind;
    int64_t day;
    int64_t reward;
    std::optional<std::string> saved;
    std::optional<int64_t> resetFrom;
};

void runTimeline(EngineFixture& f, const std::vector<StreakStep>& steps) {
    for (size_t i = 0; i < steps.size(); ++i) {
        const auto& s = steps[i];
        SCOPED_TRACE(::testing::Message() << "step " << i);
        f.clock.advance(s.advanceDays * 86400);
        const CheckInOutcome out = f.engine->checkInOutcome();
        EXPECT_EQ(out.kind, s.kind);
        if (out.kind == Kind::collected) {
            EXPECT_EQ(out.day, s.day);
            EXPECT_EQ(out.reward, s.reward);
            EXPECT_EQ(out.savedDay, s.saved);
            EXPECT_EQ(out.resetFrom, s.resetFrom);
        }
    }
}

TEST_F(EngineFixture, ConsecutiveDaysBuildTheStreakAndTheRewardCapsAtForty) {
    std::vector<StreakStep> steps = {{0, Kind::collected, 1, 10, {}, {}}};
    const int64_t rewards[] = {15, 20, 25, 30, 35, 40, 40, 40};
    for (int64_t d = 2; d <= 9; ++d) steps.push_back({1, Kind::collected, d, rewards[d - 2], {}, {}});
    runTimeline(*this, steps);
    EXPECT_EQ(EconomyRules::checkInReward(30), 40);
    EXPECT_EQ(engine->streak().current, 9);
    EXPECT_TRUE(engine->achievements().isUnlocked(AchievementID::weekStreak));
    expectWalletHealthy();
}

TEST_F(EngineFixture, SaverBridgesOneMissedDayThenNeedsSevenDaysToRecharge) {
    runTimeline(*this, {
        {0, Kind::collected, 1, 10, {}, {}},        // 10-01
        {1, Kind::collected, 2, 15, {}, {}},        // 10-02
        {2, Kind::collected, 4, 25, "2026-10-03", {}},  // 10-04, 10-03 saved
        {2, Kind::collected, 1, 10, {}, 4},         // 10-06: saver used 3 days ago, reset
        {1, Kind::collected, 2, 15, {}, {}},        // 10-07
        {1, Kind::collected, 3, 20, {}, {}},        // 10-08
        {1, Kind::collected, 4, 25, {}, {}},        // 10-09
        {2, Kind::collected, 6, 35, "2026-10-10", {}},  // 10-11: 7 days after the last saved day
    });
    EXPECT_EQ(engine->streak().savedDays, (std::vector<std::string>{"2026-10-03", "2026-10-10"}));
    EXPECT_EQ(engine->streak().best, 6);
    bool sawSaver = false, sawBroken = false;
    for (const auto& m : moments) {
        sawSaver |= m.kind == EconomyMoment::Kind::saverUsed;
        if (m.kind == EconomyMoment::Kind::streakBroken) {
            sawBroken = true;
            EXPECT_EQ(m.text, "4-day streak ended. Day 1 starts now.");
        }
    }
    EXPECT_TRUE(sawSaver);
    EXPECT_TRUE(sawBroken);
}

TEST_F(EngineFixture, TwoMissedDaysResetAndOnlyALongerStreakRaisesTheMoment) {
    runTimeline(*this, {
        {0, Kind::collected, 1, 10, {}, {}},
        {3, Kind::collected, 1, 10, {}, 1},
        {1, Kind::collected, 2, 15, {}, {}},
        {3, Kind::collected, 1, 10, {}, 2},
    });
    int broken = 0;
    for (const auto& m : moments) broken += m.kind == EconomyMoment::Kind::streakBroken;
    EXPECT_EQ(broken, 1);
}

TEST_F(EngineFixture, CheckInCardFollowsThePreview) {
    EXPECT_EQ(engine->checkInCard().title, "Start a streak today");
    ASSERT_EQ(engine->checkInOutcome().kind, Kind::collected);
    EXPECT_EQ(engine->checkInCard().title, "Collected today, your best yet");
    clock.advance(86400);
    EXPECT_EQ(engine->checkInCard().title, "Day 2 of your streak");
    EXPECT_EQ(engine->checkInCard().detail, "Streak saver ready");
    ASSERT_EQ(engine->checkInOutcome().day, 2);
    clock.advance(2 * 86400);
    const CheckInCard saving = engine->checkInCard();
    EXPECT_EQ(saving.title, "Saving yesterday");
    EXPECT_EQ(saving.reward, 25);
    ASSERT_EQ(engine->checkInOutcome().day, 4);
    clock.advance(3 * 86400);
    EXPECT_EQ(engine->checkInCard().title, "New streak starts today");
    ASSERT_EQ(engine->checkInOutcome().day, 1);
    EXPECT_EQ(engine->checkInCard().title, "Collected today, best is 4");
}

TEST_F(EngineFixture, TwiceADayPaysOnce) {
    runTimeline(*this, {{0, Kind::collected, 1, 10, {}, {}}, {0.3, Kind::alreadyCollected, 0, 0, {}, {}}});
    EXPECT_EQ(engine->checkInOutcome().reward, 15) << "tomorrow's reward";
    EXPECT_EQ(engine->wallet().balance(), 10);
    EXPECT_EQ(engine->streak().totalCheckIns, 1);
}

TEST_F(EngineFixture, ClockBackADayWaitsUntilRealTimeCatchesUp) {
    ASSERT_EQ(engine->checkInOutcome().kind, Kind::collected);
    clock.advance(3600);
    engine->tickPassive(60, 0);
    const Timestamp seen = *engine->lastSeen();
    clock.shiftWall(-86400);
    const CheckInOutcome rejected = engine->checkInOutcome();
    EXPECT_EQ(rejected.kind, Kind::clockBehind);
    EXPECT_EQ(rejected.collectAfter, seen);
    EXPECT_EQ(rejected.message(calendar), "Your computer's clock is behind. Collect after 2026-10-01 10:00.");
    EXPECT_EQ(engine->clockStatus().kind, ClockStatus::Kind::behind);
    ASSERT_EQ(engine->notices().pending().size(), 1u);
    EXPECT_EQ(engine->notices().pending()[0].title(), "Your clock went back in time");

    // 23 hours later the wall clock still reads before what was seen.
    clock.advance(23 * 3600);
    EXPECT_EQ(engine->checkInOutcome().kind, Kind::clockBehind);
    // Within a minute of the last seen time it's trusted again; it's still the same day.
    clock.advance(3600 - 30);
    EXPECT_EQ(engine->checkInOutcome().kind, Kind::alreadyCollected);
    EXPECT_EQ(engine->clockStatus().kind, ClockStatus::Kind::ok);
    // And the next real day pays day 2.
    clock.advance(86400);
    const CheckInOutcome next = engine->checkInOutcome();
    EXPECT_EQ(next.kind, Kind::collected);
    EXPECT_EQ(next.day, 2);
    EXPECT_EQ(engine->wallet().balance(), 25);
}

TEST_F(EngineFixture, ClockThirtyDaysAheadAdvancesTheStreakByExactlyOne) {
    ASSERT_EQ(engine->checkInOutcome().kind, Kind::collected);
    clock.advance(60);
    clock.shiftWall(30 * 86400);
    const CheckInOutcome ahead = engine->checkInOutcome();
    ASSERT_EQ(ahead.kind, Kind::collected);
    EXPECT_TRUE(ahead.clockAhead);
    EXPECT_EQ(ahead.day, 2);
    EXPECT_EQ(engine->clockStatus().kind, ClockStatus::Kind::jumpedForward);
    EXPECT_LE(*engine->lastSeen(), day1 + 60 + 26 * 3600 + 1e-6);

    // Repeated looks at the wrong clock don't stack further allowances.
    for (int i = 0; i < 50; ++i) {
        clock.advance(60);
        engine->tickPassive(60, 0);
        EXPECT_EQ(engine->checkInOutcome().kind, Kind::alreadyCollected);
    }
    EXPECT_LE(*engine->lastSeen(), day1 + 51 * 60 + 26 * 3600 + 1e-6);
    EXPECT_EQ(engine->streak().current, 2);

    // Setting it right: the day already used is not paid again; real days continue.
    clock.shiftWall(-30 * 86400);
    EXPECT_EQ(engine->checkInOutcome().kind, Kind::clockBehind);
    clock.advance(2 * 86400);
    const CheckInOutcome later = engine->checkInOutcome();
    EXPECT_EQ(later.kind, Kind::collected);
    EXPECT_EQ(later.day, 3);
}

TEST_F(EngineFixture, ARebootDropsTheAnchorButNotWhatWasSeen) {
    ASSERT_EQ(engine->checkInOutcome().kind, Kind::collected);
    clock.reboot("boot-2");
    clock.advance(3600);
    EXPECT_EQ(engine->observeClock().verdict, ClockVerdict::ok);
    clock.shiftWall(-7200);
    EXPECT_EQ(engine->observeClock().verdict, ClockVerdict::behind);
}

TEST_F(EngineFixture, SecretMascotOnTheThirtiethDay) {
    engine->grantDebugFish(100000, "rich");
    EXPECT_EQ(engine->buy("goldenCat").kind, PurchaseResult::Kind::notForSale);
    for (int d = 1; d <= 30; ++d) {
        EXPECT_FALSE(engine->inventory().owns("goldenCat")) << d;
        const CheckInOutcome out = engine->checkInOutcome();
        ASSERT_EQ(out.kind, Kind::collected);
        if (d == 30) {
            EXPECT_EQ(out.unlocked, std::vector<std::string>{"goldenCat"});
        } else {
            EXPECT_TRUE(out.unlocked.empty());
        }
        clock.advance(86400);
    }
    EXPECT_TRUE(engine->inventory().owns("goldenCat"));
    EXPECT_TRUE(engine->achievements().isUnlocked(AchievementID::monthlyRegular));
    EXPECT_EQ(engine->status(*Catalog::item("goldenCat")).kind, ItemStatus::Kind::owned);
    EXPECT_EQ(engine->streak().checkInDays.size(), 30u);
    expectWalletHealthy();
}

TEST_F(EngineFixture, WeekDotsAndTheEveningReminder) {
    // 2026-10-01 is a Thursday.
    ASSERT_EQ(engine->checkInOutcome().kind, Kind::collected);
    clock.advance(86400);
    const auto dots = engine->streakWeek();
    ASSERT_EQ(dots.size(), 7u);
    EXPECT_EQ(dots[0].day, "2026-09-28");
    EXPECT_EQ(dots[3].kind, StreakDot::Kind::checkedIn);
    EXPECT_EQ(dots[4].kind, StreakDot::Kind::today);
    EXPECT_EQ(dots[2].kind, StreakDot::Kind::missed);
    EXPECT_EQ(dots[5].kind, StreakDot::Kind::future);

    EXPECT_FALSE(engine->isCheckInReminderDue(true, std::nullopt)) << "09:00 is too early";
    clock.advance(9 * 3600);
    EXPECT_TRUE(engine->isCheckInReminderDue(true, std::nullopt));
    EXPECT_FALSE(engine->isCheckInReminderDue(false, std::nullopt));
    EXPECT_FALSE(engine->isCheckInReminderDue(true, "2026-10-02"));
    ASSERT_EQ(engine->checkInOutcome().kind, Kind::collected);
    EXPECT_FALSE(engine->isCheckInReminderDue(true, std::nullopt));
}

}  // namespace
}  // namespace trotlet::shop
