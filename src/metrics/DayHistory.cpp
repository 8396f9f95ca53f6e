#include "metrics/DayHistory.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace trotlet::metrics {
namespace {

std::size_t slotOf(std::int64_t minute) {
    const std::int64_t m = minute % DayHistory::kMinutes;
    return static_cast<std::size_t>(m < 0 ? m + DayHistory::kMinutes : m);
}

}  // namespace

MetricKinds DayHistory::kinds() {
    return MetricKinds::cpu | MetricKinds::memory | MetricKinds::network | MetricKinds::diskIO |
           MetricKinds::sensors | MetricKinds::gpu | MetricKinds::battery;
}

std::int64_t DayHistory::minuteOf(Timestamp t) {
    return std::chrono::floor<std::chrono::minutes>(t).time_since_epoch().count();
}

void DayHistory::clear() {
    newest_ = kNone;
    for (auto& s : series_) std::vector<Bucket>().swap(s);
    sampledMinute_.fill(kNone);
}

void DayHistory::advanceTo(std::int64_t minute) {
    // Minutes skipped over (a suspend, a stalled sampler) are emptied, so they read as gaps.
    const std::int64_t steps = std::min<std::int64_t>(minute - newest_, kMinutes);
    for (auto& buckets : series_) {
        if (buckets.empty()) continue;
        for (std::int64_t m = minute - steps + 1; m <= minute; ++m) buckets[slotOf(m)] = Bucket{};
    }
    newest_ = minute;
}

void DayHistory::append(const MetricsSnapshot& s, MetricKinds sampled) {
    const std::int64_t minute = minuteOf(s.timestamp);
    if (newest_ != kNone && minute < newest_ - kLateMinutes) clear();
    if (newest_ == kNone)
        newest_ = minute;
    else if (minute > newest_)
        advanceTo(minute);
    for (std::size_t k = 0; k < MetricKinds::singles.size(); ++k)
        if (sampled.contains(MetricKinds::singles[k]))
            sampledMinute_[k] = std::max(sampledMinute_[k], minute);

    for (std::size_t i = 0; i < series_.size(); ++i) {
        const auto value = MetricHistory::valueOf(s, sampled, static_cast<HistorySeries>(i));
        if (!value) continue;
        auto& buckets = series_[i];
        if (buckets.empty()) buckets.resize(kMinutes);
        Bucket& b = buckets[slotOf(minute)];
        const auto v = static_cast<float>(*value);
        if (b.count == 0) {
            b = {v, v, v, 1};
            continue;
        }
        if (b.count == std::numeric_limits<std::uint16_t>::max()) continue;
        ++b.count;
        b.low = std::min(b.low, v);
        b.high = std::max(b.high, v);
        b.mean += (v - b.mean) / static_cast<float>(b.count);
    }
}

MetricKinds DayHistory::dueKinds(Timestamp now, MetricKinds wanted) const {
    const std::int64_t minute = minuteOf(now);
    MetricKinds due;
    for (std::size_t k = 0; k < MetricKinds::singles.size(); ++k) {
        const MetricKinds kind = MetricKinds::singles[k];
        if (!wanted.contains(kind) || !kinds().contains(kind)) continue;
        if (sampledMinute_[k] != minute) due |= kind;
    }
    return due;
}

std::vector<std::optional<MinuteSummary>> DayHistory::minutes(HistorySeries series, Timestamp now,
                                                              int count) const {
    count = std::clamp(count, 0, kMinutes);
    std::vector<std::optional<MinuteSummary>> out(static_cast<std::size_t>(count));
    const auto& buckets = series_[static_cast<std::size_t>(series)];
    if (buckets.empty() || newest_ == kNone) return out;
    const std::int64_t last = minuteOf(now);
    for (int i = 0; i < count; ++i) {
        const std::int64_t minute = last - (count - 1 - i);
        if (minute > newest_ || minute <= newest_ - kMinutes) continue;
        const Bucket& b = buckets[slotOf(minute)];
        if (b.count == 0) continue;
        out[static_cast<std::size_t>(i)] =
            MinuteSummary{Timestamp(std::chrono::minutes(minute)), b.low, b.mean, b.high, b.count};
    }
    return out;
}

bool DayHistory::hasReadings(HistorySeries series) const {
    const auto& buckets = series_[static_cast<std::size_t>(series)];
    return std::any_of(buckets.begin(), buckets.end(), [](const Bucket& b) { return b.count > 0; });
}

std::size_t DayHistory::memoryBytes() const {
    std::size_t bytes = sizeof(*this);
    for (const auto& s : series_) bytes += s.capacity() * sizeof(Bucket);
    return bytes;
}

}  // namespace trotlet::metrics
