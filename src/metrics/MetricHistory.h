#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// The series the panel charts.
enum class HistorySeries {
    cpuTotal,        // 0..1
    memoryUsed,      // fraction of total, 0..1
    downBps,
    upBps,
    diskReadBps,
    diskWriteBps,
    cpuC,
    gpuUtilization,  // 0..1
    batteryPercent,
    memoryPressure,  // 1 normal, 2 warning, 3 critical; absent while the kernel gives no level
};
inline constexpr std::array<std::string_view, 10> HistorySeriesNames = {
    "cpuTotal", "memoryUsed", "downBps", "upBps", "diskReadBps", "diskWriteBps", "cpuC",
    "gpuUtilization", "batteryPercent", "memoryPressure"};

struct HistoryPoint {
    Timestamp time;
    double value = 0;
    bool operator==(const HistoryPoint&) const = default;
};

// A fixed-capacity ring of points per series, oldest first. A sample adds a point only to the
// series it carries a reading for (the kind was sampled and the reading is present), so a chart
// never shows an invented zero.
class MetricHistory {
public:
    explicit MetricHistory(size_t capacity = 180);

    void append(const MetricsSnapshot& snapshot, MetricKinds sampledKinds);
    std::vector<HistoryPoint> points(HistorySeries series) const;
    std::optional<HistoryPoint> latest(HistorySeries series) const;
    size_t capacity() const { return capacity_; }
    void clear();

    // The reading a sample gives for a series, if any.
    static std::optional<double> valueOf(const MetricsSnapshot& s, MetricKinds sampledKinds, HistorySeries series);

private:
    struct Ring {
        std::vector<HistoryPoint> points;
        size_t next = 0;
        size_t count = 0;
    };
    size_t capacity_;
    std::array<Ring, HistorySeriesNames.size()> rings_;
};

}  // namespace trotlet::metrics
