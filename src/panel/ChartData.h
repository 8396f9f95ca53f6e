#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "menubar/DisplayUnits.h"
#include "metrics/DayHistory.h"
#include "metrics/MetricHistory.h"

namespace trotlet::panel {

// How far back a detail's chart looks: the recent ring at the sampling rate, the last hour by
// minute, or the last day in five-minute steps (288 points, so a day costs what an hour does).
enum class ChartRange { live, hour, day };
inline constexpr std::array<std::string_view, 3> ChartRangeNames = {"live", "hour", "day"};
std::string chartRangeLabel(ChartRange range);  // "Live", "1 h", "24 h"

// One point: seconds from the chart's start, the value, and the lowest and highest reading it
// stands for (equal to the value for a single reading).
struct ChartPoint {
    double t = 0;
    double value = 0;
    double low = 0;
    double high = 0;
    bool operator==(const ChartPoint&) const = default;
};
// A stretch of points without a gap; a chart never draws across a missing reading.
using ChartRun = std::vector<ChartPoint>;

struct ChartTick {
    double value = 0;
    std::string label;
    bool operator==(const ChartTick&) const = default;
};

struct ChartUnits {
    menubar::TemperatureUnit temperature = menubar::TemperatureUnit::celsius;
    menubar::NetworkUnit network = menubar::NetworkUnit::bytes;
    int utcOffsetSeconds = 0;  // the user's zone, for the read-out's clock times
};

struct ChartRequest {
    metrics::HistorySeries series = metrics::HistorySeries::cpuTotal;
    std::optional<metrics::HistorySeries> second;
    double ceiling = 1;  // a fixed top (1 for fractions, 100 for the battery), 0: from the data
    ChartRange range = ChartRange::live;
};

// What a chart draws: runs of points per series on a shared scale, the y-axis ticks, and the
// labels under the x-axis.
struct ChartData {
    ChartRequest request;
    metrics::Timestamp start;
    double spanSeconds = 0;
    std::vector<ChartRun> first;
    std::vector<ChartRun> second;
    bool band = false;  // points stand for several readings: draw their low–high band
    double bottom = 0;
    double top = 1;
    std::vector<ChartTick> ticks;  // bottom, middle, top
    // Clock times along the x-axis (value: seconds from the start): every quarter hour for the
    // hour, every six hours for the day, away from the ends.
    std::vector<ChartTick> marks;
    std::string startLabel;  // "6 min ago", "1 h ago", "24 h ago"
    std::string endLabel;    // "Now"
    std::string emptyText;   // when there is nothing to draw

    bool isEmpty() const { return first.empty() && second.empty(); }
};

ChartData chartData(const ChartRequest& request, const metrics::MetricHistory& recent,
                    const metrics::DayHistory* day, metrics::Timestamp now,
                    const ChartUnits& units);

// What a card's sparkline draws: the recent ring's points in runs, t in seconds from the
// line's start. A sparkline has no time axis, so it spans at most `windowSeconds` back from the
// newest reading (the ring's length at the open panel's rate): after the panel was closed a
// while, the readings since it opened fill the right of it instead of being squeezed beside
// an hour of sparser ones.
struct SparklineData {
    std::vector<ChartRun> first;
    std::vector<ChartRun> second;
    double spanSeconds = 0;
};
SparklineData sparklineData(const std::vector<metrics::HistoryPoint>& first,
                            const std::vector<metrics::HistoryPoint>& second, double windowSeconds);
// How far back a sparkline looks: a ring of `capacity` readings at the open panel's rate.
double sparklineWindowSeconds(std::size_t capacity, double updateIntervalSec);

// A series' value as the panel writes it, through Format: "37%", "1.2 MB/s", "64°C", "Warning".
std::string seriesValueText(metrics::HistorySeries series, double value, const ChartUnits& units);

// The hover read-out at `t` seconds from the chart's start: the nearest point within `reach`
// seconds, its time and its value(s), with the low–high range where a point stands for
// several readings. "14:05 · 37% (12–80%)", "12 s ago · ↓ 1.2 MB/s · ↑ 300 KB/s". None when no
// point is that close (over a gap).
struct ChartReadout {
    double t = 0;  // where the point is
    std::string text;
    bool operator==(const ChartReadout&) const = default;
};
std::optional<ChartReadout> chartReadout(const ChartData& chart, double t, double reach,
                                         const ChartUnits& units, const std::string& firstName = {},
                                         const std::string& secondName = {});

}  // namespace trotlet::panel
