#include <gtest/gtest.h>

#include <limits>

#include "metrics/IsoTime.h"
#include "metrics/MetricKinds.h"
#include "metrics/MetricsJson.h"

using namespace trotlet::metrics;

namespace {

MetricsSnapshot richSnapshot() {
    MetricsSnapshot s;
    s.timestamp = fromUnixSeconds(1795000000.125);
    s.cpu = {0.5, 0.3, 0.2, {0.1, 0.9, 0.4, 0.6}, {1.5, 1.25, 0.75}, 312, 1400, {}};
    s.memory = {16ull << 30, 9ull << 30, 6ull << 30, 1ull << 30, 512ull << 20, 4ull << 30,
                2ull << 30, 0, 8ull << 30, MemoryPressure::warning, 44};
    s.disks.volumes = {{"root", "/", 500'000'000'000, 120'000'000'000, true, false, true, false},
                       {"USB", "/media/u/USB", 32'000'000'000, 31'000'000'000, false, true, false, true}};
    s.disks.readBps = 1234.5;
    s.disks.writeBps = 0;  // a real zero rate is a reading, not an absence
    s.disks.totalReadBytes = std::numeric_limits<std::uint64_t>::max();
    s.disks.totalWrittenBytes = 42;
    s.network.downBps = 1e6;
    s.network.upBps = 2e5;
    s.network.totalDownBytes = 1ull << 40;
    s.network.interface = "wlp2s0";
    s.network.interfaceKind = InterfaceKind::wifi;
    s.network.localIP = "192.168.1.23";
    s.network.router = "192.168.1.1";
    s.network.online = true;
    s.network.wifi = WifiDetails{std::nullopt, -58, -95, 74, std::nullopt};
    s.network.vpnInterface = "wg0";
    s.battery = {true, 57, true, true, false, 83, 91.5, 312, "Good", 31.2, 14.25, std::nullopt,
                 65, "Mains", true};
    s.thermal.state = ThermalState::fair;
    s.thermal.cpuC = 71;
    s.thermal.cpuMaxC = 78.5;
    s.thermal.sensors = {{"Package id 0", SensorGroup::cpu, 71}, {"Composite", SensorGroup::storage, 44.85}};
    s.thermal.fans = {{1, 2400, 0, 5600}, {2, 0, std::nullopt, std::nullopt}};
    s.thermal.fanCount = 2;
    s.thermal.source = "hwmon";
    s.gpu = GPUMetrics{"AMD Radeon RX 6600", std::nullopt, 0.37, std::nullopt, std::nullopt, 2ull << 30};
    ProcessRow row{4242, "Web Content (x)", 123.4, 1ull << 30, "alice", true, std::nullopt,
                   "/usr/lib/firefox/firefox", 31, false};
    ProcessRow root{1, "systemd", 0, 12 << 20, "root", false, std::nullopt, std::nullopt, 1, true};
    s.processes = {{row, root}, {row}, 2, std::vector<ProcessRow>{row, root}};
    s.system = {3600.5, "20XW00EXUS", "ThinkPad X1 Carbon Gen 9", "11th Gen Intel(R) Core(TM) i7-1165G7",
                "Debian GNU/Linux 12 (bookworm)", fromUnixSeconds(1794996399.5), 0.4, 50 << 20};
    return s;
}

}  // namespace

TEST(MetricKinds, SinglesAreTheTenBitsInTableOrderAndUniteToAll) {
    ASSERT_EQ(MetricKinds::singles.size(), 10u);
    MetricKinds united;
    for (size_t i = 0; i < MetricKinds::singles.size(); ++i) {
        EXPECT_EQ(MetricKinds::singles[i].rawValue, std::uint64_t{1} << i);
        EXPECT_FALSE(united.intersects(MetricKinds::singles[i])) << "bits overlap at " << i;
        united |= MetricKinds::singles[i];
    }
    EXPECT_EQ(united, MetricKinds::all);
    EXPECT_EQ(MetricKinds::all.rawValue, 1023u);
}

TEST(MetricKinds, NamesFollowTableOrderAndRoundTrip) {
    const auto names = MetricKinds::all.names();
    ASSERT_EQ(names.size(), 10u);
    EXPECT_EQ(names.front(), "cpu");
    EXPECT_EQ(names[2], "diskIO");
    EXPECT_EQ(names.back(), "system");
    for (auto single : MetricKinds::singles) {
        ASSERT_EQ(single.names().size(), 1u);
        EXPECT_EQ(MetricKinds::fromName(single.names()[0]), single);
    }
    // Order comes from the bits, not from how the set was built.
    EXPECT_EQ((MetricKinds::system | MetricKinds::cpu).names(),
              (std::vector<std::string_view>{"cpu", "system"}));
    EXPECT_TRUE(MetricKinds(1u << 20).names().empty());
    EXPECT_TRUE(MetricKinds::fromName("CPU").isEmpty());
    EXPECT_TRUE(MetricKinds::all.contains(MetricKinds::cpu | MetricKinds::gpu));
    EXPECT_FALSE(MetricKinds::cpu.contains(MetricKinds::cpu | MetricKinds::gpu));
}

