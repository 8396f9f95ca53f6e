#include <gtest/gtest.h>

#include "metrics/FixtureProvider.h"
#include "metrics/MetricHistory.h"
#include "metrics/MetricsJson.h"
#include "metrics/MockProvider.h"
#include "metrics/PressureLevels.h"
#include "metrics/SamplingPlan.h"

using namespace trotlet::metrics;

namespace {
const Timestamp kNoon = fromUnixSeconds(1795003200);  // a multiple of 40 s: a burst starts
}

TEST(FixtureProvider, EachFixtureIsShapedToItsName) {
    for (size_t i = 0; i < MetricsFixtureNames.size(); ++i) {
        const auto fixture = static_cast<MetricsFixture>(i);
        FixtureProvider provider(fixture);
        const auto s = provider.sample(MetricKinds::all, kNoon);
        SCOPED_TRACE(provider.name());
        EXPECT_EQ(provider.name(), "fixture:" + std::string(MetricsFixtureNames[i]));
        EXPECT_EQ(s, provider.sample(MetricKinds::all, kNoon)) << "deterministic";
        EXPECT_EQ(s.timestamp, kNoon);
        const auto back = decode<MetricsSnapshot>(encode(s));
        ASSERT_TRUE(back.value) << back.error;
        auto expected = s;
        expected.cpu.efficiencyCoreIndices.clear();
        EXPECT_EQ(*back.value, expected);
        EXPECT_EQ(s.cpu.perCore.size(), 8u);
        for (double c : s.cpu.perCore) EXPECT_TRUE(c >= 0 && c <= 1);
        EXPECT_EQ(s.memory.app + s.memory.wired + s.memory.compressed, s.memory.used);
        EXPECT_LE(s.memory.used + s.memory.cached + s.memory.free, s.memory.total);
    }
    auto get = [](MetricsFixture f) { return fixtureSnapshot(f, kNoon); };
    EXPECT_LT(get(MetricsFixture::idle).cpu.total, 0.1);
    EXPECT_GT(get(MetricsFixture::busy).cpu.total, get(MetricsFixture::normal).cpu.total);
    EXPECT_GE(get(MetricsFixture::panic).cpu.total, 0.95);
    EXPECT_EQ(get(MetricsFixture::panic).memory.pressure, MemoryPressure::critical);
    EXPECT_GE(*get(MetricsFixture::hot).thermal.cpuC, 95);
    EXPECT_EQ(get(MetricsFixture::hot).thermal.state, ThermalState::critical);
    const auto low = get(MetricsFixture::lowBattery).battery;
    EXPECT_TRUE(low.present && low.percent <= 10 && !low.pluggedIn && !low.charging);
    const auto offline = get(MetricsFixture::offline).network;
    EXPECT_FALSE(offline.online);
    EXPECT_FALSE(offline.interface);
    EXPECT_EQ(offline.downBps, 0);
    const auto desktop = get(MetricsFixture::desktop);
    EXPECT_FALSE(desktop.battery.present);
    EXPECT_EQ(encode(desktop.battery), Json::parse(R"({"lowPowerMode":false})"));
    const auto stress = get(MetricsFixture::stress);
    EXPECT_GT(stress.cpu.total, 0.9);
    EXPECT_GT(stress.gpu->utilization, 0.9);
    EXPECT_GE(stress.memory.pressure, MemoryPressure::warning);
    EXPECT_GT(*stress.disks.readBps, 1e8);
}

TEST(FixtureProvider, FillsOnlyTheKindsAskedForAndTheFullListOnRequest) {
    FixtureProvider provider(MetricsFixture::normal);
    auto s = provider.sample(MetricKinds::cpu | MetricKinds::volumes, kNoon);
    EXPECT_GT(s.cpu.total, 0);
    EXPECT_FALSE(s.disks.volumes.empty());
    EXPECT_FALSE(s.disks.readBps) << "diskIO was not asked for";
    EXPECT_EQ(s.memory.total, 0u);
    EXPECT_FALSE(s.battery.present);
    EXPECT_FALSE(s.gpu);
    EXPECT_TRUE(s.processes.topCPU.empty());
    EXPECT_TRUE(s.system.model.empty());
    s = provider.sample(MetricKinds::processes, kNoon);
    EXPECT_FALSE(s.processes.all);
    provider.setFullProcessList(true);
    s = provider.sample(MetricKinds::processes, kNoon);
    ASSERT_TRUE(s.processes.all);
    EXPECT_EQ(std::int64_t(s.processes.all->size()), s.processes.totalCount)
        << "the whole table behind the top lists";
    // The top lists stay true to the table: nothing outside them is busier or bigger.
    auto listed = [](const std::vector<ProcessRow>& top, const ProcessRow& r) {
        return std::any_of(top.begin(), top.end(), [&](const ProcessRow& t) { return t.pid == r.pid; });
    };
    for (const auto& r : *s.processes.all) {
        if (!listed(s.processes.topCPU, r)) {
            EXPECT_LE(r.cpuPercent, s.processes.topCPU.back().cpuPercent) << r.name;
        }
        if (!listed(s.processes.topMemory, r)) {
            EXPECT_LE(r.memoryBytes, s.processes.topMemory.back().memoryBytes) << r.name;
        }
    }
    EXPECT_TRUE(std::is_sorted(s.processes.all->begin(), s.processes.all->end(),
                               [](const auto& a, const auto& b) { return a.pid < b.pid; }));
}

