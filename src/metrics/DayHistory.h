#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "metrics/MetricHistory.h"

namespace trotlet::metrics {

// One minute of a series: the lowest, mean and highest reading and how many there were.
struct MinuteSummary {
    Timestamp start;  // the minute's first second
    double low = 0;
    double mean = 0;
    double high = 0;
    int count = 0;
    bool operator==(const MinuteSummary&) const = default;
};

// The last 24 hours of every charted series, one bucket per wall-clock minute, in memory only.
// Every published sample folds into the bucket of its minute, whatever the sampling tier, so
// the day fills while the panel is closed too. A minute without a reading stays empty and
// charts show it as a gap, never as zero.
//
// Memory: a series' buckets are allocated on its first reading (a desktop never allocates the
// battery's), 16 bytes each, so the whole day stays under 240 KB.
class DayHistory {
public:
    static constexpr int kMinutes = 24 * 60;
    // A sample this many minutes behind the newest still lands in its own minute (a late
    // delivery); one further back means the clock was set back, and the day starts over rather
    // than mixing two timelines.
    static constexpr int kLateMinutes = 5;

    DayHistory() { clear(); }

    // The kinds the charted series come from.
    static MetricKinds kinds();
    // The wall-clock minute holding `t` (floor of Unix seconds / 60).
    static std::int64_t minuteOf(Timestamp t);

    void append(const MetricsSnapshot& snapshot, MetricKinds sampledKinds);

    // The kinds of `wanted` (limited to `kinds()`) that no sample has carried yet in the minute
    // of `now`: the sampler adds them to its next tick, so each series gets at least one reading
    // a minute even when the closed panel's tier does not ask for its kind.
    MetricKinds dueKinds(Timestamp now, MetricKinds wanted) const;

    // The `count` minutes ending with the minute of `now`, oldest first; an empty minute, or
    // one outside the last day, is absent.
    std::vector<std::optional<MinuteSummary>> minutes(HistorySeries series, Timestamp now,
                                                      int count) const;
    // Whether any minute of the day holds a reading of the series.
    bool hasReadings(HistorySeries series) const;

    // The bytes this history holds (the object and its buckets).
    std::size_t memoryBytes() const;
    void clear();

private:
    struct Bucket {
        float low = 0;
        float mean = 0;
        float high = 0;
        std::uint16_t count = 0;
    };
    static constexpr std::int64_t kNone = INT64_MIN;

    void advanceTo(std::int64_t minute);

    std::int64_t newest_ = kNone;
    std::array<std::vector<Bucket>, HistorySeriesNames.size()> series_;
    // The newest minute in which each kind (by bit) was sampled.
    std::array<std::int64_t, MetricKinds::singles.size()> sampledMinute_{};
};

}  // namespace trotlet::metrics
