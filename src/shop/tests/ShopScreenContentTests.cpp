// What the Shop tab says for states of the economy.
#include <limits>

#include "EngineFixture.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopScreenContent.h"

namespace trotlet::shop {
namespace {

using testing::day1;
using testing::EngineFixture;
using State = CheckInContent::State;

TEST_F(EngineFixture, CheckInCardForEachDemoState) {
    struct Row {
        ShopDemo demo;
        State state;
        std::string title, button, streak;
    };
    const std::vector<Row> rows = {
        {ShopDemo::newUser, State::newStreak, "Start a streak today", "Collect 10 Fish", ""},
        {ShopDemo::midGame, State::ready, "Day 2 of your streak", "Collect 15 Fish",
         "1-day streak"},
        {ShopDemo::streak29, State::ready, "Day 30 of your streak", "Collect 40 Fish",
         "29-day streak"},
        {ShopDemo::saverUsed, State::ready, "Day 9 of your streak", "Collect 40 Fish",
         "8-day streak"},
        {ShopDemo::rich, State::ready, "Day 11 of your streak", "Collect 40 Fish", "10-day streak"},
        {ShopDemo::complete, State::ready, "Day 32 of your streak", "Collect 40 Fish",
         "31-day streak"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(ShopDemoNames[size_t(row.demo)]));
        start(buildShopDemo(row.demo, day1));
        const CheckInContent c = describeCheckIn(*engine);
        EXPECT_EQ(c.state, row.state);
        EXPECT_EQ(c.title, row.title);
        EXPECT_EQ(c.button, row.button);
        EXPECT_TRUE(c.canCollect);
        EXPECT_EQ(c.streak, row.streak);
        ASSERT_EQ(c.week.size(), 7u);
        EXPECT_EQ(c.week[3].kind, StreakDot::Kind::today) << "1 October 2026 is a Thursday";

        engine->checkInOutcome();
        const CheckInContent after = describeCheckIn(*engine);
        EXPECT_EQ(after.state, State::collected);
        EXPECT_FALSE(after.canCollect);
        EXPECT_EQ(after.button, "Collected");
    }
}

TEST_F(EngineFixture, CheckInCardWordsAroundMissedDaysAndTheClock) {
    // A new user's empty days before the first check-in are not misses.
    start(buildShopDemo(ShopDemo::newUser, day1));
    EXPECT_TRUE(describeCheckIn(*engine).week[0].beforeFirstCheckIn);
    EXPECT_EQ(describeCheckIn(*engine).week[0].accessibleName, "Monday: no check-in");

    start(buildShopDemo(ShopDemo::streak29, day1));
    clock.advance(86400);  // yesterday missed, the saver ready
    CheckInContent c = describeCheckIn(*engine);
    EXPECT_EQ(c.state, State::savingYesterday);
    EXPECT_EQ(c.title, "Saving yesterday");
    EXPECT_EQ(c.detail,
              "You missed yesterday. Collect today and your streak saver keeps the streak going.");
    EXPECT_EQ(c.saverTitle, "Streak saver ready");
    EXPECT_EQ(c.saverDetail, "Miss a day and your streak survives. Recharges every 7 days.");

    clock.advance(86400);  // two days missed: the streak starts over
    c = describeCheckIn(*engine);
    EXPECT_EQ(c.state, State::newStreak);
    EXPECT_EQ(c.title, "New streak starts today");
    EXPECT_EQ(c.detail, "Your last check-in was 3 days ago.");
    EXPECT_EQ(c.streak, "");
    std::vector<EconomyMoment> seen;
    engine->setMomentCallback([&](const EconomyMoment& m) { seen.push_back(m); });
    const CheckInNote note = describeCollect(engine->checkInOutcome(), seen, calendar);
    EXPECT_EQ(note.headline, "+10 Fish, day 1 of your streak");
    EXPECT_EQ(note.lines, std::vector<std::string>{"29-day streak ended. Day 1 starts now."});
    c = describeCheckIn(*engine);
    EXPECT_EQ(c.title, "Collected today, best is 29");
    EXPECT_EQ(c.detail, "New streak starts today. Tomorrow: \xF0\x9F\x90\x9F 15");

    // The clock set back a day: the card waits for it.
    start(buildShopDemo(ShopDemo::midGame, day1));
    clock.setWall(day1 - 86400);
    engine->observeClock();
    c = describeCheckIn(*engine);
    EXPECT_EQ(c.state, State::clockBehind);
    EXPECT_EQ(c.title, "Your computer's clock is behind. Collect after 2026-10-01 09:00.");
    EXPECT_EQ(c.detail, "Check-ins and Golden Fish resume when your clock catches up.");
    EXPECT_FALSE(c.canCollect);
    EXPECT_EQ(describeGoldenFish(*engine).status, "Paused until your clock catches up");
}

TEST_F(EngineFixture, CollectingTheThirtiethDayEarnsTheLegend) {
    start(buildShopDemo(ShopDemo::streak29, day1));
    std::vector<EconomyMoment> seen;
    engine->setMomentCallback([&](const EconomyMoment& m) { seen.push_back(m); });
    const CheckInNote note = describeCollect(engine->checkInOutcome(), seen, calendar);
    EXPECT_EQ(note.headline, "+40 Fish, day 30 of your streak");
    EXPECT_EQ(note.lines.back(), "30 days in a row. The legend is yours.");
    EXPECT_EQ(describeCheckIn(*engine).title, "Collected today, your best yet");
}

TEST_F(EngineFixture, WalletWordsComeFromTheRules) {
    start(buildShopDemo(ShopDemo::rich, day1));
    WalletContent w = describeWallet(*engine);
    EXPECT_EQ(w.rate, "1 Fish every 10 min");
    ASSERT_EQ(w.howToEarn.size(), 4u);
    EXPECT_EQ(w.howToEarn[0].detail,
              "1 Fish every 10 min while you're at your computer, up to 48 a day");
    EXPECT_EQ(w.howToEarn[1].detail, "10 Fish on day 1, 5 more each day of a streak, up to 40");
    EXPECT_EQ(w.howToEarn[2].detail, "5 Fish for each one you catch in the header, up to 3 a day");
    EXPECT_EQ(w.howToEarn[3].detail, "14 goals worth 1,300 Fish in all");

    ASSERT_EQ(engine->buy("maneki").kind, PurchaseResult::Kind::bought);
    engine->equip("maneki");
    work(300);
    w = describeWallet(*engine);
    EXPECT_EQ(w.rate, "1 Fish every 10 min, +10% from Maneki");
    EXPECT_EQ(w.howToEarn[0].detail,
              "1 Fish every 10 min while you're at your computer, up to 53 a day");
    EXPECT_EQ(w.nextFish, "Next Fish in 5 min") << "270 weighted seconds of 600 to go at 1.1";
    work(60, 400);
    EXPECT_EQ(describeWallet(*engine).nextFish, "Paused while you're away");
}

TEST(CatalogCard, EachStatusHasItsActionAndWords) {
    using K = ItemStatus::Kind;
    using A = CatalogCard::Action;
    struct Row {
        std::string id;
        ItemStatus status;
        int64_t balance, streak;
        struct {
            CatalogCard::Action action;
            std::string label, note, highlight;
            bool tryOn, secret;
        } want;
    };
    const std::string perk = "Earns 10% more Paw-time Fish while equipped";
    const std::vector<Row> rows = {
        {"shiba", {K::needsFish, 1}, 249, 0, {A::none, "", "1 more Fish", "", true, false}},
        {"shiba", {K::canBuy}, 250, 0, {A::buy, "Buy", "", "", true, false}},
        {"shiba", {K::owned}, 0, 0, {A::equip, "Equip", "", "", false, false}},
        {"cat", {K::equipped}, 0, 0, {A::none, "", "Equipped", "", false, false}},
        {"maneki", {K::canBuy}, 5000, 0, {A::buy, "Buy", "", perk, true, false}},
        {"goldenCat", {K::notForSale}, 99999, 12,
         {A::none, "", "Day 12 of 30", "A secret. Keep your streak going.", false, true}},
        {"goldenCat", {K::owned}, 0, 31,
         {A::equip, "Equip", "", "30 days in a row. The legend is yours.", false, false}},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.id + " " + std::to_string(r.balance));
        const CatalogCard c =
            describeCatalogItem(*Catalog::item(r.id), r.status, r.balance, r.streak, false);
        EXPECT_EQ(c.action, r.want.action);
        EXPECT_EQ(c.actionLabel, r.want.label);
        EXPECT_EQ(c.note, r.want.note);
        EXPECT_EQ(c.highlight, r.want.highlight);
        EXPECT_EQ(c.canTryOn, r.want.tryOn);
        EXPECT_EQ(c.secret, r.want.secret);
    }
    EXPECT_EQ(purchaseQuestion(*Catalog::item("shiba")), "Adopt Kibo for 250 Fish?");
    const CatalogCard trying =
        describeCatalogItem(*Catalog::item("fox"), {K::needsFish, 9}, 491, 0, true);
    EXPECT_EQ(trying.badgeText, "Trying on");
    EXPECT_EQ(trying.tryOnLabel, "Stop");
    EXPECT_EQ(ownedSummary(Inventory({"cat", "shiba", "goldenCat"}, "cat")), "3 of 13 owned");
    EXPECT_EQ(welcomeTitle(*Catalog::item("shiba")), "Welcome home, Kibo");
}

TEST(AchievementProgress, ReadsAsProgressOverGoalWithItsUnit) {
    EXPECT_EQ(achievementProgressText(12, 25, "times"), "12/25 times");
    EXPECT_EQ(achievementProgressText(3.14, 42.195, "km"), "3.1/42.195 km");
    EXPECT_EQ(achievementProgressText(42.19, 42.195, "km"), "42.1/42.195 km")
        << "never looks reached early";
    EXPECT_EQ(achievementProgressText(0, 1, ""), "0/1");
    EXPECT_EQ(achievementProgressText(0.45, 1, "h"), "0.4/1 h");
    EXPECT_EQ(achievementProgressText(60, 50, "pets"), "50/50 pets");
}

TEST_F(EngineFixture, AchievementTilesCarryTheirUnlockDay) {
    start(buildShopDemo(ShopDemo::newUser, day1));
    const auto tiles = describeAchievements(engine->achievements(), engine->wallet().ledger());
    ASSERT_EQ(tiles.size(), 14u);
    EXPECT_TRUE(tiles[0].unlocked);
    ASSERT_TRUE(tiles[0].unlockedAt.has_value());
    EXPECT_EQ(DayKey::of(*tiles[0].unlockedAt, calendar), "2026-10-01");
    EXPECT_EQ(tiles[1].progress, "0/25 times");
    EXPECT_EQ(tiles[1].reward, "+25");
    const AchievementsSummary s = summarizeAchievements(engine->achievements());
    EXPECT_EQ(s.count, "1 of 14");
    EXPECT_EQ(s.reward, "50 of 1,300 Fish earned");
}

TEST_F(EngineFixture, LedgerReadsNewestFirstByDayWithTheCarryoverLast) {
    engine->grantWelcomeGiftIfNeeded();
    work(1800);  // three Paw-time Fish in one growing row
    clock.advance(86400);
    engine->checkInOutcome();
    ASSERT_EQ(engine->buy("shiba").kind, PurchaseResult::Kind::notEnoughFish);
    engine->grantDebugFish(200, "test");
    ASSERT_EQ(engine->buy("shiba").kind, PurchaseResult::Kind::bought);
    // A long history folds its oldest rows into a carryover row.
    std::vector<LedgerEntry> ledger = engine->wallet().ledger();
    ledger.insert(ledger.begin(),
                  LedgerEntry{"old", day1 - 40 * 86400, 7, LedgerReason::carryover(), 7, 30});

    const auto sections = describeLedger(ledger, calendar, clock.wall());
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].label, LedgerSection::Label::today);
    EXPECT_EQ(sections[1].label, LedgerSection::Label::yesterday);
    EXPECT_EQ(sections[2].label, LedgerSection::Label::earlier);
    const auto& today = sections[0].rows;
    ASSERT_EQ(today.size(), 3u);
    EXPECT_EQ(today[0].title, "Adopted Kibo");
    EXPECT_EQ(today[0].subtitle, "Kibo the Shiba");
    EXPECT_EQ(today[0].amount,
              "\xE2\x88\x92"
              "250");
    EXPECT_EQ(today[0].sign, -1);
    EXPECT_EQ(today[2].title, "Daily check-in");
    const auto& paw = sections[1].rows[0];
    EXPECT_EQ(paw.subtitle, "3 Fish for active minutes");
    EXPECT_EQ(paw.amount, "+3");
    EXPECT_EQ(sections[2].rows[0].title, "Earlier history");
    EXPECT_EQ(signedFish(std::numeric_limits<int64_t>::min()),
              "\xE2\x88\x92"
              "9,223,372,036,854,775,808");
}

TEST(ShopBanners, ClockBannersLastAsLongAsTheClockState) {
    ShopNotices notices;
    notices.raise({ShopNotice::Kind::clockBehind});
    ShopNotice restored{ShopNotice::Kind::restoredFromBackup};
    restored.fileName = "shop.corrupt-20261001-142210.json";
    notices.raise(restored);
    EXPECT_FALSE(notices.raise(restored)) << "not stacked";

    ClockStatus behind{ClockStatus::Kind::behind};
    auto banners = describeBanners(notices.pending(), behind);
    ASSERT_EQ(banners.size(), 2u);
    EXPECT_EQ(banners[0].title, "Your clock went back in time");
    EXPECT_EQ(banners[1].title, "Shop data restored");
    EXPECT_TRUE(banners[1].body.ends_with("shop.corrupt-20261001-142210.json"));
    banners = describeBanners(notices.pending(), ClockStatus{});
    ASSERT_EQ(banners.size(), 1u) << "the clock is right again";
    EXPECT_EQ(banners[0].kind, ShopNotice::Kind::restoredFromBackup);
}

}  // namespace
}  // namespace trotlet::shop
