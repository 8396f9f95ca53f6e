#include "metrics/MetricsSnapshot.h"

#include <algorithm>
#include <cmath>

namespace trotlet::metrics {

double unixSeconds(Timestamp t) {
    return std::chrono::duration<double>(t.time_since_epoch()).count();
}

Timestamp fromUnixSeconds(double seconds) {
    const auto ns = static_cast<std::int64_t>(std::llround(seconds * 1e9));
    return Timestamp(std::chrono::duration_cast<Timestamp::duration>(std::chrono::nanoseconds(ns)));
}

std::vector<CoreLoad> CPUMetrics::performanceCores() const {
    std::vector<CoreLoad> out;
    for (size_t i = 0; i < perCore.size(); ++i) {
        const int index = static_cast<int>(i);
        if (std::find(efficiencyCoreIndices.begin(), efficiencyCoreIndices.end(), index) ==
            efficiencyCoreIndices.end())
            out.push_back({index, perCore[i]});
    }
    return out;
}

std::vector<CoreLoad> CPUMetrics::efficiencyCores() const {
    std::vector<CoreLoad> out;
    for (int index : efficiencyCoreIndices)
        if (index >= 0 && static_cast<size_t>(index) < perCore.size())
            out.push_back({index, perCore[static_cast<size_t>(index)]});
    return out;
}

std::optional<VolumeInfo> DiskMetrics::rootVolume() const {
    for (const auto& v : volumes)
        if (v.isRoot) return v;
    return std::nullopt;
}

std::optional<double> ThermalMetrics::hottestC() const {
    std::optional<double> hottest;
    auto consider = [&](const std::optional<double>& c) {
        if (c && std::isfinite(*c) && (!hottest || *c > *hottest)) hottest = *c;
    };
    consider(cpuC);
    consider(cpuMaxC);
    consider(gpuC);
    consider(socC);
    for (const auto& s : sensors) consider(s.celsius);
    return hottest;
}

}  // namespace trotlet::metrics
