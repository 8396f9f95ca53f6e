#include "EngineFixture.h"

namespace trotlet::shop {
namespace {

using testing::EngineFixture;
using testing::day1;

TEST(GoldenFishDraws, AreSplitMix64FromTheStoredState) {
    // The reference sequence of SplitMix64 seeded with 0.
    uint64_t state = 0;
    const auto draws = drawGoldenFish(state);
    const uint64_t expected[] = {0xE220A8397B1DCDAFULL, 0x6E789E6AA1B965F4ULL, 0x06C45D188009454FULL,
                                 0xF88BB8A8724C81ECULL};
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(draws[i], static_cast<double>(expected[i] >> 11) * 0x1.0p-53) << i;
    EXPECT_EQ(state, 4 * SplitMix64::gamma);
    SplitMix64 reference{0};
    for (int i = 0; i < 4; ++i) reference.next();
    const auto next = drawGoldenFish(state);
    EXPECT_EQ(next[0], SplitMix64::unit(reference.next()));
}

struct GoldenFishFixture : EngineFixture {
    // Steps real time in 0.5 s slices until a fish swims or `limit` seconds pass.
    std::optional<double> waitForFish(double limit) {
        for (double waited = 0; waited <= limit; waited += 0.5) {
            engine->advanceGoldenFish();
            if (engine->activeGoldenFish()) return waited;
            clock.advance(0.5);
        }
        return std::nullopt;
    }
    CatchResult catchAfter(double seconds) {
        clock.advance(seconds);
        return engine->catchGoldenFish(engine->activeGoldenFish()->id);
    }
};

TEST_F(GoldenFishFixture, FirstFishAfterNineHundredOpenSecondsThenDrawnThresholds) {
    engine->handle(EconomyEvent::panelOpened);
    EXPECT_EQ(engine->nextGoldenFishEventDate(), day1 + 900);
    EXPECT_EQ(waitForFish(1200), 900.0);

    uint64_t state = 7;
    const auto draws = drawGoldenFish(state);
    const GoldenFishSpawn& fish = *engine->activeGoldenFish();
    EXPECT_EQ(fish.id, 1);
    EXPECT_DOUBLE_EQ(fish.lane, 0.18 + 0.42 * draws[0]);
    EXPECT_EQ(fish.direction, draws[1] < 0.5);
    EXPECT_NEAR(fish.endsAt - fish.spawnedAt, 4.2, 1e-6);
    EXPECT_DOUBLE_EQ(engine->goldenFishState().openSecondsUntilNext, 900 + 240 * draws[3]);
    EXPECT_EQ(engine->goldenFishState().randomState, state);

    const CatchResult caught = catchAfter(4.6);
    EXPECT_EQ(caught.kind, CatchResult::Kind::caught);
    EXPECT_EQ(caught.fish, 5);
    EXPECT_EQ(engine->wallet().balance(), 5);
    // The next one comes after the drawn threshold, counted from the spawn.
    EXPECT_EQ(engine->nextGoldenFishEventDate(), fish.spawnedAt + engine->goldenFishState().openSecondsUntilNext);
}

TEST_F(GoldenFishFixture, LateClicksMissAndTheDayCapsCatchesAndSpawns) {
    engine->handle(EconomyEvent::panelOpened);
    ASSERT_TRUE(waitForFish(1200));
    EXPECT_EQ(catchAfter(4.8).kind, CatchResult::Kind::tooLate);
    EXPECT_EQ(engine->lifetime().goldenFishMissed, 1);
    EXPECT_EQ(engine->wallet().balance(), 0);

    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(waitForFish(1200));
        EXPECT_GE(engine->activeGoldenFish()->spawnedAt - clock.wall(), -0.5);
        EXPECT_EQ(catchAfter(1).kind, CatchResult::Kind::caught);
    }
    EXPECT_EQ(engine->today().goldenFishCaught, 3);
    EXPECT_EQ(engine->nextGoldenFishEventDate(), std::nullopt);
    EXPECT_EQ(engine->goldenFish().text(), "Daily max reached. More tomorrow");
    EXPECT_FALSE(waitForFish(1300));

    // A fish forced past the cap pays nothing.
    engine->spawnGoldenFish(clock.wall());
    EXPECT_EQ(catchAfter(1).kind, CatchResult::Kind::dailyMaxReached);
    EXPECT_EQ(engine->wallet().balance(), 15);
    EXPECT_EQ(engine->catchGoldenFish(12345).kind, CatchResult::Kind::noSuchFish);
}

TEST_F(GoldenFishFixture, NoSixthSpawnOnADayWithFive) {
    engine->handle(EconomyEvent::panelOpened);
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(waitForFish(1200)) << i;
        clock.advance(5);
        engine->advanceGoldenFish();  // swims away uncaught
        EXPECT_FALSE(engine->activeGoldenFish());
    }
    EXPECT_EQ(engine->today().goldenFishSpawned, 5);
    EXPECT_EQ(engine->lifetime().goldenFishMissed, 5);
    EXPECT_FALSE(waitForFish(1300));
    // Tomorrow counts afresh.
    clock.advance(86400);
    engine->tickPassive(60, 0);
    EXPECT_TRUE(waitForFish(1200));
}

TEST_F(GoldenFishFixture, OpenTimeAddsUpAcrossPanelSessionsAndNeverInTheFirstSeconds) {
    engine->handle(EconomyEvent::panelOpened);
    clock.advance(899);
    engine->handle(EconomyEvent::panelClosed);
    EXPECT_EQ(engine->nextGoldenFishEventDate(), std::nullopt);
    clock.advance(3600);
    engine->handle(EconomyEvent::panelOpened);
    // One open second is missing, but the panel must settle for 2.5 s first.
    EXPECT_EQ(engine->nextGoldenFishEventDate(), clock.wall() + 2.5);
    EXPECT_EQ(waitForFish(10), 2.5);
    EXPECT_DOUBLE_EQ(engine->today().panelOpenSeconds, 899);
}

TEST_F(GoldenFishFixture, AClickWithTheClockBehindPaysNothing) {
    engine->handle(EconomyEvent::panelOpened);
    ASSERT_TRUE(waitForFish(1200));
    clock.advance(1);
    clock.shiftWall(-3600);
    EXPECT_EQ(engine->catchGoldenFish(engine->activeGoldenFish() ? engine->activeGoldenFish()->id : 1).kind,
              CatchResult::Kind::tooLate);
    EXPECT_EQ(engine->wallet().balance(), 0);
    EXPECT_EQ(engine->lifetime().goldenFishMissed, 1);
}

TEST_F(GoldenFishFixture, CountingPausesWhileTheUserIsAway) {
    engine->handle(EconomyEvent::panelOpened);
    work(300, 0);
    work(600, 900);  // away: the first 0 s count (idle already past 300)
    EXPECT_EQ(engine->goldenFish().kind, GoldenFishStatus::Kind::paused);
    EXPECT_EQ(engine->goldenFish().text(), "Paused while you're away");
    EXPECT_EQ(engine->nextGoldenFishEventDate(), std::nullopt);
    work(60, 0);
    EXPECT_EQ(engine->goldenFish().kind, GoldenFishStatus::Kind::counting);
    // 360 s counted before the away tick paused it (the tick that found the user idle).
    EXPECT_NEAR(*engine->goldenFish().secondsRemaining, 900 - 360, 1e-6);
}

}  // namespace
}  // namespace trotlet::shop
