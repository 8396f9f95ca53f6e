#include "panel/ChartData.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "menubar/Format.h"
#include "metrics/SamplingPlan.h"

namespace trotlet::panel {
namespace {

using menubar::Format;
using metrics::HistorySeries;
using metrics::Timestamp;

constexpr int kDayStepMinutes = 5;

double secondsBetween(Timestamp from, Timestamp to) {
    return std::chrono::duration<double>(to - from).count();
}

bool isRate(HistorySeries s) {
    return s == HistorySeries::downBps || s == HistorySeries::upBps ||
           s == HistorySeries::diskReadBps || s == HistorySeries::diskWriteBps;
}

bool isNetwork(HistorySeries s) { return s == HistorySeries::downBps || s == HistorySeries::upBps; }

// The recent ring's points in runs, broken where a pause is longer than three typical steps.
std::vector<ChartRun> liveRuns(const std::vector<metrics::HistoryPoint>& points, Timestamp start) {
    std::vector<ChartRun> runs;
    if (points.empty()) return runs;
    std::vector<double> steps;
    for (std::size_t i = 1; i < points.size(); ++i)
        steps.push_back(secondsBetween(points[i - 1].time, points[i].time));
    double breakAfter = 1e300;
    if (!steps.empty()) {
        std::nth_element(steps.begin(), steps.begin() + long(steps.size() / 2), steps.end());
        breakAfter = 3 * std::max(0.001, steps[steps.size() / 2]);
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i == 0 || secondsBetween(points[i - 1].time, points[i].time) > breakAfter)
            runs.emplace_back();
        const double t = secondsBetween(start, points[i].time);
        const double v = points[i].value;
        runs.back().push_back({t, v, v, v});
    }
    return runs;
}

// Per-minute buckets merged `step` at a time (the mean weighted by readings), as runs broken at
// empty steps. `start` is the first bucket's minute.
std::vector<ChartRun> bucketRuns(const std::vector<std::optional<metrics::MinuteSummary>>& minutes,
                                 int step) {
    std::vector<ChartRun> runs;
    bool open = false;
    for (std::size_t first = 0; first < minutes.size(); first += std::size_t(step)) {
        double low = 0, high = 0, sum = 0;
        int count = 0;
        for (std::size_t i = first; i < std::min(minutes.size(), first + std::size_t(step)); ++i) {
            const auto& m = minutes[i];
            if (!m) continue;
            low = count == 0 ? m->low : std::min(low, m->low);
            high = count == 0 ? m->high : std::max(high, m->high);
            sum += m->mean * m->count;
            count += m->count;
        }
        if (count == 0) {
            open = false;
            continue;
        }
        if (!open) runs.emplace_back();
        open = true;
        const double t = (double(first) + step / 2.0) * 60;
        runs.back().push_back({t, sum / count, low, high});
    }
    return runs;
}

// 1, 2 or 5 times a power of ten, at least x.
double niceAtLeast(double x) {
    if (x <= 0) return 1;
    const double power = std::pow(10, std::floor(std::log10(x)));
    for (double m : {1.0, 2.0, 5.0, 10.0})
        if (m * power >= x * (1 - 1e-9)) return m * power;
    return 10 * power;
}

// A round top for a rate in the unit Format will print it in, so the ticks read "2.0 MB/s".
double niceRateTop(double bytesPerSecond, bool bits) {
    const double floorRate = bits ? 125.0 : 1024.0;  // 1 Kbps, 1 KB/s
    double x = std::max(bytesPerSecond, floorRate);
    const double base = bits ? 1000.0 : 1024.0;
    double unit = bits ? 1000.0 / 8 : 1024.0;
    while (x / unit >= 1000) unit *= base;
    return niceAtLeast(x / unit) * unit;
}

void scale(ChartData& c, const ChartUnits& units) {
    const auto& r = c.request;
    if (r.ceiling > 0) {
        c.bottom = 0;
        c.top = r.ceiling;
        return;
    }
    double low = 1e300, high = -1e300;
    for (const auto* runs : {&c.first, &c.second})
        for (const auto& run : *runs)
            for (const auto& p : run) {
                low = std::min(low, c.band ? p.low : p.value);
                high = std::max(high, c.band ? p.high : p.value);
            }
    if (high < low) low = high = 0;
    if (r.series == HistorySeries::cpuC) {
        // Temperatures sit far from zero: frame the data in ten-degree steps.
        c.bottom = std::max(0.0, std::floor((low - 5) / 10) * 10);
        c.top = std::max(c.bottom + 20, std::ceil((high + 5) / 10) * 10);
        return;
    }
    c.bottom = 0;
    c.top = isRate(r.series)
                ? niceRateTop(high * 1.05,
                              isNetwork(r.series) && units.network == menubar::NetworkUnit::bits)
                : niceAtLeast(high * 1.05);
}

std::string agoText(double seconds) {
    const long long s = std::llround(std::max(0.0, seconds));
    if (s < 90) return std::to_string(s) + " s ago";
    if (s < 90 * 60) return std::to_string((s + 30) / 60) + " min ago";
    return std::to_string((s + 1800) / 3600) + " h ago";
}

std::string clockText(double unixSeconds, int utcOffsetSeconds) {
    long long local = std::llround(std::floor(unixSeconds)) + utcOffsetSeconds;
    local = ((local % 86400) + 86400) % 86400;
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%02lld:%02lld", local / 3600, local % 3600 / 60);
    return buffer;
}

const ChartPoint* nearest(const std::vector<ChartRun>& runs, double t, double reach) {
    const ChartPoint* best = nullptr;
    for (const auto& run : runs)
        for (const auto& p : run)
            if (std::abs(p.t - t) <= reach && (!best || std::abs(p.t - t) < std::abs(best->t - t)))
                best = &p;
    return best;
}

}  // namespace

