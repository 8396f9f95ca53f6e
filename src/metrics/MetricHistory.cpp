#include "metrics/MetricHistory.h"

#include <algorithm>

namespace trotlet::metrics {

MetricHistory::MetricHistory(size_t capacity) : capacity_(std::max<size_t>(1, capacity)) {
    for (auto& r : rings_) r.points.resize(capacity_);
}

void MetricHistory::clear() {
    for (auto& r : rings_) r.next = r.count = 0;
}

std::optional<double> MetricHistory::valueOf(const MetricsSnapshot& s, MetricKinds k, HistorySeries series) {
    switch (series) {
    case HistorySeries::cpuTotal:
        if (k.contains(MetricKinds::cpu)) return s.cpu.total;
        break;
    case HistorySeries::memoryUsed:
        if (k.contains(MetricKinds::memory) && s.memory.total > 0) return double(s.memory.used) / double(s.memory.total);
        break;
    case HistorySeries::downBps:
        if (k.contains(MetricKinds::network)) return s.network.downBps;
        break;
    case HistorySeries::upBps:
        if (k.contains(MetricKinds::network)) return s.network.upBps;
        break;
    case HistorySeries::diskReadBps:
        if (k.contains(MetricKinds::diskIO)) return s.disks.readBps;
        break;
    case HistorySeries::diskWriteBps:
        if (k.contains(MetricKinds::diskIO)) return s.disks.writeBps;
        break;
    case HistorySeries::cpuC:
        if (k.contains(MetricKinds::sensors)) return s.thermal.cpuC;
        break;
    case HistorySeries::gpuUtilization:
        if (k.contains(MetricKinds::gpu) && s.gpu) return s.gpu->utilization;
        break;
    case HistorySeries::batteryPercent:
        if (k.contains(MetricKinds::battery) && s.battery.present) return double(s.battery.percent);
        break;
    case HistorySeries::memoryPressure:
        if (k.contains(MetricKinds::memory) && s.memory.pressure != MemoryPressure::unknown)
            return double(static_cast<int>(s.memory.pressure));
        break;
    }
    return std::nullopt;
}

void MetricHistory::append(const MetricsSnapshot& s, MetricKinds kinds) {
    for (size_t i = 0; i < rings_.size(); ++i) {
        auto value = valueOf(s, kinds, static_cast<HistorySeries>(i));
        if (!value) continue;
        Ring& r = rings_[i];
        r.points[r.next] = {s.timestamp, *value};
        r.next = (r.next + 1) % capacity_;
        r.count = std::min(r.count + 1, capacity_);
    }
}

std::vector<HistoryPoint> MetricHistory::points(HistorySeries series) const {
    const Ring& r = rings_[static_cast<size_t>(series)];
    std::vector<HistoryPoint> out;
    out.reserve(r.count);
    const size_t first = (r.next + capacity_ - r.count) % capacity_;
    for (size_t i = 0; i < r.count; ++i) out.push_back(r.points[(first + i) % capacity_]);
    return out;
}

std::optional<HistoryPoint> MetricHistory::latest(HistorySeries series) const {
    const Ring& r = rings_[static_cast<size_t>(series)];
    if (r.count == 0) return std::nullopt;
    return r.points[(r.next + capacity_ - 1) % capacity_];
}

}  // namespace trotlet::metrics