TEST(MockProvider, BurstsEveryFortySeconds) {
    MockProvider mock;
    struct Point { double offset; bool bursting; };
    const Point timeline[] = {{-5, false}, {1.5, true}, {4, true}, {6.5, true}, {9, false}, {20, false},
                              {39, false}, {41, true}, {48.5, false}, {84, true}};
    for (const auto& p : timeline) {
        const auto t = kNoon + std::chrono::milliseconds(static_cast<long long>(p.offset * 1000));
        const auto s = mock.sample(MetricKinds::all, t);
        if (p.bursting) EXPECT_GT(s.cpu.total, 0.5) << p.offset;
        else EXPECT_LT(s.cpu.total, 0.3) << p.offset;
    }
    EXPECT_EQ(MockProvider::burstLevel(1795003200 + 4), 1.0);
    EXPECT_EQ(MockProvider::burstLevel(1795003200 + 8), 0.0);
    // Animated: consecutive seconds differ; pure: the same time gives the same sample.
    EXPECT_NE(mock.sample(MetricKinds::all, kNoon + std::chrono::seconds(15)).cpu.total,
              mock.sample(MetricKinds::all, kNoon + std::chrono::seconds(16)).cpu.total);
    EXPECT_EQ(mock.sample(MetricKinds::all, kNoon), mock.sample(MetricKinds::all, kNoon));
    const auto hot = mock.sample(MetricKinds::sensors, kNoon + std::chrono::seconds(4));
    const auto calm = mock.sample(MetricKinds::sensors, kNoon + std::chrono::seconds(20));
    EXPECT_GT(*hot.thermal.cpuC, *calm.thermal.cpuC + 30) << "temperature follows the burst";
}

TEST(MockOverrides, ParseAndApply) {
    const auto o = MockOverrides::parse(" cpu=0.9, batteryPercent=12 ,charging=false,online=false,"
                                        "memoryPressure=critical,gpu=none,bogus=1,cpuC=hot,freePercent=150,,");
    EXPECT_EQ(o.cpu, 0.9);
    EXPECT_EQ(o.batteryPercent, 12);
    EXPECT_EQ(o.charging, false);
    EXPECT_EQ(o.online, false);
    EXPECT_EQ(o.memoryPressure, MemoryPressure::critical);
    EXPECT_TRUE(o.noGpu);
    EXPECT_FALSE(o.cpuC);
    EXPECT_FALSE(o.freePercent);
    ASSERT_EQ(o.errors.size(), 3u);
    EXPECT_EQ(o.errors[0], "unknown key \"bogus\"");
    EXPECT_EQ(o.errors[1], "bad value for \"cpuC\": \"hot\"");

    MockProvider mock(o);
    for (int second = 0; second < 80; second += 7) {
        const auto s = mock.sample(MetricKinds::all, kNoon + std::chrono::seconds(second));
        EXPECT_EQ(s.cpu.total, 0.9);
        EXPECT_EQ(s.battery.percent, 12);
        EXPECT_FALSE(s.battery.charging);
        EXPECT_FALSE(s.network.online);
        EXPECT_FALSE(s.network.router);
        EXPECT_EQ(s.memory.pressure, MemoryPressure::critical);
        EXPECT_FALSE(s.gpu);
    }
    const auto none = MockProvider(MockOverrides::parse("battery=none")).sample(MetricKinds::all, kNoon);
    EXPECT_FALSE(none.battery.present);
    EXPECT_TRUE(MockOverrides::parse("").errors.empty());
}