TEST(IsoTime, FormatsWithTheDigitsNeededAndParsesBack) {
    struct Case { double unix; const char* text; };
    const Case cases[] = {
        {0, "1970-01-01T00:00:00Z"},
        {1795000000, "2026-11-18T11:06:40Z"},
        {1795000000.5, "2026-11-18T11:06:40.5Z"},
        {951782400, "2000-02-29T00:00:00Z"},
    };
    for (const auto& c : cases) {
        const auto t = fromUnixSeconds(c.unix);
        EXPECT_EQ(formatIso8601(t), c.text);
        EXPECT_EQ(parseIso8601(c.text), t) << c.text;
    }
    const Timestamp odd{std::chrono::nanoseconds(1795000000123456789LL)};
    EXPECT_EQ(formatIso8601(odd), "2026-11-18T11:06:40.123456789Z");
    EXPECT_EQ(parseIso8601(formatIso8601(odd)), odd);
    EXPECT_EQ(parseIso8601("2026-11-18T13:06:40+02:00"), fromUnixSeconds(1795000000));
    for (const char* bad : {"", "2026-11-18", "2026-13-01T00:00:00Z", "2026-02-30T00:00:00Z",
                            "2026-11-18T11:06:40", "2026-11-18T11:06:40.Z", "2026-11-18T11:06:40Zjunk",
                            "2026-11-18T25:00:00Z"})
        EXPECT_FALSE(parseIso8601(bad)) << bad;
}

// Years 1970 through 2200 only: year 4200 in nanoseconds overflowed 64 bits before.
TEST(IsoTime, AcceptsOnlyThePlausibleYears) {
    const struct {
        const char* text;
        std::optional<long long> unix;
    } cases[] = {
        {"1970-01-01T00:00:00Z", 0},
        {"1969-12-31T23:59:59Z", std::nullopt},
        {"1970-01-01T00:30:00+01:00", std::nullopt},
        {"2200-12-31T23:59:59Z", 7289654399},
        {"2200-12-31T23:30:00-01:00", std::nullopt},
        {"2201-01-01T00:00:00Z", std::nullopt},
        {"2262-04-12T00:00:00Z", std::nullopt},
        {"4200-06-01T12:00:00.123456789Z", std::nullopt},
        {"9999-12-31T23:59:59+23:59", std::nullopt},
        {"0000-01-01T00:00:00-23:59", std::nullopt},
    };
    for (const auto& c : cases) {
        const auto parsed = parseIso8601(c.text);
        ASSERT_EQ(parsed.has_value(), c.unix.has_value()) << c.text;
        if (c.unix) {
            EXPECT_EQ(*parsed, Timestamp(std::chrono::seconds(*c.unix))) << c.text;
        }
    }
}

TEST(MetricsJson, RichSnapshotRoundTripsExactly) {
    const auto s = richSnapshot();
    const auto json = encode(s);
    const auto back = decode<MetricsSnapshot>(json);
    ASSERT_TRUE(back.value) << back.error;
    EXPECT_EQ(*back.value, s);
    // Through text as well: doubles and u64 extremes survive printing.
    const auto viaText = decodeSnapshotText(json.dump());
    ASSERT_TRUE(viaText.value) << viaText.error;
    EXPECT_EQ(*viaText.value, s);
}

TEST(MetricsJson, EmptySnapshotRoundTripsAndLeavesOptionalsOut) {
    MetricsSnapshot s;
    const auto json = encode(s);
    const auto back = decode<MetricsSnapshot>(json);
    ASSERT_TRUE(back.value) << back.error;
    EXPECT_EQ(*back.value, s);
    // Keys in field order, groups always present.
    std::vector<std::string> keys;
    for (auto it = json.begin(); it != json.end(); ++it) keys.push_back(it.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"timestamp", "cpu", "memory", "disks", "network",
                                              "battery", "thermal", "gpu", "processes", "system"}));
    // A machine without battery, sensors or GPU: groups there, readings absent, never zero.
    EXPECT_EQ(json["battery"], Json::parse(R"({"lowPowerMode":false})"));
    EXPECT_EQ(json["gpu"], Json::object());
    for (const char* key : {"cpuC", "gpuC", "socC", "fanCount", "source"})
        EXPECT_FALSE(json["thermal"].contains(key)) << key;
    EXPECT_FALSE(json["processes"].contains("all"));
    EXPECT_FALSE(json["system"].contains("bootDate"));
    EXPECT_FALSE(s.thermal.hottestC());
}

