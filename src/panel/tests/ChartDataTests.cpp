#include <gtest/gtest.h>

#include "panel/ChartData.h"

namespace trotlet::panel {
namespace {

using metrics::HistorySeries;
using metrics::MetricKinds;
using std::chrono::minutes;
using std::chrono::seconds;

const metrics::Timestamp kNoon = metrics::Timestamp(seconds(1790856000));  // 12:00 UTC

metrics::MetricsSnapshot sampleAt(metrics::Timestamp t, double cpu, double down) {
    metrics::MetricsSnapshot s;
    s.timestamp = t;
    s.cpu.total = cpu;
    s.network.downBps = down;
    return s;
}

// The last hour: readings in minutes 0–19 and 40–59, none in between (a suspend).
struct HourFixture {
    metrics::MetricHistory recent{10};
    metrics::DayHistory day;
    metrics::Timestamp now = kNoon + minutes(59) + seconds(30);
    HourFixture() {
        for (int m = 0; m < 60; ++m) {
            if (m >= 20 && m < 40) continue;
            for (int s : {0, 30})
                day.append(sampleAt(kNoon + minutes(m) + seconds(s), s ? 0.8 : 0.12, 1.2e6),
                           MetricKinds::cpu | MetricKinds::network);
        }
    }
};

TEST(ChartData, TheHourDrawsMinuteBandsAndBreaksAtTheGap) {
    HourFixture f;
    const auto c = chartData({HistorySeries::cpuTotal, std::nullopt, 1, ChartRange::hour}, f.recent,
                             &f.day, f.now, {});
    EXPECT_EQ(c.spanSeconds, 3600);
    EXPECT_TRUE(c.band);
    ASSERT_EQ(c.first.size(), 2u) << "the silent twenty minutes split the line";
    EXPECT_EQ(c.first[0].size(), 20u);
    EXPECT_EQ(c.first[0][0].t, 30) << "a minute's point sits in its middle";
    EXPECT_DOUBLE_EQ(c.first[0][0].low, 0.12f);
    EXPECT_DOUBLE_EQ(c.first[0][0].high, 0.8f);
    EXPECT_NEAR(c.first[0][0].value, 0.46, 1e-6);
    EXPECT_EQ((std::vector<std::string>{c.ticks[0].label, c.ticks[1].label, c.ticks[2].label}),
              (std::vector<std::string>{"0%", "50%", "100%"}));

    const ChartUnits units{menubar::TemperatureUnit::celsius, menubar::NetworkUnit::bytes, 7200};
    auto readout = chartReadout(c, 5 * 60 + 20, 45, units);
    ASSERT_TRUE(readout);
    EXPECT_EQ(readout->text, "14:05 · 46% (12% – 80%)") << "the user's clock";
    EXPECT_FALSE(chartReadout(c, 30 * 60, 45, units)) << "nothing to read over the gap";
}

TEST(ChartData, TheDayTakesFiveMinuteStepsAndRatesGetRoundTicks) {
    HourFixture f;
    const auto c = chartData({HistorySeries::downBps, std::nullopt, 0, ChartRange::day}, f.recent,
                             &f.day, f.now, {});
    EXPECT_EQ(c.spanSeconds, 24 * 3600);
    std::size_t points = 0;
    for (const auto& run : c.first) points += run.size();
    EXPECT_EQ(points, 8u) << "four five-minute steps before the gap, four after";
    EXPECT_EQ(c.ticks.back().label, "2.0 MB/s");
    EXPECT_EQ(c.ticks[1].label, "1.0 MB/s");
    EXPECT_EQ(c.startLabel, "24 h ago");
    ASSERT_EQ(c.marks.size(), 3u) << "six-hourly clock marks away from the ends";
    EXPECT_EQ(c.marks[0].label, "18:00");
    EXPECT_EQ(c.marks[0].value, 5 * 3600) << "the day starts at 13:00 yesterday";

    const auto bits =
        chartData({HistorySeries::downBps, std::nullopt, 0, ChartRange::day}, f.recent, &f.day,
                  f.now, {menubar::TemperatureUnit::celsius, menubar::NetworkUnit::bits});
    EXPECT_EQ(bits.ticks.back().label, "20 Mbps") << "9.6 Mbps with headroom";
}

TEST(ChartData, LiveReadingsBreakAtAPauseAndTemperaturesFrameTheirData) {
    metrics::MetricHistory recent(20);
    metrics::DayHistory day;
    for (int i : {0, 2, 4, 6, 30, 32, 34}) {
        metrics::MetricsSnapshot s;
        s.timestamp = kNoon + seconds(i);
        s.thermal.cpuC = 52 + i * 0.5;
        recent.append(s, MetricKinds::sensors);
    }
    const auto now = kNoon + seconds(35);
    const auto c =
        chartData({HistorySeries::cpuC, std::nullopt, 0, ChartRange::live}, recent, &day, now, {});
    EXPECT_FALSE(c.band);
    ASSERT_EQ(c.first.size(), 2u);
    EXPECT_EQ(c.bottom, 40);
    EXPECT_EQ(c.top, 80);
    EXPECT_EQ(c.ticks[0].label, "40°C");
    EXPECT_EQ(c.startLabel, "35 s ago");
    const auto readout = chartReadout(c, 31, 3, {});
    ASSERT_TRUE(readout);
    EXPECT_EQ(readout->text, "4 s ago · 67°C");

    const auto empty = chartData({HistorySeries::gpuUtilization, std::nullopt, 1, ChartRange::hour},
                                 recent, &day, now, {});
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_FALSE(empty.emptyText.empty());
}

TEST(ChartData, TwoSeriesReadTogether) {
    HourFixture f;
    for (int i = 0; i < 3; ++i) {
        auto s = sampleAt(kNoon + seconds(2 * i), 0.1, 2048);
        s.network.upBps = 512000;
        f.recent.append(s, MetricKinds::network);
    }
    const auto c = chartData({HistorySeries::downBps, HistorySeries::upBps, 0, ChartRange::live},
                             f.recent, &f.day, kNoon + seconds(4), {});
    const auto readout = chartReadout(c, 4, 1, {}, "↓", "↑");
    ASSERT_TRUE(readout);
    EXPECT_EQ(readout->text, "Now · ↓ 2.0 KB/s · ↑ 500 KB/s");
}

// A card's sparkline after the panel was away: the ring holds an earlier open's readings (every
// 2 s), a closed spell without them, and the readings since the panel opened again.
TEST(ChartData, SparklinesKeepTheOpenPanelsTimeScale) {
    const double window = sparklineWindowSeconds(180, 2);
    EXPECT_EQ(window, 360);
    using Points = std::vector<metrics::HistoryPoint>;
    auto every = [](int step, int count, metrics::Timestamp from) {
        Points points;
        for (int i = 0; i < count; ++i) points.push_back({from + seconds(i * step), 0.5});
        return points;
    };
    auto joined = [](Points a, const Points& b) {
        a.insert(a.end(), b.begin(), b.end());
        return a;
    };
    const struct {
        const char* name;
        Points points;
        double span;
        std::vector<std::pair<double, double>> runs;  // first and last t of each run drawn
    } cases[] = {
        {"a minute since launch spans the line", every(2, 31, kNoon), 60, {{0, 60}}},
        {"a long open keeps the last window", every(2, 400, kNoon), 360, {{0, 360}}},
        {"an hour closed: the new minute fills the right",
         joined(every(2, 100, kNoon), every(2, 31, kNoon + minutes(60))),
         360,
         {{300, 360}}},
        {"two minutes closed: the earlier tail, a gap, the new minute",
         joined(every(2, 100, kNoon), every(2, 31, kNoon + seconds(198 + 120))),
         360,
         {{0, 180}, {300, 360}}},
        {"lone readings between gaps draw nothing",
         joined(every(60, 4, kNoon), every(2, 31, kNoon + seconds(240))),
         300,
         {{240, 300}}},
    };
    for (const auto& k : cases) {
        SCOPED_TRACE(k.name);
        const auto line = sparklineData(k.points, {}, window);
        EXPECT_EQ(line.spanSeconds, k.span);
        std::vector<std::pair<double, double>> runs;
        for (const auto& run : line.first) runs.push_back({run.front().t, run.back().t});
        EXPECT_EQ(runs, k.runs);
    }

    // Two series share one time scale, the newer reading of either ending it.
    const auto both = sparklineData(every(2, 10, kNoon), every(2, 10, kNoon + seconds(10)), window);
    EXPECT_EQ(both.spanSeconds, 28);
    EXPECT_EQ(both.first.back().back().t, 18);
    EXPECT_EQ(both.second.back().back().t, 28);
    EXPECT_TRUE(sparklineData({}, {}, window).first.empty());
}

}  // namespace
}  // namespace trotlet::panel
