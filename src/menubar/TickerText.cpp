#include "menubar/TickerText.h"

#include <algorithm>
#include <cmath>

#include "menubar/Format.h"

namespace trotlet::menubar {

std::string tickerText(MenuBarTextMetric metric, const metrics::MetricsSnapshot& s,
                       TemperatureUnit temperatureUnit, NetworkUnit networkUnit) {
    switch (metric) {
        case MenuBarTextMetric::none:
            return {};
        case MenuBarTextMetric::cpu:
            return Format::percent(s.cpu.total);
        case MenuBarTextMetric::memory:
            // Without a pressure level the memory figures were not sampled at all.
            if (s.memory.pressure == metrics::MemoryPressure::unknown) return {};
            return Format::percent(s.memory.total == 0
                                       ? 0.0
                                       : static_cast<double>(s.memory.used) /
                                             static_cast<double>(s.memory.total));
        case MenuBarTextMetric::gpu:
            return s.gpu ? Format::percent(s.gpu->utilization) : std::string();
        case MenuBarTextMetric::cpuTemperature: {
            const auto hottest = s.thermal.hottestC();
            if (!hottest) return {};
            const auto parts = Format::temperatureParts(*hottest, temperatureUnit);
            return parts.value + parts.unit;
        }
        case MenuBarTextMetric::network:
            // Only the download direction fits the tray.
            return "↓" + Format::rateParts(s.network.downBps, networkUnit).joined();
        case MenuBarTextMetric::battery:
            if (!s.battery.present) return {};
            return Format::fixed(0, static_cast<double>(s.battery.percent)) + "%";
    }
    return {};
}

std::vector<std::string> tickerSampleTexts(MenuBarTextMetric metric) {
    switch (metric) {
        case MenuBarTextMetric::none: return {};
        case MenuBarTextMetric::cpuTemperature: return {"100°C", "212°F"};
        case MenuBarTextMetric::network: return {"↓8.8 MB/s", "↓888 KB/s"};
        default: return {"100%"};
    }
}

double TickerWidth::sampleWidth(MenuBarTextMetric metric) {
    if (metric == MenuBarTextMetric::none) return 0;
    if (auto it = cache_.find(metric); it != cache_.end()) return it->second;
    double widest = 0;
    for (const auto& text : tickerSampleTexts(metric)) widest = std::max(widest, measure_(text));
    widest = std::ceil(widest);
    cache_[metric] = widest;
    return widest;
}

double TickerWidth::reservedWidth(MenuBarTextMetric metric, std::string_view text) {
    if (metric == MenuBarTextMetric::none) return 0;
    const double current = text.empty() ? 0.0 : std::ceil(measure_(text));
    return std::max(sampleWidth(metric), current);
}

}  // namespace trotlet::menubar