std::string chartRangeLabel(ChartRange range) {
    switch (range) {
        case ChartRange::live:
            return "Live";
        case ChartRange::hour:
            return "1 h";
        case ChartRange::day:
            return "24 h";
    }
    return "Live";
}

std::string seriesValueText(HistorySeries series, double value, const ChartUnits& units) {
    switch (series) {
        case HistorySeries::cpuTotal:
        case HistorySeries::memoryUsed:
        case HistorySeries::gpuUtilization:
            return Format::percent(value);
        case HistorySeries::batteryPercent:
            return Format::percent(value / 100);
        case HistorySeries::downBps:
        case HistorySeries::upBps:
            return Format::rateParts(value, units.network).joined();
        case HistorySeries::diskReadBps:
        case HistorySeries::diskWriteBps:
            return Format::rateParts(value, false).joined();
        case HistorySeries::cpuC: {
            const auto parts = Format::temperatureParts(value, units.temperature);
            return parts.value + parts.unit;
        }
        case HistorySeries::memoryPressure: {
            const long level = std::lround(value);
            return level >= 3 ? "Critical" : level == 2 ? "Warning" : "Normal";
        }
    }
    return Format::fixed(1, value);
}

SparklineData sparklineData(const std::vector<metrics::HistoryPoint>& first,
                            const std::vector<metrics::HistoryPoint>& second,
                            double windowSeconds) {
    SparklineData d;
    Timestamp from = Timestamp::max(), to = Timestamp::min();
    for (const auto* points : {&first, &second})
        if (!points->empty()) {
            from = std::min(from, points->front().time);
            to = std::max(to, points->back().time);
        }
    if (from >= to) return d;
    d.spanSeconds = std::min(secondsBetween(from, to), std::max(0.0, windowSeconds));
    if (d.spanSeconds <= 0) return d;
    const Timestamp start = to - std::chrono::duration_cast<Timestamp::duration>(
                                     std::chrono::duration<double>(d.spanSeconds));
    auto recent = [start](const std::vector<metrics::HistoryPoint>& points) {
        const auto in = std::lower_bound(
            points.begin(), points.end(), start,
            [](const metrics::HistoryPoint& p, Timestamp t) { return p.time < t; });
        return std::vector<metrics::HistoryPoint>(in, points.end());
    };
    // A lone reading between gaps is no line.
    auto lines = [](std::vector<ChartRun> runs) {
        std::erase_if(runs, [](const ChartRun& run) { return run.size() < 2; });
        return runs;
    };
    d.first = lines(liveRuns(recent(first), start));
    d.second = lines(liveRuns(recent(second), start));
    return d;
}

double sparklineWindowSeconds(std::size_t capacity, double updateIntervalSec) {
    const auto open = metrics::planFor(metrics::ConsumerTier::panelOpen, updateIntervalSec, false);
    return double(capacity) * open.intervalSec;
}

