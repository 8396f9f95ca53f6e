#include "metrics/MockProvider.h"

#include <algorithm>
#include <cmath>

#include "metrics/FixtureProcesses.h"
#include "metrics/FixtureProvider.h"
#include "metrics/SnapshotMask.h"
#include "settings/RawEnum.h"

namespace trotlet::metrics {

namespace {

std::string_view trim(std::string_view s) {
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    return s;
}

std::optional<double> toDouble(std::string_view v) {
    std::string text(v);
    char* end = nullptr;
    const double d = std::strtod(text.c_str(), &end);
    if (text.empty() || end != text.c_str() + text.size() || !std::isfinite(d)) return std::nullopt;
    return d;
}

std::optional<bool> toBool(std::string_view v) {
    if (v == "true" || v == "1" || v == "yes") return true;
    if (v == "false" || v == "0" || v == "no") return false;
    return std::nullopt;
}

}  // namespace

MockOverrides MockOverrides::parse(std::string_view text) {
    MockOverrides o;
    while (!text.empty()) {
        const size_t comma = text.find(',');
        const std::string_view pair = trim(text.substr(0, comma));
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
        if (pair.empty()) continue;
        const size_t eq = pair.find('=');
        const std::string_view key = trim(pair.substr(0, eq));
        const std::string_view value =
            eq == std::string_view::npos ? std::string_view() : trim(pair.substr(eq + 1));
        bool ok = eq != std::string_view::npos;
        auto unit = [&](std::optional<double>& slot, double lo, double hi) {
            auto d = toDouble(value);
            ok = ok && d && *d >= lo && *d <= hi;
            if (ok) slot = *d;
        };
        auto integer = [&](std::optional<std::int64_t>& slot) {
            auto d = toDouble(value);
            ok = ok && d && *d >= 0 && *d <= 100 && std::floor(*d) == *d;
            if (ok) slot = static_cast<std::int64_t>(*d);
        };
        auto flag = [&](std::optional<bool>& slot) {
            auto b = toBool(value);
            ok = ok && b;
            if (ok) slot = *b;
        };
        if (!ok) {
        } else if (key == "cpu")
            unit(o.cpu, 0, 1);
        else if (key == "cpuC")
            unit(o.cpuC, -40, 150);
        else if (key == "downBps")
            unit(o.downBps, 0, 1e12);
        else if (key == "upBps")
            unit(o.upBps, 0, 1e12);
        else if (key == "diskFreePercent")
            unit(o.diskFreePercent, 0, 100);
        else if (key == "gpu") {
            if (value == "none")
                o.noGpu = true;
            else
                unit(o.gpu, 0, 1);
        } else if (key == "memoryPressure") {
            o.memoryPressure = settings::fromRawName<MemoryPressure>(value, MemoryPressureNames);
            ok = o.memoryPressure.has_value();
        } else if (key == "freePercent")
            integer(o.freePercent);
        else if (key == "batteryPercent")
            integer(o.batteryPercent);
        else if (key == "battery") {
            ok = value == "none";
            o.noBattery = ok;
        } else if (key == "charging")
            flag(o.charging);
        else if (key == "pluggedIn")
            flag(o.pluggedIn);
        else if (key == "lowPowerMode")
            flag(o.lowPowerMode);
        else if (key == "online")
            flag(o.online);
        else {
            o.errors.push_back("unknown key \"" + std::string(key) + "\"");
            continue;
        }
        if (!ok)
            o.errors.push_back("bad value for \"" + std::string(key) + "\": \"" +
                               std::string(value) + "\"");
    }
    return o;
}

double MockProvider::burstLevel(double t) {
    const double phase = t - 40 * std::floor(t / 40);  // 0..40
    if (phase >= 8) return 0;
    const double rise = std::min(1.0, phase);      // 1 s up
    const double fall = std::min(1.0, 8 - phase);  // 1 s down
    return std::min(rise, fall);
}

MetricsSnapshot MockProvider::sample(MetricKinds kinds, Timestamp now) {
    const double t = unixSeconds(now);
    const double burst = burstLevel(t);
    MetricsSnapshot s = fixtureSnapshot(MetricsFixture::normal, now);
    const auto& o = overrides_;

    double cpu = 0.18 + 0.06 * std::sin(t / 7) + 0.72 * burst;
    if (o.cpu) cpu = *o.cpu;
    cpu = std::clamp(cpu, 0.0, 1.0);
    s.cpu.total = cpu;
    s.cpu.user = cpu * 0.72;
    s.cpu.system = cpu - s.cpu.user;
    for (size_t i = 0; i < s.cpu.perCore.size(); ++i)
        s.cpu.perCore[i] =
            std::clamp(cpu + 0.1 * std::sin(t / 3 + double(i)) * (1 - cpu), 0.0, 1.0);
    s.cpu.loadAvg = {8 * cpu, 8 * (0.2 + 0.3 * cpu), 8 * 0.2};

    double freeFraction = 0.42 - 0.06 * std::sin(t / 300) - 0.1 * burst;
    if (o.freePercent) freeFraction = double(*o.freePercent) / 100;
    auto& m = s.memory;
    m.used = static_cast<std::uint64_t>(double(m.total) * (1 - freeFraction));
    m.wired = std::min(m.used, m.wired);
    m.compressed = std::min(m.used - m.wired, m.compressed);
    m.app = m.used - m.wired - m.compressed;
    m.cached = (m.total - m.used) * 2 / 3;
    m.free = m.total - m.used - m.cached;
    m.freePercent = std::llround(100 * freeFraction);
    m.pressure = o.memoryPressure
                     ? *o.memoryPressure
                     : (freeFraction < 0.1 ? MemoryPressure::warning : MemoryPressure::normal);

    double cpuC = 48 + 10 * std::sin(t / 90) + 38 * burst;
    if (o.cpuC) cpuC = *o.cpuC;
    s.thermal.cpuC = cpuC;
    s.thermal.cpuMaxC = cpuC + 3;
    s.thermal.sensors[0].celsius = cpuC;
    s.thermal.sensors[1].celsius = cpuC + 3;
    s.thermal.sensors[2].celsius = cpuC + 1;
    s.thermal.fans[0].rpm = std::round(1800 + 3200 * std::clamp((cpuC - 45) / 50, 0.0, 1.0));
    const double below = 100 - cpuC;
    s.thermal.state = below <= 3    ? ThermalState::critical
                      : below <= 12 ? ThermalState::serious
                      : below <= 25 ? ThermalState::fair
                                    : ThermalState::nominal;

    s.network.downBps =
        o.downBps ? *o.downBps : std::max(0.0, 180e3 + 150e3 * std::sin(t / 5) + 2e6 * burst);
    s.network.upBps = o.upBps ? *o.upBps : std::max(0.0, 25e3 + 20e3 * std::sin(t / 4));
    if (o.online && !*o.online) {
        const auto totals = std::make_pair(s.network.totalDownBytes, s.network.totalUpBytes);
        s.network = NetworkMetrics{};
        s.network.totalDownBytes = totals.first;
        s.network.totalUpBytes = totals.second;
    }

    // The battery drains over eight hours and charges back over two, for ever.
    const double cycle = std::fmod(t, 36000.0);
    const bool draining = cycle < 28800;
    double percent = draining ? 100 - 95 * cycle / 28800 : 5 + 95 * (cycle - 28800) / 7200;
    auto& b = s.battery;
    b.charging = o.charging.value_or(!draining && percent < 100);
    b.pluggedIn = o.pluggedIn.value_or(b.charging || !draining);
    if (o.batteryPercent) percent = double(*o.batteryPercent);
    b.percent = std::clamp<std::int64_t>(std::llround(percent), 0, 100);
    b.fullyCharged = b.pluggedIn && b.percent >= 100;
    const double watts = 6 + 30 * cpu;
    b.watts = b.charging ? 24.0 : (b.pluggedIn ? 0.0 : -watts);
    if (b.pluggedIn)
        b.systemWatts.reset();
    else
        b.systemWatts = watts;
    if (b.charging)
        b.timeRemainingMin = std::llround((100 - percent) * 72 / 95);
    else if (!b.pluggedIn)
        b.timeRemainingMin = std::llround(percent * 8 * 60 / 95 * (14 / (6 + 30 * cpu)));
    else
        b.timeRemainingMin.reset();
    if (b.pluggedIn) {
        b.adapterWatts = 65;
        b.adapterName = "AC";
    }
    b.lowPowerMode = o.lowPowerMode.value_or(false);
    if (o.noBattery) b = BatteryMetrics{.lowPowerMode = o.lowPowerMode.value_or(false)};

    if (o.noGpu)
        s.gpu.reset();
    else
        s.gpu->utilization =
            o.gpu ? *o.gpu : std::clamp(0.05 + 0.3 * burst + 0.03 * std::sin(t / 11), 0.0, 1.0);

    if (o.diskFreePercent) {
        auto& root = s.disks.volumes[0];
        root.availableBytes = static_cast<std::int64_t>(double(root.totalBytes.value_or(0)) *
                                                        *o.diskFreePercent / 100);
    }
    s.disks.readBps = std::max(0.0, 4e5 + 3e5 * std::sin(t / 6) + 5e7 * burst);
    s.disks.writeBps = std::max(0.0, 1.5e5 + 1e5 * std::sin(t / 8));

    // The burst is somebody's work: the busiest process takes it.
    s.processes.topCPU[0].cpuPercent = std::round((12 + 700 * burst) * 10) / 10;
    s.processes.topCPU[0].name = burst > 0 ? "cc1plus" : "firefox";
    s.system.uptimeSec = std::fmod(t, 86400.0 * 30);
    s.system.bootDate = now - std::chrono::seconds(static_cast<long long>(s.system.uptimeSec));

    auto out = restrictedTo(std::move(s), kinds);
    if (fullProcessList_ && kinds.contains(MetricKinds::processes))
        out.processes.all = fixtureProcessTable(out);
    return out;
}

}  // namespace trotlet::metrics
