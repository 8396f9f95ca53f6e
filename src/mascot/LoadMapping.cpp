#include "mascot/LoadMapping.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace trotlet::mascot {
namespace {

using metrics::MemoryPressure;

double clamp01(double x) { return std::isnan(x) ? 0.0 : std::clamp(x, 0.0, 1.0); }

double usedFraction(const metrics::MemoryMetrics& m) {
    return m.total == 0 ? 0.0 : static_cast<double>(m.used) / static_cast<double>(m.total);
}

double underPressure(const metrics::MemoryMetrics& m) {
    switch (m.pressure) {
        case MemoryPressure::warning: return 0.6 + 0.25 * usedFraction(m);
        case MemoryPressure::critical: return 1.0;
        default: return 0.0;
    }
}

}  // namespace

double LoadMapping::cpuLoad(const metrics::MetricsSnapshot& s) { return clamp01(s.cpu.total); }

double LoadMapping::gpuLoad(const metrics::MetricsSnapshot& s) {
    return s.gpu ? clamp01(s.gpu->utilization) : 0.0;
}

double LoadMapping::memoryLoad(const metrics::MetricsSnapshot& s) {
    if (s.memory.pressure == MemoryPressure::normal) return clamp01(usedFraction(s.memory) * 0.5);
    return clamp01(underPressure(s.memory));
}

double LoadMapping::memoryPressureLoad(const metrics::MetricsSnapshot& s) {
    return clamp01(underPressure(s.memory));
}

double LoadMapping::networkLoad(const metrics::MetricsSnapshot& s) {
    // A log scale: 1 kB/s and below is still, 100 MB/s and above is flat out.
    const double total = s.network.downBps + s.network.upBps;
    return clamp01((std::log10(std::max(std::isnan(total) ? 0.0 : total, 1.0)) - 3) / 5);
}

double LoadMapping::load(const metrics::MetricsSnapshot& s, LoadSource source) {
    switch (source) {
        case LoadSource::cpu: return cpuLoad(s);
        case LoadSource::gpu: return gpuLoad(s);
        case LoadSource::memory: return memoryLoad(s);
        case LoadSource::network: return networkLoad(s);
        case LoadSource::busiest:
            return std::max({cpuLoad(s), gpuLoad(s), memoryPressureLoad(s), networkLoad(s)});
    }
    return 0;
}

LoadSource LoadMapping::winningSource(const metrics::MetricsSnapshot& s, LoadSource source) {
    if (source != LoadSource::busiest) return source;
    const std::array<std::pair<LoadSource, double>, 4> terms = {{
        {LoadSource::cpu, cpuLoad(s)},
        {LoadSource::gpu, gpuLoad(s)},
        {LoadSource::memory, memoryPressureLoad(s)},
        {LoadSource::network, networkLoad(s)},
    }};
    LoadSource winner = LoadSource::cpu;
    double best = -1;
    for (const auto& [candidate, value] : terms)
        if (value > best) {
            best = value;
            winner = candidate;
        }
    return winner;
}

}  // namespace trotlet::mascot
