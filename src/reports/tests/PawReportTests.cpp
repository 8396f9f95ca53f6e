#include <gtest/gtest.h>

#include "reports/PawReport.h"
#include "shop/EconomyEngine.h"
#include "shop/ShopStateCodec.h"

namespace trotlet::reports {
namespace {

using shop::DailyCounters;

DailyCounters dayOf(const std::string& key, double meters = 0) {
    DailyCounters d;
    d.day = key;
    d.metersRun = meters;
    return d;
}

std::vector<std::string> keys(const std::vector<DailyCounters>& days) {
    std::vector<std::string> out;
    for (const auto& d : days) out.push_back(d.day);
    return out;
}

TEST(PastDays, StayInOrderOnePerDayBeforeTodayAndAtMostFiveWeeks) {
    auto tidy =
        shop::tidyPastDays({dayOf("2026-09-30", 1), dayOf("garbage"), dayOf("2026-09-28"),
                            dayOf("2026-09-30", 2), dayOf("2026-10-01"), dayOf("2026-10-05")},
                           "2026-10-01");
    EXPECT_EQ(keys(tidy), (std::vector<std::string>{"2026-09-28", "2026-09-30"}));
    EXPECT_EQ(tidy.back().metersRun, 2);  // the later entry for a day wins
    std::vector<DailyCounters> many;
    for (int i = 0; i < 50; ++i) many.push_back(dayOf(*shop::DayKey::offset("2026-08-01", i)));
    tidy = shop::tidyPastDays(many, "");
    ASSERT_EQ(tidy.size(), shop::pastDaysKept);
    EXPECT_EQ(tidy.back().day, "2026-09-19");
}

// The economy archives each day as it rolls over, with what it earned, and keeps five weeks.
TEST(PastDays, RollWithTheDayAndKeepWhatTheDayEarned) {
    shop::ManualClock clock(1790845200);  // 2026-10-01 09:00 UTC
    shop::FixedOffsetCalendar utc(0);
    shop::EconomyEngine engine(shop::ShopState::fresh(clock.wall(), 1), clock, utc, 3);
    engine.grantWelcomeGiftIfNeeded();
    engine.addDistance(1500);
    engine.handle(shop::EconomyEvent::panelOpened);
    const std::int64_t earned =
        engine.wallet().earned(clock.wall());  // the gift and its achievement
    ASSERT_GT(earned, 0);
    clock.advance(86400);
    engine.addDistance(200);  // the first counter of the new day rolls it
    ASSERT_EQ(engine.pastDays().size(), 1u);
    const DailyCounters& first = engine.pastDays().front();
    EXPECT_EQ(first.day, "2026-10-01");
    EXPECT_EQ(first.metersRun, 1500);
    EXPECT_EQ(first.panelOpens, 1);
    EXPECT_EQ(first.fishEarned, earned);
    EXPECT_EQ(engine.today().metersRun, 200);
    for (int i = 0; i < 40; ++i) {
        clock.advance(86400);
        engine.addDistance(10);
    }
    EXPECT_EQ(engine.pastDays().size(), shop::pastDaysKept);
    EXPECT_EQ(engine.pastDays().back().day, *shop::DayKey::offset(engine.today().day, -1));
}

TEST(PastDays, AFileFromBeforeTheHistoryLoadsUnchangedAndTheHistoryRoundTrips) {
    shop::FixedOffsetCalendar utc(0);
    const shop::ShopStateCodec codec(utc);
    const std::string old =
        R"({"schemaVersion":2,"balance":15,"ledger":[{"id":"a","date":"2026-09-30T10:00:00Z","amount":15,)"
        R"("reason":{"goldenFish":{}},"balanceAfter":15}],"today":{"day":"2026-10-01","metersRun":12}})";
    const auto decoded = codec.decode(old);
    ASSERT_TRUE(std::holds_alternative<shop::DecodedState>(decoded));
    shop::ShopState state = std::get<shop::DecodedState>(decoded).state;
    EXPECT_TRUE(state.pastDays.empty());
    EXPECT_EQ(state.balance, 15);
    EXPECT_EQ(state.today.metersRun, 12);

    state.pastDays = {dayOf("2026-09-29", 800), dayOf("2026-09-30", 1200)};
    state.pastDays.back().fishEarned = 33;
    const auto again = codec.decode(shop::ShopStateCodec::encode(state));
    ASSERT_TRUE(std::holds_alternative<shop::DecodedState>(again));
    const auto& back = std::get<shop::DecodedState>(again).state;
    EXPECT_EQ(back.pastDays, state.pastDays);
    EXPECT_EQ(back.balance, 15);
}

PawReportInputs weekInputs() {
    PawReportInputs in;
    in.currentDay = "2026-10-01";
    in.today = dayOf("2026-10-01", 3420);
    in.pastDays = {dayOf("2026-09-20", 9000), dayOf("2026-09-25", 4100), dayOf("2026-09-28", 5600),
                   dayOf("2026-09-30", 4400)};
    return in;
}

TEST(PawReport, ShowsTheSevenDaysEndingTodayWithGapsForDaysNotRecorded) {
    const shop::FixedOffsetCalendar utc(0);
    const PawReport r = buildPawReport(weekInputs(), utc);
    ASSERT_EQ(r.rows.size(), pawMeasureCount);
    const auto& distance = r.row(PawMeasure::distance).week;
    const std::array<std::optional<double>, weekDays> expected = {
        4100, std::nullopt, std::nullopt, 5600, std::nullopt, 4400, 3420};
    EXPECT_EQ(distance, expected);  // the 20th is more than a week ago
    EXPECT_EQ(r.days.front().label, "Fri");
    EXPECT_EQ(r.days.back().label, "Today");
    EXPECT_EQ(r.row(PawMeasure::distance).value, "3.42 km");
    EXPECT_EQ(r.row(PawMeasure::peakCPU).value, "No reading yet");
    EXPECT_FALSE(r.row(PawMeasure::hottest).week.back());  // no sensor: no number
}

TEST(PawReport, CountersLeftFromYesterdayBecomeYesterday) {
    PawReportInputs in = weekInputs();
    in.currentDay = "2026-10-02";
    in.fishEarnedToday = 12;
    const PawReport r = buildPawReport(in, shop::FixedOffsetCalendar(0));
    EXPECT_EQ(r.day, "2026-10-02");
    EXPECT_EQ(r.row(PawMeasure::distance).week[weekDays - 2], 3420);
    EXPECT_EQ(r.row(PawMeasure::distance).week[weekDays - 1], 0);
    EXPECT_EQ(r.row(PawMeasure::fishEarned).value, "0");
}

TEST(PawReport, TheMascotPicksTheDaysMostNotableFact) {
    struct Case {
        const char* name;
        std::function<void(PawReportInputs&)> change;
        std::string voice;
    };
    const std::vector<Case> cases = {
        {"nothing yet",
         [](auto& in) {
             in.today.metersRun = 0;
             in.pastDays.clear();
         },
         "A quiet day so far. Saving my legs for later."},
        {"a short run", [](auto& in) { in.pastDays.clear(); },
         "3.42 km so far: 8.6 laps of a 400 m track."},
        {"the week's longest", [](auto& in) { in.today.metersRun = 6200; },
         "6.20 km today, my longest run this week!"},
        {"a busy peak",
         [](auto& in) {
             in.today.peakCPU = 0.97;
             in.today.peakCPUAt = 1790862120;  // 13:42 UTC
             in.today.peakCPUProcess = "rustc";
         },
         "Sprinted at 97% around 13:42, thanks to rustc."},
        {"golden fish beat everything",
         [](auto& in) {
             in.today.goldenFishCaught = 2;
             in.today.metersRun = 9000;
         },
         "Caught 2 Golden Fish today. Shiny!"},
        {"long naps",
         [](auto& in) {
             in.today.secondsAsleep = 3 * 3600 + 300;
             in.today.activeSeconds = 3600;
         },
         "3h 5m of naps today. Bliss."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PawReportInputs in = weekInputs();
        c.change(in);
        EXPECT_EQ(buildPawReport(in, shop::FixedOffsetCalendar(0)).voice, c.voice);
    }
}

TEST(PawTrack, DistancesReadAsAUserPicturesThem) {
    struct Case {
        double meters;
        const char* distance;
        const char* comparison;
    };
    const Case cases[] = {
        {0, "0 m", ""},
        {40, "40 m", "10% of a lap of a 400 m track"},
        {210, "210 m", "Half a lap of a 400 m track"},
        {400, "400 m", "1 lap of a 400 m track"},
        {3420, "3.42 km", "8.6 laps of a 400 m track"},
        {12500, "12.5 km", "29% of a marathon"},
        {42195, "42.2 km", "A whole marathon"},
        {131000, "131 km", "3.1 marathons"},
        {1203600, "1,204 km", "28.5 marathons"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.meters);
        EXPECT_EQ(distanceText(c.meters), c.distance);
        EXPECT_EQ(comparisonText(c.meters), c.comparison);
    }
    shop::LifetimeStats lifetime;
    lifetime.metersRun = 31640;
    lifetime.metersByMascot = {{"cat", 27900}, {"shiba", 3740}, {"ghost", 0}};
    const PawTrack t = pawTrack(dayOf("2026-10-01", 3420), lifetime);
    ASSERT_EQ(t.byMascot.size(), 2u);
    EXPECT_EQ(t.byMascot.front().name, "Mochi");
    EXPECT_EQ(marathonText(t), "74% of the way to Marathon");
}

}  // namespace
}  // namespace trotlet::reports
