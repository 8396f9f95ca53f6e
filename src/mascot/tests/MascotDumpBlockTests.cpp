#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mascot/MascotDumpBlock.h"
#include "mascot/tests/MascotTestSupport.h"

namespace trotlet::mascot {
namespace {

metrics::MetricsSnapshot base() {
    metrics::MetricsSnapshot s;
    s.timestamp = testing::at(0);
    s.network.online = true;
    s.cpu.total = 0.3;
    s.memory.total = 1000;
    s.memory.used = 400;
    s.memory.pressure = metrics::MemoryPressure::normal;
    return s;
}

nlohmann::ordered_json dump(const metrics::MetricsSnapshot& s, LocalCalendar calendar = testing::noon(),
                            const char* id = "cat") {
    return mascotDumpBlock(s, id, MascotBehavior{}, FrameEnvironment{}, calendar);
}

TEST(MascotDumpBlock, KeysInOrder) {
    auto block = dump(base());
    std::vector<std::string> keys;
    for (auto it = block.begin(); it != block.end(); ++it) keys.push_back(it.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"id", "state", "gait", "load", "cyclesPerSecond",
                                              "fps", "frames", "accessories"}));
    EXPECT_EQ(block["id"], "cat");
    EXPECT_EQ(block["state"], "running");
    EXPECT_EQ(block["gait"], "trotting");
    EXPECT_DOUBLE_EQ(block["load"].get<double>(), 0.3);
    EXPECT_EQ(block["frames"], 8);
    EXPECT_TRUE(block["accessories"].is_array());
}

TEST(MascotDumpBlock, SettlesIntoTheStateTheSampleHolds) {
    struct Case {
        const char* what;
        void (*shape)(metrics::MetricsSnapshot&);
        const char* state;
        std::vector<std::string> accessories;
    } cases[] = {
        {"panic", [](metrics::MetricsSnapshot& s) { s.cpu.total = 1.0; }, "panic", {}},
        {"idle sleeps", [](metrics::MetricsSnapshot& s) { s.cpu.total = 0.01; }, "sleeping", {}},
        {"hot", [](metrics::MetricsSnapshot& s) { s.thermal.cpuC = 99; s.thermal.state = metrics::ThermalState::serious; },
         "overheated", {}},
        {"sweating", [](metrics::MetricsSnapshot& s) { s.thermal.cpuC = 88; }, "running", {"sweat"}},
        {"low battery", [](metrics::MetricsSnapshot& s) { s.battery.present = true; s.battery.percent = 9; },
         "lowBattery", {}},
        {"offline", [](metrics::MetricsSnapshot& s) { s.network.online = false; }, "offline", {"umbrella"}},
        {"charging under pressure",
         [](metrics::MetricsSnapshot& s) {
             s.battery.present = true;
             s.battery.percent = 50;
             s.battery.pluggedIn = s.battery.charging = true;
             s.memory.pressure = metrics::MemoryPressure::warning;
         },
         "running", {"charging", "backpack"}},
    };
    for (const auto& c : cases) {
        auto s = base();
        c.shape(s);
        auto block = dump(s);
        EXPECT_EQ(block["state"], c.state) << c.what;
        EXPECT_EQ(block["accessories"].get<std::vector<std::string>>(), c.accessories) << c.what;
    }
}

TEST(MascotDumpBlock, FrameRateFollowsThePolicy) {
    auto s = base();
    s.cpu.total = 1.0;
    EXPECT_DOUBLE_EQ(dump(s)["fps"].get<double>(), 24);  // panic
    s.battery.present = true;
    s.battery.percent = 50;
    s.battery.lowPowerMode = true;
    EXPECT_DOUBLE_EQ(dump(s)["fps"].get<double>(), 10);  // save energy in low power mode
    auto idle = base();
    idle.cpu.total = 0.0;
    auto block = dump(idle, {3, 10, 23}, "shiba");
    EXPECT_EQ(block["id"], "shiba");
    EXPECT_EQ(block["state"], "sleeping");
    EXPECT_DOUBLE_EQ(block["fps"].get<double>(), 1);  // 0.25 cycles x 4 frames
    EXPECT_EQ(block["accessories"].get<std::vector<std::string>>(),
              std::vector<std::string>{"nightcap"});
}

}  // namespace
}  // namespace trotlet::mascot
