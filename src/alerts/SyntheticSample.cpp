#include "alerts/SyntheticSample.h"

#include <algorithm>
#include <cmath>

#include "settings/RawEnum.h"

namespace trotlet::alerts {

namespace {
std::int64_t gigabytes(double gb) { return std::int64_t(std::llround(gb * 1e9)); }
}  // namespace

metrics::MetricsSnapshot SyntheticSample::snapshot(metrics::Timestamp at) const {
    metrics::MetricsSnapshot s;
    s.timestamp = at;
    s.cpu.total = cpu;
    s.cpu.user = cpu * 0.7;
    s.cpu.system = cpu * 0.3;

    s.thermal.state = thermalState;
    s.thermal.cpuC = temperatureC;

    if (battery) {
        s.battery.present = true;
        s.battery.percent = battery->percent;
        s.battery.pluggedIn = battery->pluggedIn;
        s.battery.charging = battery->charging;
        s.battery.fullyCharged = battery->fullyCharged;
        s.battery.timeRemainingMin = battery->minutesLeft;
    }

    s.memory.total = 16'000'000'000ULL;
    s.memory.pressure = pressure;

    metrics::VolumeInfo root;
    root.name = rootName;
    root.path.assign(1, '/');  // not a one-char literal: GCC 12 warns falsely (-Wrestrict)
    root.isRoot = true;
    root.isInternal = true;
    if (rootFreeGB) {
        root.totalBytes = gigabytes(rootTotalGB);
        root.availableBytes = gigabytes(*rootFreeGB);
    }
    s.disks.volumes.push_back(root);

    for (const Process& p : processes) {
        metrics::ProcessRow row;
        row.pid = p.pid;
        row.name = p.name;
        row.cpuPercent = p.cpuPercent;
        row.canQuit = true;
        s.processes.topCPU.push_back(row);
    }
    std::stable_sort(s.processes.topCPU.begin(), s.processes.topCPU.end(),
                     [](const auto& a, const auto& b) { return a.cpuPercent > b.cpuPercent; });
    return s;
}

nlohmann::ordered_json SyntheticSample::summary() const {
    nlohmann::ordered_json j;
    j["cpu"] = cpu;
    if (temperatureC) j["temperatureC"] = *temperatureC;
    j["thermalState"] = settings::rawName(thermalState, metrics::ThermalStateNames);
    if (battery) {
        nlohmann::ordered_json b;
        b["percent"] = battery->percent;
        b["pluggedIn"] = battery->pluggedIn;
        b["charging"] = battery->charging;
        b["fullyCharged"] = battery->fullyCharged;
        if (battery->minutesLeft) b["minutesLeft"] = *battery->minutesLeft;
        j["battery"] = b;
    }
    j["memoryPressure"] = settings::rawName(pressure, metrics::MemoryPressureNames);
    if (rootFreeGB) j["rootFreeGB"] = *rootFreeGB;
    if (!processes.empty()) {
        const auto busiest = std::max_element(
            processes.begin(), processes.end(),
            [](const auto& a, const auto& b) { return a.cpuPercent < b.cpuPercent; });
        j["busiestProcess"] = busiest->name;
    }
    return j;
}

SyntheticSample SyntheticSample::withCpu(double total) const {
    SyntheticSample s = *this;
    s.cpu = total;
    return s;
}

SyntheticSample SyntheticSample::withTemperature(std::optional<double> celsius,
                                                 metrics::ThermalState state) const {
    SyntheticSample s = *this;
    s.temperatureC = celsius;
    s.thermalState = state;
    return s;
}

SyntheticSample SyntheticSample::withBattery(std::int64_t percent, bool pluggedIn, bool charging,
                                             bool fullyCharged) const {
    SyntheticSample s = *this;
    const std::optional<std::int64_t> minutes = battery ? battery->minutesLeft : std::nullopt;
    s.battery = Battery{percent, pluggedIn, charging, fullyCharged, minutes};
    return s;
}

SyntheticSample SyntheticSample::withoutBattery() const {
    SyntheticSample s = *this;
    s.battery.reset();
    return s;
}

SyntheticSample SyntheticSample::withPressure(metrics::MemoryPressure level) const {
    SyntheticSample s = *this;
    s.pressure = level;
    return s;
}

SyntheticSample SyntheticSample::withRootFree(std::optional<double> gb) const {
    SyntheticSample s = *this;
    s.rootFreeGB = gb;
    return s;
}

SyntheticSample SyntheticSample::withProcesses(std::vector<Process> rows) const {
    SyntheticSample s = *this;
    s.processes = std::move(rows);
    return s;
}

}  // namespace trotlet::alerts