ChartData chartData(const ChartRequest& request, const metrics::MetricHistory& recent,
                    const metrics::DayHistory* day, Timestamp now, const ChartUnits& units) {
    ChartData c;
    c.request = request;
    c.endLabel = "Now";
    if (request.range == ChartRange::live || !day) {
        c.request.range = ChartRange::live;
        const auto first = recent.points(request.series);
        const auto second =
            request.second ? recent.points(*request.second) : std::vector<metrics::HistoryPoint>{};
        Timestamp from = now, to = Timestamp{};
        for (const auto* points : {&first, &second})
            if (!points->empty()) {
                from = std::min(from, points->front().time);
                to = std::max(to, points->back().time);
            }
        c.start = from;
        c.spanSeconds = std::max(1.0, secondsBetween(from, to));
        c.first = liveRuns(first, from);
        c.second = liveRuns(second, from);
        c.startLabel = agoText(secondsBetween(from, now));
        c.emptyText = "Collecting readings…";
    } else {
        const bool hour = request.range == ChartRange::hour;
        const int count = hour ? 60 : metrics::DayHistory::kMinutes;
        const int step = hour ? 1 : kDayStepMinutes;
        c.start = Timestamp(std::chrono::minutes(metrics::DayHistory::minuteOf(now) - count + 1));
        c.spanSeconds = count * 60.0;
        c.band = true;
        c.first = bucketRuns(day->minutes(request.series, now, count), step);
        if (request.second) c.second = bucketRuns(day->minutes(*request.second, now, count), step);
        c.startLabel = hour ? "1 h ago" : "24 h ago";
        c.emptyText = hour ? "The last hour fills in as readings arrive."
                           : "The day fills in as readings arrive.";
    }
    if (c.request.range != ChartRange::live) {
        const long long step = c.request.range == ChartRange::hour ? 15 * 60 : 6 * 3600;
        const long long from = std::llround(metrics::unixSeconds(c.start)) + units.utcOffsetSeconds;
        long long mark = (from / step + (from % step > 0 ? 1 : 0)) * step;
        for (; mark < from + std::llround(c.spanSeconds); mark += step) {
            const double t = double(mark - from);
            if (t < c.spanSeconds * 0.1 || t > c.spanSeconds * 0.9) continue;
            c.marks.push_back(
                {t, clockText(double(mark - units.utcOffsetSeconds), units.utcOffsetSeconds)});
        }
    }
    scale(c, units);
    const double mid = (c.bottom + c.top) / 2;
    for (double v : {c.bottom, mid, c.top})
        c.ticks.push_back({v, seriesValueText(request.series, v, units)});
    return c;
}

std::optional<ChartReadout> chartReadout(const ChartData& chart, double t, double reach,
                                         const ChartUnits& units, const std::string& firstName,
                                         const std::string& secondName) {
    const ChartPoint* a = nearest(chart.first, t, reach);
    const ChartPoint* b =
        chart.request.second ? nearest(chart.second, a ? a->t : t, reach) : nullptr;
    if (!a && !b) return std::nullopt;
    const double at = a ? a->t : b->t;
    const double unix = metrics::unixSeconds(chart.start) + at;
    ChartReadout out;
    out.t = at;
    if (chart.request.range == ChartRange::live) {
        // Live points are exact readings: say how long ago, counted to the chart's end.
        out.text = agoText(chart.spanSeconds - at);
        if (out.text == "0 s ago") out.text = "Now";
    } else {
        // A point's time is the middle of the minutes it stands for; name their start.
        const double stepSeconds =
            chart.request.range == ChartRange::hour ? 60 : kDayStepMinutes * 60;
        out.text = clockText(unix - stepSeconds / 2, units.utcOffsetSeconds);
    }
    auto part = [&](const ChartPoint* p, metrics::HistorySeries series, const std::string& name) {
        std::string text = name.empty() ? "" : name + " ";
        if (!p) return text + "–";
        text += seriesValueText(series, p->value, units);
        if (chart.band && !chart.request.second) {
            const std::string low = seriesValueText(series, p->low, units);
            const std::string high = seriesValueText(series, p->high, units);
            if (low != high) text += " (" + low + " – " + high + ")";
        }
        return text;
    };
    out.text += " · " + part(a, chart.request.series, firstName);
    if (chart.request.second) out.text += " · " + part(b, *chart.request.second, secondName);
    return out;
}

}  // namespace trotlet::panel