TEST(MemoryPressureTracker, EnterAndExitLevels) {
    MemoryPressureTracker t;
    struct Step { std::optional<double> some, full; MemoryPressure expected; };
    const Step steps[] = {
        {0, 0, MemoryPressure::normal},     {9.9, 0, MemoryPressure::normal},
        {10, 0, MemoryPressure::warning},   {6, 0, MemoryPressure::warning},   // above the exit level
        {4.9, 0, MemoryPressure::normal},   {30, 12, MemoryPressure::critical},
        {30, 6, MemoryPressure::critical},  {30, 4, MemoryPressure::warning},  // down a level
        {std::nullopt, std::nullopt, MemoryPressure::unknown}, {6, 0, MemoryPressure::normal},  // forgot
    };
    for (size_t i = 0; i < std::size(steps); ++i)
        EXPECT_EQ(t.update(steps[i].some, steps[i].full), steps[i].expected) << "step " << i;
}

TEST(ThermalStateTracker, StatesWithHysteresis) {
    ThermalStateTracker t;
    struct Step { std::optional<double> c, limit; ThermalState expected; };
    const Step steps[] = {
        {60, 100, ThermalState::nominal},  {75, 100, ThermalState::fair},      {73, 100, ThermalState::fair},
        {71, 100, ThermalState::nominal},  {88, 100, ThermalState::serious},   {98, 100, ThermalState::critical},
        {95, 100, ThermalState::critical}, {93, 100, ThermalState::serious},   {80, 85, ThermalState::serious},
        {std::nullopt, 100, ThermalState::nominal}, {90, std::nullopt, ThermalState::serious},  // 100 °C assumed
    };
    for (size_t i = 0; i < std::size(steps); ++i)
        EXPECT_EQ(t.update(steps[i].c, steps[i].limit), steps[i].expected) << "step " << i;
}

TEST(SamplingPlan, TiersOrderKindsAndIntervals) {
    const auto bar = planFor(ConsumerTier::menuBarOnly, 2, true);
    const auto closed = planFor(ConsumerTier::panelClosed, 2, true);
    const auto open = planFor(ConsumerTier::panelOpen, 2, true);
    EXPECT_EQ(bar.kinds.names(), (std::vector<std::string_view>{"cpu", "memory", "network", "battery", "sensors"}));
    EXPECT_TRUE(closed.kinds.contains(bar.kinds));
    EXPECT_TRUE(open.kinds.contains(closed.kinds));
    EXPECT_EQ(open.kinds, MetricKinds::all);
    EXPECT_GE(bar.intervalSec, closed.intervalSec);
    EXPECT_GE(closed.intervalSec, open.intervalSec);
    EXPECT_EQ(open.intervalSec, 2);
    EXPECT_FALSE(bar.fullProcessList);
    EXPECT_FALSE(closed.fullProcessList);
    EXPECT_TRUE(open.fullProcessList);
    EXPECT_EQ(planFor(ConsumerTier::panelOpen, 0.01, false).intervalSec, 0.5);
    EXPECT_EQ(planFor(ConsumerTier::menuBarOnly, 30, false).intervalSec, 30) << "never faster than the open panel";
    EXPECT_EQ(planFor(ConsumerTier::panelOpen, std::nan(""), false).intervalSec, 2);
    EXPECT_FALSE(closed.kinds.contains(MetricKinds::gpu)) << "nothing closed needs the GPU by default";
    const auto gpuBar = planFor(ConsumerTier::menuBarOnly, 2, false, MetricKinds::gpu);
    EXPECT_TRUE(gpuBar.kinds.contains(bar.kinds | MetricKinds::gpu));
    EXPECT_TRUE(planFor(ConsumerTier::panelClosed, 2, false, MetricKinds::gpu).kinds.contains(MetricKinds::gpu));
}

TEST(MetricHistory, RingKeepsNewestAndSkipsAbsentReadings) {
    MetricHistory h(3);
    for (int i = 0; i < 5; ++i) {
        MetricsSnapshot s = fixtureSnapshot(MetricsFixture::desktop, kNoon + std::chrono::seconds(i));
        s.cpu.total = i / 10.0;
        h.append(s, MetricKinds::cpu | MetricKinds::battery | MetricKinds::sensors);
    }
    const auto cpu = h.points(HistorySeries::cpuTotal);
    ASSERT_EQ(cpu.size(), 3u);
    EXPECT_EQ(cpu[0].value, 0.2);
    EXPECT_EQ(cpu[2].value, 0.4);
    EXPECT_EQ(cpu[2].time, kNoon + std::chrono::seconds(4));
    EXPECT_EQ(h.latest(HistorySeries::cpuTotal)->value, 0.4);
    EXPECT_TRUE(h.points(HistorySeries::batteryPercent).empty()) << "a desktop has no battery";
    EXPECT_TRUE(h.points(HistorySeries::memoryUsed).empty()) << "memory was not sampled";
    EXPECT_EQ(h.points(HistorySeries::cpuC).size(), 3u);
    h.clear();
    EXPECT_FALSE(h.latest(HistorySeries::cpuTotal));
}