TEST(MetricsJson, GroupKeysFollowFieldOrder) {
    const auto s = richSnapshot();
    auto keysOf = [](const Json& j) {
        std::vector<std::string> k;
        for (auto it = j.begin(); it != j.end(); ++it) k.push_back(it.key());
        return k;
    };
    EXPECT_EQ(keysOf(encode(s.cpu)), (std::vector<std::string>{"total", "user", "system", "perCore",
                                                              "loadAvg", "processCount", "threadCount"}));
    EXPECT_EQ(keysOf(encode(s.memory)),
              (std::vector<std::string>{"total", "used", "app", "wired", "compressed", "cached", "free",
                                        "swapUsed", "swapTotal", "pressure", "freePercent"}));
    EXPECT_EQ(keysOf(encode(s.battery)),
              (std::vector<std::string>{"percent", "charging", "pluggedIn", "fullyCharged",
                                        "timeRemainingMin", "healthPct", "cycles", "condition",
                                        "temperatureC", "watts", "adapterWatts", "adapterName",
                                        "lowPowerMode"}));
    EXPECT_EQ(keysOf(encode(s.processes.topCPU[0])),
              (std::vector<std::string>{"pid", "name", "cpuPercent", "memoryBytes", "user", "canQuit",
                                        "executablePath", "threads", "isPrivileged"}));
    EXPECT_EQ(encode(s.memory)["pressure"], "warning");
    EXPECT_EQ(encode(s.network)["interfaceKind"], "wifi");
}

TEST(MetricsJson, BadInputFailsWithTheKeyNamed) {
    const auto good = encode(richSnapshot());
    struct Case { const char* path; Json value; const char* expected; };
    const Case cases[] = {
        {"/timestamp", "yesterday", "timestamp"},
        {"/timestamp", "4200-01-01T00:00:00Z", "\"timestamp\" is not an ISO 8601 time"},
        {"/system/bootDate", "1969-12-31T23:59:59Z", "\"bootDate\" is not an ISO 8601 time"},
        {"/cpu/total", "high", "cpu: \"total\" is not a number"},
        {"/memory/pressure", "panicky", "memory: \"pressure\" is not one of"},
        {"/memory/total", -5, "memory: \"total\" is not a non-negative integer"},
        {"/processes/topCPU/0/pid", 5'000'000'000LL, "\"pid\" is out of range"},
        {"/thermal/sensors/0/group", 3, "\"group\" is not one of"},
        {"/battery/charging", "yes", "battery: \"charging\" is not a boolean"},
    };
    for (const auto& c : cases) {
        Json bad = good;
        bad[Json::json_pointer(c.path)] = c.value;
        const auto result = decode<MetricsSnapshot>(bad);
        EXPECT_FALSE(result.value) << c.path;
        EXPECT_NE(result.error.find(c.expected), std::string::npos) << c.path << ": " << result.error;
    }
    Json missing = good;
    missing["system"].erase("model");
    EXPECT_EQ(decode<MetricsSnapshot>(missing).error, "system: missing \"model\"");
    EXPECT_FALSE(decodeSnapshotText("{not json").value);
    EXPECT_FALSE(decode<MetricsSnapshot>(Json::array()).value);
}

TEST(MetricsSnapshot, DerivedReadings) {
    CPUMetrics cpu;
    cpu.perCore = {0.1, 0.2, 0.3, 0.4};
    EXPECT_EQ(cpu.performanceCores().size(), 4u);  // one kind of core: all in one list
    EXPECT_TRUE(cpu.efficiencyCores().empty());
    cpu.efficiencyCoreIndices = {2, 3, 9};  // 9 does not exist in this sample
    EXPECT_EQ(cpu.performanceCores(), (std::vector<CoreLoad>{{0, 0.1}, {1, 0.2}}));
    EXPECT_EQ(cpu.efficiencyCores(), (std::vector<CoreLoad>{{2, 0.3}, {3, 0.4}}));

    ThermalMetrics t;
    EXPECT_FALSE(t.hottestC());
    t.sensors = {{"nvme", SensorGroup::storage, 48}};
    EXPECT_EQ(t.hottestC(), 48);
    t.cpuC = 40;
    t.gpuC = 61;
    EXPECT_EQ(t.hottestC(), 61);

    DiskMetrics d;
    EXPECT_FALSE(d.rootVolume());
    d.volumes = {{"home", "/home", 1, 1, true, false, false, false},
                 {"root", "/", 2, 1, true, false, true, false}};
    ASSERT_TRUE(d.rootVolume());
    EXPECT_EQ(d.rootVolume()->path, "/");
}
