#include "metrics/FixtureProvider.h"

#include <algorithm>
#include <cmath>

#include "metrics/FixtureProcesses.h"
#include "metrics/SnapshotMask.h"

namespace trotlet::metrics {

namespace {

constexpr std::uint64_t GiB = 1ull << 30;
constexpr std::uint64_t MiB = 1ull << 20;

double round3(double v) { return std::round(v * 1000) / 1000; }

// Loads per core around `total`, spread so the cores differ.
std::vector<double> coresAround(double total, int count) {
    std::vector<double> out;
    for (int i = 0; i < count; ++i) {
        const double offset = 0.12 * std::cos(i * 1.7);
        out.push_back(round3(std::clamp(total + offset * (1 - total), 0.0, 1.0)));
    }
    return out;
}

ProcessRow row(std::int32_t pid, const char* name, double cpu, std::uint64_t memory, const char* user,
               const char* exe, std::int64_t threads) {
    ProcessRow r;
    r.pid = pid;
    r.name = name;
    r.cpuPercent = cpu;
    r.memoryBytes = memory;
    r.user = user;
    r.canQuit = std::string_view(user) != "root";
    if (exe) r.executablePath = exe;
    r.threads = threads;
    r.isPrivileged = std::string_view(user) == "root";
    return r;
}

void setCpu(MetricsSnapshot& s, double total, double loadAvg) {
    s.cpu.total = total;
    s.cpu.user = round3(total * 0.7);
    s.cpu.system = round3(total - s.cpu.user);
    s.cpu.perCore = coresAround(total, 8);
    s.cpu.loadAvg = {loadAvg, round3(loadAvg * 0.85), round3(loadAvg * 0.7)};
}

void setMemory(MetricsSnapshot& s, double usedFraction, MemoryPressure pressure) {
    auto& m = s.memory;
    m.total = 16 * GiB;
    m.used = static_cast<std::uint64_t>(double(m.total) * usedFraction);
    m.wired = std::min(m.used, 1536 * MiB);
    m.compressed = std::min(m.used - m.wired, static_cast<std::uint64_t>(double(m.used) * 0.05));
    m.app = m.used - m.wired - m.compressed;
    m.cached = (m.total - m.used) * 2 / 3;
    m.free = m.total - m.used - m.cached;
    m.swapTotal = 8 * GiB;
    m.swapUsed = usedFraction > 0.85 ? 3 * GiB : 256 * MiB;
    m.pressure = pressure;
    m.freePercent = std::llround(100 * (1 - usedFraction));
}

void setThermal(MetricsSnapshot& s, double cpuC, ThermalState state, double fanRpm) {
    auto& t = s.thermal;
    t.state = state;
    t.cpuC = cpuC;
    t.cpuMaxC = cpuC + 4;
    t.sensors = {{"coretemp Package id 0", SensorGroup::cpu, cpuC},
                 {"coretemp Core 0", SensorGroup::cpu, cpuC + 4},
                 {"coretemp Core 1", SensorGroup::cpu, cpuC + 1},
                 {"nvme Composite", SensorGroup::storage, 38 + (cpuC - 40) * 0.3},
                 {"acpitz temp1", SensorGroup::board, 30 + (cpuC - 40) * 0.4}};
    t.fans = {{1, fanRpm, 0.0, 5200.0}};
    t.fanCount = 1;
    t.source = "hwmon";
}

MetricsSnapshot laptop(Timestamp now) {
    MetricsSnapshot s;
    s.timestamp = now;
    setCpu(s, 0.23, 1.4);
    s.cpu.processCount = 312;
    s.cpu.threadCount = 1480;
    setMemory(s, 0.58, MemoryPressure::normal);
    s.disks.volumes = {
        {"Root", "/", 512'000'000'000, 201'000'000'000, true, false, true, false},
        {"home", "/home", 1'000'000'000'000, 420'000'000'000, true, false, false, false},
    };
    s.disks.readBps = 1.2e6;
    s.disks.writeBps = 4.5e5;
    s.disks.totalReadBytes = 812 * GiB;
    s.disks.totalWrittenBytes = 455 * GiB;
    s.network.downBps = 2.4e5;
    s.network.upBps = 3.1e4;
    s.network.totalDownBytes = 38 * GiB;
    s.network.totalUpBytes = 4 * GiB;
    s.network.interface = "wlp0s20f3";
    s.network.interfaceKind = InterfaceKind::wifi;
    s.network.localIP = "192.168.1.23";
    s.network.router = "192.168.1.1";
    s.network.online = true;
    s.network.wifi = WifiDetails{std::nullopt, -58, -95, 74, std::nullopt};
    auto& b = s.battery;
    b.present = true;
    b.percent = 76;
    b.charging = false;
    b.pluggedIn = false;
    b.fullyCharged = false;
    b.timeRemainingMin = 312;
    b.healthPct = 91.4;
    b.cycles = 214;
    b.condition = "Good";
    b.temperatureC = 31.5;
    b.watts = -7.9;
    b.systemWatts = 7.9;
    setThermal(s, 52, ThermalState::nominal, 2100);
    s.gpu = GPUMetrics{"Intel Iris Xe Graphics", std::nullopt, 0.08, std::nullopt, std::nullopt, std::nullopt};
    s.processes.topCPU = {row(4242, "firefox", 18.5, 1200 * MiB, "alice", "/usr/lib/firefox/firefox", 92),
                          row(2310, "gnome-shell", 6.1, 410 * MiB, "alice", "/usr/bin/gnome-shell", 24),
                          row(5120, "code", 3.2, 690 * MiB, "alice", "/usr/share/code/code", 41),
                          row(901, "Xwayland", 1.4, 96 * MiB, "alice", "/usr/bin/Xwayland", 6),
                          row(1, "systemd", 0.1, 14 * MiB, "root", nullptr, 1)};
    s.processes.topMemory = {s.processes.topCPU[0], s.processes.topCPU[2], s.processes.topCPU[1],
                             s.processes.topCPU[3], s.processes.topCPU[4]};
    s.processes.totalCount = 312;
    s.system.uptimeSec = 3 * 86400 + 4 * 3600 + 17 * 60;
    s.system.model = "20XW00EXUS";
    s.system.modelName = "LENOVO ThinkPad X1 Carbon Gen 9";
    s.system.chip = "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz";
    s.system.osVersion = "Debian GNU/Linux 12 (bookworm)";
    s.system.bootDate = now - std::chrono::seconds(static_cast<long long>(s.system.uptimeSec));
    s.system.selfCpuPercent = 0.4;
    s.system.selfMemoryBytes = 48 * MiB;
    return s;
}

void setTopCpu(MetricsSnapshot& s, double scale) {
    for (auto& r : s.processes.topCPU) r.cpuPercent = std::round(r.cpuPercent * scale * 10) / 10;
}

}  // namespace

MetricsSnapshot fixtureSnapshot(MetricsFixture fixture, Timestamp now) {
    MetricsSnapshot s = laptop(now);
    switch (fixture) {
    case MetricsFixture::normal:
        break;
    case MetricsFixture::idle:
        setCpu(s, 0.03, 0.12);
        setMemory(s, 0.31, MemoryPressure::normal);
        setThermal(s, 38, ThermalState::nominal, 0);
        s.battery.percent = 100;
        s.battery.pluggedIn = true;
        s.battery.fullyCharged = true;
        s.battery.timeRemainingMin.reset();
        s.battery.watts = 0.0;
        s.battery.systemWatts.reset();
        s.battery.adapterWatts = 65;
        s.battery.adapterName = "AC";
        s.disks.readBps = 0.0;
        s.disks.writeBps = 8192.0;
        s.network.downBps = 1200;
        s.network.upBps = 800;
        setTopCpu(s, 0.1);
        s.gpu->utilization = 0.01;
        break;
    case MetricsFixture::busy:
        setCpu(s, 0.68, 5.2);
        setMemory(s, 0.72, MemoryPressure::normal);
        setThermal(s, 74, ThermalState::fair, 3900);
        s.battery.percent = 64;
        s.battery.charging = true;
        s.battery.pluggedIn = true;
        s.battery.timeRemainingMin = 48;
        s.battery.watts = 21.0;
        s.battery.systemWatts.reset();
        s.battery.adapterWatts = 65;
        s.battery.adapterName = "AC";
        s.disks.readBps = 3.8e7;
        s.disks.writeBps = 1.2e7;
        s.network.downBps = 4.2e6;
        s.network.upBps = 6.0e5;
        setTopCpu(s, 3.5);
        s.gpu->utilization = 0.41;
        break;
    case MetricsFixture::panic:
        setCpu(s, 0.99, 14.8);
        for (auto& c : s.cpu.perCore) c = std::max(c, 0.97);
        setMemory(s, 0.96, MemoryPressure::critical);
        setThermal(s, 88, ThermalState::serious, 4900);
        s.processes.topCPU.insert(s.processes.topCPU.begin(),
                                  row(6666, "runaway-build", 742.0, 9 * GiB, "alice", "/usr/bin/cc1plus", 8));
        s.processes.topMemory.insert(s.processes.topMemory.begin(), s.processes.topCPU.front());
        s.processes.topCPU.pop_back();
        s.processes.topMemory.pop_back();
        s.battery.watts = -38.0;
        s.battery.systemWatts = 38.0;
        s.battery.timeRemainingMin = 71;
        break;
    case MetricsFixture::hot:
        setCpu(s, 0.57, 4.1);
        setThermal(s, 97, ThermalState::critical, 5150);
        s.thermal.sensors.push_back({"iwlwifi_1 temp1", SensorGroup::other, 61});
        s.battery.temperatureC = 41.0;
        setTopCpu(s, 2.6);
        break;
    case MetricsFixture::lowBattery:
        s.battery.percent = 7;
        s.battery.timeRemainingMin = 18;
        s.battery.watts = -6.8;
        s.battery.systemWatts = 6.8;
        s.battery.lowPowerMode = true;
        break;
    case MetricsFixture::offline:
        s.network = NetworkMetrics{};
        s.network.totalDownBytes = 38 * GiB;
        s.network.totalUpBytes = 4 * GiB;
        s.network.online = false;
        break;
    case MetricsFixture::desktop:
        s.battery = BatteryMetrics{};
        s.network.interface = "enp5s0";
        s.network.interfaceKind = InterfaceKind::wired;
        s.network.wifi.reset();
        s.network.localIP = "192.168.1.40";
        s.thermal.cpuC = 49.5;
        s.thermal.cpuMaxC = 49.5;
        s.thermal.sensors = {{"k10temp Tctl", SensorGroup::cpu, 49.5},
                             {"amdgpu edge", SensorGroup::gpu, 44},
                             {"nvme Composite", SensorGroup::storage, 39.85}};
        s.thermal.gpuC = 44;
        s.thermal.fans = {{1, 820, std::nullopt, std::nullopt}, {2, 1150, std::nullopt, std::nullopt}};
        s.thermal.fanCount = 2;
        s.gpu = GPUMetrics{"AMD Radeon RX 6600", std::nullopt, 0.12, std::nullopt, std::nullopt, 1536 * MiB};
        s.system.model = "MS-7C56";
        s.system.modelName = "Micro-Star International Co., Ltd. MS-7C56";
        s.system.chip = "AMD Ryzen 7 5800X 8-Core Processor";
        setMemory(s, 0.44, MemoryPressure::normal);
        break;
    case MetricsFixture::stress:
        setCpu(s, 0.97, 11.6);
        setMemory(s, 0.91, MemoryPressure::warning);
        setThermal(s, 92, ThermalState::serious, 5100);
        s.disks.readBps = 4.1e8;
        s.disks.writeBps = 2.6e8;
        s.network.downBps = 9.4e7;
        s.network.upBps = 3.2e7;
        s.gpu->utilization = 0.96;
        s.battery.percent = 41;
        s.battery.watts = -52.0;
        s.battery.systemWatts = 52.0;
        s.battery.timeRemainingMin = 29;
        s.disks.volumes[0].availableBytes = 9'000'000'000;
        setTopCpu(s, 5);
        break;
    }
    return s;
}

std::string FixtureProvider::name() const {
    return "fixture:" + std::string(MetricsFixtureNames[static_cast<size_t>(fixture_)]);
}

MetricsSnapshot FixtureProvider::sample(MetricKinds kinds, Timestamp now) {
    auto s = restrictedTo(fixtureSnapshot(fixture_, now), kinds);
    if (s.processes.all || !fullProcessList_ || !kinds.contains(MetricKinds::processes)) return s;
    s.processes.all = fixtureProcessTable(s);
    return s;
}

}  // namespace trotlet::metrics
