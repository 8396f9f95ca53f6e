#include "EngineFixture.h"

namespace trotlet::shop {
namespace {

using testing::EngineFixture;

TEST_F(EngineFixture, CreditsOnlyTheActivePartOfATick) {
    const struct {
        double elapsed, idle, credited;
    } cases[] = {
        {60, 0, 60}, {60, 290, 60}, {60, 330, 30}, {60, 400, 0}, {60, 299.5, 60},
        {181, 0, 0}, {180, 0, 180}, {0, 0, 0},    {-5, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << "elapsed " << c.elapsed << " idle " << c.idle);
        const double before = engine->today().activeSeconds;
        clock.advance(std::max(c.elapsed, 0.0));
        engine->tickPassive(c.elapsed, c.idle);
        EXPECT_DOUBLE_EQ(engine->today().activeSeconds - before, c.credited);
        EXPECT_EQ(engine->isUserActive(), c.idle < 300);
    }
}

TEST_F(EngineFixture, PaysOneFishPerTenActiveMinutesWithoutLosingFractions) {
    work(540);
    work(59);
    EXPECT_EQ(engine->wallet().balance(), 0);
    EXPECT_NEAR(engine->nextFish().secondsRemaining, 1, 1e-9);
    work(1);
    EXPECT_EQ(engine->wallet().balance(), 1);
    // Odd tick lengths still add up exactly.
    work(1199, 0, 37);
    EXPECT_EQ(engine->wallet().balance(), 2);
    work(1);
    EXPECT_EQ(engine->wallet().balance(), 3);
    // One growing Paw-time row for the day.
    ASSERT_EQ(engine->wallet().ledger().size(), 1u);
    EXPECT_EQ(engine->wallet().ledger()[0].merged, 3);
    expectWalletHealthy();
}

TEST_F(EngineFixture, StopsAtTheDailyCapAndTheLuckyCatRaisesIt) {
    work(28800);
    EXPECT_EQ(engine->today().passiveFish, 48);
    work(3600);
    EXPECT_EQ(engine->today().passiveFish, 48);
    EXPECT_TRUE(engine->nextFish().capReached);

    // Next day from 05:00 (after the night-owl hours), with Maneki equipped from the start.
    clock.advance(10 * 3600);
    engine->grantDebugFish(2000, "test");
    ASSERT_EQ(engine->buy("maneki").kind, PurchaseResult::Kind::bought);
    ASSERT_TRUE(engine->equip("maneki"));
    EXPECT_DOUBLE_EQ(engine->passiveMultiplier(), 1.1);
    EXPECT_EQ(engine->passiveDailyCap(), 53);
    work(32000);
    EXPECT_EQ(engine->today().day, "2026-10-02");
    EXPECT_EQ(engine->today().passiveFish, 53);
    EXPECT_EQ(engine->wallet().earned(clock.wall()), 53);
    expectWalletHealthy();
}

TEST_F(EngineFixture, WelcomeGiftOnceAndOnlyForANewUser) {
    EXPECT_TRUE(engine->grantWelcomeGiftIfNeeded());
    EXPECT_FALSE(engine->grantWelcomeGiftIfNeeded());
    // 100 for the gift and 50 for Hello, Human.
    EXPECT_EQ(engine->wallet().balance(), 150);
    EXPECT_TRUE(engine->achievements().isUnlocked(AchievementID::helloHuman));

    // A state that lost its flag but has history is not new.
    ShopState old = engine->state();
    old.welcomeGiftGranted = false;
    start(old);
    EXPECT_FALSE(engine->grantWelcomeGiftIfNeeded());
    EXPECT_EQ(engine->wallet().balance(), 150);
    EXPECT_TRUE(engine->welcomeGiftGranted());
}

TEST_F(EngineFixture, AchievementCountersPayOnceEach) {
    engine->grantWelcomeGiftIfNeeded();
    for (int i = 0; i < 30; ++i) {
        engine->handle(EconomyEvent::panelOpened);
        engine->handle(EconomyEvent::panelClosed);
    }
    for (int i = 0; i < 60; ++i) engine->handle(EconomyEvent::pet);
    engine->handle(EconomyEvent::processQuit);
    engine->handle(EconomyEvent::mascotOverheated);
    engine->handle(EconomyEvent::mascotOverheated);
    engine->addDistance(42195);
    engine->addDownloaded(10e9);
    engine->addSleep(3600);
    // 95% CPU for 30 s, sampled every 2 s.
    for (int i = 0; i <= 15; ++i) {
        engine->recordSample({0.97, "cc1plus", 71.0});
        clock.advance(2);
    }
    // Night owl: active use at 02:30 local.
    clock.advance(86400 - 9 * 3600 - 32 + 2.5 * 3600);
    work(60);

    for (auto id : {AchievementID::helloHuman, AchievementID::curiousPaws, AchievementID::goodKitty,
                    AchievementID::cleanupCrew, AchievementID::hotPaws, AchievementID::marathon,
                    AchievementID::dataHoarder, AchievementID::catNap, AchievementID::fullThrottle,
                    AchievementID::nightOwl})
        EXPECT_TRUE(engine->achievements().isUnlocked(id)) << Achievement::nameOf(id);
    EXPECT_EQ(engine->achievements().totalRewardsEarned(), 50 + 25 + 50 + 25 + 75 + 150 + 75 + 50 + 50 + 50);
    int64_t achievementFish = 0;
    for (const auto& row : engine->wallet().ledger())
        if (row.reason.kind() == LedgerReason::Kind::achievement) achievementFish += row.amount;
    EXPECT_EQ(achievementFish, engine->achievements().totalRewardsEarned());
    EXPECT_EQ(engine->lifetime().fullThrottleMoments, 1);
    EXPECT_EQ(engine->today().peakCPUProcess, "") << "the day rolled over since";
    expectWalletHealthy();
}

TEST_F(EngineFixture, FullThrottleNeedsThirtyUnbrokenSeconds) {
    const auto feed = [&](std::initializer_list<std::pair<double, double>> samples) {
        for (auto [load, gap] : samples) {
            engine->recordSample({load, "x", std::nullopt});
            clock.advance(gap);
        }
    };
    // 28 s high, a dip, 28 s high again: nothing.
    feed({{0.96, 14}, {0.96, 14}, {0.96, 1}, {0.50, 1}, {0.96, 14}, {0.96, 14}, {0.96, 1}});
    EXPECT_FALSE(engine->achievements().isUnlocked(AchievementID::fullThrottle));
    // A 40-second gap between two high samples is no proof of 30 s held.
    feed({{0.99, 40}, {0.99, 1}});
    EXPECT_FALSE(engine->achievements().isUnlocked(AchievementID::fullThrottle));
    feed({{0.99, 10}, {0.99, 10}, {0.99, 10}, {0.99, 1}});
    EXPECT_TRUE(engine->achievements().isUnlocked(AchievementID::fullThrottle));
    EXPECT_EQ(engine->today().panicMoments, 2);
}

}  // namespace
}  // namespace trotlet::shop
