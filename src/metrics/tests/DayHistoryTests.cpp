#include <gtest/gtest.h>

#include "metrics/DayHistory.h"
#include "metrics/FixtureProvider.h"

namespace trotlet::metrics {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

// 2026-10-01 00:00:00 UTC, a minute boundary.
const Timestamp kMidnight = Timestamp(seconds(1790812800));

MetricsSnapshot cpuAt(Timestamp t, double load) {
    MetricsSnapshot s;
    s.timestamp = t;
    s.cpu.total = load;
    return s;
}

TEST(DayHistory, FoldsEachMinuteIntoLowMeanHighAndLeavesGaps) {
    DayHistory day;
    // Minute 0: three readings; minute 1: none (a suspend); minute 2: one zero, a real reading.
    for (auto [at, load] : {std::pair{0, 0.2}, {20, 0.6}, {40, 0.4}})
        day.append(cpuAt(kMidnight + seconds(at), load), MetricKinds::cpu);
    day.append(cpuAt(kMidnight + minutes(2) + seconds(5), 0.0), MetricKinds::cpu);

    const auto got = day.minutes(HistorySeries::cpuTotal, kMidnight + minutes(2), 4);
    ASSERT_EQ(got.size(), 4u);
    EXPECT_FALSE(got[0]) << "before the first sample";
    ASSERT_TRUE(got[1]);
    EXPECT_EQ(got[1]->start, kMidnight);
    EXPECT_FLOAT_EQ(got[1]->low, 0.2);
    EXPECT_FLOAT_EQ(got[1]->mean, 0.4);
    EXPECT_FLOAT_EQ(got[1]->high, 0.6);
    EXPECT_EQ(got[1]->count, 3);
    EXPECT_FALSE(got[2]) << "a minute without readings is a gap, not zero";
    ASSERT_TRUE(got[3]);
    EXPECT_EQ(got[3]->high, 0.0);
    EXPECT_FALSE(day.minutes(HistorySeries::memoryUsed, kMidnight + minutes(2), 4)[3])
        << "memory was not sampled";
}

TEST(DayHistory, KeepsExactlyTheLastDayAndStartsOverWhenTheClockGoesBack) {
    DayHistory day;
    // A reading every minute for 25 hours.
    const int total = DayHistory::kMinutes + 60;
    for (int m = 0; m < total; ++m)
        day.append(cpuAt(kMidnight + minutes(m), m % 2 ? 0.9 : 0.1), MetricKinds::cpu);
    const Timestamp now = kMidnight + minutes(total - 1);
    const auto whole = day.minutes(HistorySeries::cpuTotal, now, DayHistory::kMinutes);
    EXPECT_TRUE(
        std::all_of(whole.begin(), whole.end(), [](const auto& b) { return b.has_value(); }));
    EXPECT_EQ(whole.front()->start, kMidnight + minutes(60)) << "the first hour rolled over";
    EXPECT_EQ(whole.back()->start, now);

    // A late sample lands in its own minute; a clock set back an hour starts a new day.
    day.append(cpuAt(now - minutes(3), 0.5), MetricKinds::cpu);
    EXPECT_EQ(day.minutes(HistorySeries::cpuTotal, now, 4)[0]->count, 2);
    day.append(cpuAt(now - minutes(60), 0.3), MetricKinds::cpu);
    const auto after = day.minutes(HistorySeries::cpuTotal, now - minutes(60), 3);
    EXPECT_FALSE(after[0]);
    EXPECT_FALSE(after[1]);
    ASSERT_TRUE(after[2]);
    EXPECT_EQ(after[2]->count, 1);

    // A jump forward past a whole day empties everything before it.
    day.append(cpuAt(now + std::chrono::hours(30), 0.7), MetricKinds::cpu);
    const auto later = day.minutes(HistorySeries::cpuTotal, now + std::chrono::hours(30), 1440);
    EXPECT_EQ(
        std::count_if(later.begin(), later.end(), [](const auto& b) { return b.has_value(); }), 1);
}

TEST(DayHistory, AKindIsDueOncePerMinuteUntilASampleCarriesIt) {
    DayHistory day;
    const MetricKinds menuBar = MetricKinds::cpu | MetricKinds::memory | MetricKinds::network;
    EXPECT_EQ(day.dueKinds(kMidnight, MetricKinds::all), DayHistory::kinds())
        << "processes, volumes and system are never due";
    day.append(cpuAt(kMidnight, 0.1), menuBar | MetricKinds::diskIO | MetricKinds::gpu);
    EXPECT_EQ(day.dueKinds(kMidnight + seconds(59), MetricKinds::diskIO | MetricKinds::gpu),
              MetricKinds());
    EXPECT_EQ(day.dueKinds(kMidnight + seconds(59), MetricKinds::all),
              MetricKinds::sensors | MetricKinds::battery);
    // A sampled kind without a reading (no GPU) still counts: it is not asked for again.
    EXPECT_EQ(day.dueKinds(kMidnight + seconds(60), MetricKinds::diskIO | MetricKinds::gpu),
              MetricKinds::diskIO | MetricKinds::gpu);
}

TEST(DayHistory, AFullDayOfEverySeriesStaysUnderOneMegabyte) {
    DayHistory day;
    const MetricsSnapshot laptop = fixtureSnapshot(MetricsFixture::normal, kMidnight);
    EXPECT_LT(day.memoryBytes(), 1024u) << "nothing is allocated before a reading";
    for (int m = 0; m < DayHistory::kMinutes; ++m) {
        MetricsSnapshot s = laptop;
        s.timestamp = kMidnight + minutes(m);
        day.append(s, MetricKinds::all);
    }
    for (std::size_t i = 0; i < HistorySeriesNames.size(); ++i)
        EXPECT_TRUE(day.hasReadings(HistorySeries(i))) << HistorySeriesNames[i];
    EXPECT_LE(day.memoryBytes(), 1u << 20);
    EXPECT_GE(day.memoryBytes(), HistorySeriesNames.size() * DayHistory::kMinutes * 12);

    DayHistory desktop;
    desktop.append(fixtureSnapshot(MetricsFixture::desktop, kMidnight), MetricKinds::all);
    EXPECT_FALSE(desktop.hasReadings(HistorySeries::batteryPercent));
}

}  // namespace
}  // namespace trotlet::metrics
