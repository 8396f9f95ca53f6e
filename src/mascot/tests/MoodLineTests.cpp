#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mascot/MoodLine.h"
#include "mascot/ProcessDisplayName.h"

namespace trotlet::mascot {
namespace {

using menubar::TemperatureUnit;
using metrics::MetricsSnapshot;

// The start of 8-second slot n, counted from 1 January 2001 UTC.
metrics::Timestamp slotStart(long long n) {
    return metrics::fromUnixSeconds(978307200.0 + 8.0 * static_cast<double>(n));
}

// The three variants of a state, read from slots 0, 1 and 2.
std::vector<std::string> variants(const MascotState& state, const MetricsSnapshot& snap,
                                  LoadSource source = LoadSource::cpu,
                                  TemperatureUnit unit = TemperatureUnit::celsius) {
    std::vector<std::string> out;
    for (long long n = 0; n < 3; ++n)
        out.push_back(MoodLine::text(state, snap, "Mochi", slotStart(n) + std::chrono::seconds(1),
                                     source, unit));
    return out;
}

MascotState stateOf(MascotMood mood, Gait gait = Gait::running, double load = 0.5) {
    MascotState s;
    s.mood = mood;
    s.gait = gait;
    s.load = load;
    return s;
}

MetricsSnapshot busyWith(const char* process) {
    MetricsSnapshot s;
    s.cpu.total = 0.97;
    s.network.online = true;
    if (process) {
        metrics::ProcessRow row;
        row.name = process;
        row.cpuPercent = 380;
        s.processes.topCPU.push_back(row);
    }
    return s;
}

struct MoodCase {
    const char* what;
    MascotState state;
    MetricsSnapshot snapshot;
    std::vector<std::string> expected;
    LoadSource source = LoadSource::cpu;
    TemperatureUnit unit = TemperatureUnit::celsius;
};

void expectAll(const std::vector<MoodCase>& cases) {
    for (const auto& c : cases)
        EXPECT_EQ(variants(c.state, c.snapshot, c.source, c.unit), c.expected) << c.what;
}

TEST(MoodLine, Panic) {
    expectAll({
        {"culprit", stateOf(MascotMood::panic, Gait::zoomies), busyWith("ffmpeg"),
         {"Mochi is PANICKING! ffmpeg is maxing your CPU.",
          "Full sprint! ffmpeg is eating every core.", "Mochi can't keep up. Blame ffmpeg."}},
        {"no culprit", stateOf(MascotMood::panic, Gait::zoomies), busyWith(nullptr),
         {"Mochi is PANICKING! CPU 97% and climbing.", "Full sprint! CPU 97%.",
          "Mochi can't keep up. CPU 97%."}},
    });
}

TEST(MoodLine, Overheated) {
    MetricsSnapshot noSensors = busyWith("make");
    MetricsSnapshot hot = busyWith("make");
    hot.thermal.cpuC = 96.4;
    MetricsSnapshot hotIdle = busyWith(nullptr);
    hotIdle.thermal.sensors.push_back({"Package id 0", metrics::SensorGroup::cpu, 37.0});
    expectAll({
        {"no temperature: nothing invented", stateOf(MascotMood::overheated), noSensors,
         {"Phew, your computer is running hot.", "Mochi is melting. Things are heating up.",
          "Hot paws! Maybe close something?"}},
        {"temperature and culprit", stateOf(MascotMood::overheated), hot,
         {"Phew, 96°C! make leads the pack.", "Mochi is melting. 96°C and climbing.",
          "Hot paws! make is working hard."}},
        {"fahrenheit, unit straight after the number", stateOf(MascotMood::overheated), hotIdle,
         {"Phew, it's 99°F in here.", "Mochi is melting. 99°F and climbing.",
          "Hot paws! Maybe close something?"},
         LoadSource::cpu, TemperatureUnit::fahrenheit},
    });
}

TEST(MoodLine, LowBattery) {
    MetricsSnapshot noBattery;
    MetricsSnapshot noTime;
    noTime.battery.present = true;
    noTime.battery.percent = 12;
    MetricsSnapshot underAMinute = noTime;
    underAMinute.battery.timeRemainingMin = 0;
    MetricsSnapshot timed = noTime;
    timed.battery.timeRemainingMin = 125;
    expectAll({
        {"no battery reading", stateOf(MascotMood::lowBattery), noBattery,
         {"Running on fumes, 0% left.", "Mochi needs a snack. 0% battery.",
          "Low battery, 0%. Find a charger?"}},
        {"no time", stateOf(MascotMood::lowBattery), noTime,
         {"Running on fumes, 12% left.", "Mochi needs a snack. 12% battery.",
          "Low battery, 12%. Find a charger?"}},
        {"under a minute", stateOf(MascotMood::lowBattery), underAMinute,
         {"Running on fumes, 12% left.", "Mochi needs a snack. 12% battery.",
          "Low battery, 12%. Find a charger?"}},
        {"with time", stateOf(MascotMood::lowBattery), timed,
         {"Running on fumes, 12% left (2h 5m).", "Mochi needs a snack. 12% battery.",
          "Low battery, about 2h 5m left. Find a charger?"}},
    });
}

TEST(MoodLine, Sleeping) {
    MetricsSnapshot s = busyWith(nullptr);
    s.cpu.total = 0.2;
    expectAll({
        {"calm", stateOf(MascotMood::sleeping, Gait::napping, 0.099), s,
         {"Shh, Mochi is napping. Your computer is chill.", "Zzz. Nothing to chase right now.",
          "Mochi is dreaming of fish."}},
        {"away on a busier machine", stateOf(MascotMood::sleeping, Gait::strolling, 0.1), s,
         {"Shh, Mochi is napping while you're away.", "Zzz. Mochi dozes, CPU 20%.",
          "Mochi is dreaming of fish."}},
    });
}

TEST(MoodLine, Sitting) {
    MetricsSnapshot s;
    s.cpu.total = 0.03;
    expectAll({{"sitting",
                stateOf(MascotMood::sitting),
                s,
                {"Mochi is taking a breather.", "All quiet. Mochi sits and watches.",
                 "CPU 3%. Time for a little sit."}}});
}

TEST(MoodLine, Running) {
    MetricsSnapshot stress = busyWith("stress-ng");
    MetricsSnapshot quiet = busyWith(nullptr);
    quiet.cpu.total = 0.3;
    MascotState away = stateOf(MascotMood::running, Gait::trotting);
    away.userAway = true;
    MetricsSnapshot gpuWins = busyWith("blender");
    gpuWins.cpu.total = 0.5;
    gpuWins.gpu = metrics::GPUMetrics{};
    gpuWins.gpu->utilization = 0.8;
    MetricsSnapshot memoryWins;
    memoryWins.memory.pressure = metrics::MemoryPressure::critical;
    expectAll({
        {"sprinting at stress names the busiest process", stateOf(MascotMood::running, Gait::sprinting),
         stress,
         {"Sprinting, CPU 97%. stress-ng is busy.", "Sprinting, CPU 97%",
          "Mochi is flying. stress-ng leads the pack."}},
        {"zoomies, no culprit", stateOf(MascotMood::running, Gait::zoomies), quiet,
         {"Zoomies, CPU 30%", "Zoomies, CPU 30%. Hang on!", "Mochi is flying. CPU 30%."}},
        {"slower, away", away, quiet,
         {"Trotting, CPU 30%. Mochi holds the fort.", "Trotting, CPU 30%", "Trotting, CPU 30%"}},
        {"slower, present", stateOf(MascotMood::running, Gait::strolling), quiet,
         {"Strolling, CPU 30%", "Strolling, CPU 30%. All good.", "Strolling, CPU 30%"}},
        {"busiest won by the GPU names no culprit", stateOf(MascotMood::running, Gait::sprinting),
         gpuWins,
         {"Sprinting, GPU 80%", "Sprinting, GPU 80%. Hang on!", "Mochi is flying. GPU 80%."},
         LoadSource::busiest},
        {"memory under pressure without a reading", stateOf(MascotMood::running, Gait::zoomies),
         memoryWins, {"Zoomies, Memory", "Zoomies, Memory. Hang on!", "Mochi is flying. Memory."},
         LoadSource::busiest},
    });
}

TEST(MoodLine, Readings) {
    MetricsSnapshot s;
    s.cpu.total = 0.456;
    s.memory.total = 1000;
    s.memory.used = 640;
    s.network.downBps = 1.2 * 1024 * 1024;
    EXPECT_EQ(MoodLine::reading(s, LoadSource::cpu), "CPU 46%");
    EXPECT_EQ(MoodLine::reading(s, LoadSource::busiest), "CPU 46%");
    EXPECT_EQ(MoodLine::reading(s, LoadSource::gpu), "GPU idle");
    EXPECT_EQ(MoodLine::reading(s, LoadSource::memory), "Memory 64%");
    EXPECT_EQ(MoodLine::reading(s, LoadSource::network), "Down 1.2 MB/s");
}

TEST(MoodLine, RotationEveryEightSecondsAndTheChargingSlot) {
    MetricsSnapshot s = busyWith(nullptr);
    s.cpu.total = 0.3;
    s.battery.present = true;
    s.battery.percent = 80;
    MascotState charging = stateOf(MascotMood::running, Gait::strolling);
    charging.accessories.insert(MascotAccessories::charging);
    auto at = [&](double secondsFrom2001, const MascotState& st) {
        return MoodLine::text(st, s, "Mochi", metrics::fromUnixSeconds(978307200.0 + secondsFrom2001),
                              LoadSource::cpu, TemperatureUnit::celsius);
    };
    const std::string v1 = "Strolling, CPU 30%", v2 = "Strolling, CPU 30%. All good.";
    const std::string charge = "Charging, 80%. Mochi is powered up.";
    EXPECT_EQ(at(0.05, charging), v1);
    EXPECT_EQ(at(7.95, charging), v1);  // 7.9 s apart: same slot
    EXPECT_EQ(at(8.05, charging), v2);  // 8 s apart: the next variant
    EXPECT_EQ(at(24.5, charging), charge);  // slot 3
    EXPECT_EQ(at(56.5, charging), charge);  // slot 7
    EXPECT_EQ(at(32.5, charging), v2);      // slot 4: variant (4 mod 3) + 1
    // Only a running mascot below a sprint shows the charging sentence.
    MascotState fast = charging;
    fast.gait = Gait::sprinting;
    EXPECT_EQ(at(24.5, fast), "Sprinting, CPU 30%");
    MascotState sitting = charging;
    sitting.mood = MascotMood::sitting;
    EXPECT_EQ(at(24.5, sitting), "Mochi is taking a breather.");
    // Before 2001 the slot's absolute value picks the variant and charging never shows.
    EXPECT_EQ(MoodLine::slot(metrics::fromUnixSeconds(978307200.0 - 25)), -3);
    EXPECT_EQ(at(-25, charging), v1);  // |-3| mod 3 = 0
    EXPECT_EQ(at(-9, charging), v2);   // |-1|
    // No date: the sample's time is used.
    s.timestamp = metrics::fromUnixSeconds(978307200.0 + 24.5);
    EXPECT_EQ(MoodLine::text(charging, s, "Mochi", std::nullopt, LoadSource::cpu,
                             TemperatureUnit::celsius),
              charge);
}

TEST(ProcessDisplayName, HelperProcessesNameTheirApp) {
    struct Case {
        const char* name;
        std::optional<std::string> exe;
        std::optional<std::string> bundle;
        const char* expected;
    } cases[] = {
        {"Isolated Web Co", "/usr/lib/firefox-esr/firefox-esr", std::nullopt,
         "Isolated Web Co (firefox-esr)"},
        {"firefox-esr", "/usr/lib/firefox-esr/firefox-esr", std::nullopt, "firefox-esr"},
        {"gnome-control-c", "/usr/bin/gnome-control-center", std::nullopt, "gnome-control-c"},
        {"chrome", "/opt/google/chrome/chrome", std::nullopt, "chrome"},
        {"Web Content", std::nullopt, "/var/lib/flatpak/app/org.mozilla.firefox",
         "Web Content (firefox)"},
        {"kworker/0:1", std::nullopt, std::nullopt, "kworker/0:1"},
        {"python3", "/usr/bin/python3.11", std::nullopt, "python3 (python3.11)"},
    };
    for (const auto& c : cases) {
        metrics::ProcessRow row;
        row.name = c.name;
        row.executablePath = c.exe;
        row.bundlePath = c.bundle;
        EXPECT_EQ(ProcessDisplayName::of(row).text(), c.expected) << c.name;
    }
}

TEST(MoodLine, CulpritCarriesTheOwningApp) {
    MetricsSnapshot s = busyWith(nullptr);
    metrics::ProcessRow row;
    row.name = "Isolated Web Co";
    row.executablePath = "/usr/lib/firefox/firefox";
    s.processes.topCPU.push_back(row);
    EXPECT_EQ(MoodLine::text(stateOf(MascotMood::panic, Gait::zoomies), s, "Kibo", slotStart(0),
                             LoadSource::cpu, TemperatureUnit::celsius),
              "Kibo is PANICKING! Isolated Web Co (firefox) is maxing your CPU.");
}

}  // namespace
}  // namespace trotlet::mascot
