#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mascot/Gait.h"
#include "mascot/LoadMapping.h"
#include "mascot/MascotStateMachine.h"
#include "mascot/tests/MascotTestSupport.h"

namespace trotlet::mascot {
namespace {

using testing::at;
using testing::loadOf;
using testing::noon;
using testing::unsmoothed;

// Drives one machine through a scripted timeline, a sample per call.
struct Script {
    MascotStateMachine machine;
    MascotBehavior behavior;
    MascotCharacter character = characterFor("cat");
    LocalCalendar calendar = noon();

    MascotState at(double t, const MascotReadings& r, double dt = unsmoothed) {
        return machine.update(r, behavior, character, testing::at(t), dt, calendar);
    }
    MascotState load(double t, double raw, double dt = unsmoothed) { return at(t, loadOf(raw), dt); }
};

MascotReadings hot(std::optional<double> celsius, bool serious = false) {
    MascotReadings r = loadOf(0.3);
    r.temperatureC = celsius;
    r.thermalSerious = serious;
    return r;
}

MascotReadings onBattery(int percent, bool plugged = false) {
    MascotReadings r = loadOf(0.3);
    r.batteryPresent = true;
    r.batteryPercent = percent;
    r.batteryPluggedIn = plugged;
    r.batteryCharging = plugged;
    return r;
}

TEST(MascotStateMachine, FirstSampleTakesTheRawLoadThenSmooths) {
    Script run;
    EXPECT_DOUBLE_EQ(run.load(0, 0.8, 0).load, 0.8);
    // dt below 50 ms, zero included, uses the 50 ms step rather than freezing the load.
    const double alpha = MascotStateMachine::smoothingAlpha(0.0);
    EXPECT_DOUBLE_EQ(alpha, 1 - std::exp(-0.05 / 2.5));
    EXPECT_DOUBLE_EQ(MascotStateMachine::smoothingAlpha(0.01), alpha);
    EXPECT_NEAR(run.load(0.01, 0.0, 0).load, 0.8 - alpha * 0.8, 1e-12);
    const double before = run.machine.smoothedLoad();
    EXPECT_NEAR(run.load(2.01, 1.0, 2.0).load, before + (1 - std::exp(-0.8)) * (1 - before),
                1e-12);
}

TEST(MascotStateMachine, PanicAfterTenSecondsAndItsThirtySecondRearm) {
    Script run;
    struct Step {
        double t;
        double raw;
        MascotMood mood;
    } steps[] = {
        {0, 1.0, MascotMood::running},  {9.9, 1.0, MascotMood::running},
        {10, 1.0, MascotMood::panic},   {12, 0.9, MascotMood::panic},  // between the levels
        {14, 0.8, MascotMood::running},                                // ends on raw < 0.85
        {15, 1.0, MascotMood::running}, {25, 1.0, MascotMood::running},  // held 10 s, re-arming
        {43.9, 1.0, MascotMood::running},
        {44, 1.0, MascotMood::panic},  // 30 s after the end
        {45, 0.5, MascotMood::running},
    };
    for (const auto& s : steps) {
        const MascotState state = run.load(s.t, s.raw);
        EXPECT_EQ(state.mood, s.mood) << "t=" << s.t;
        // Panic runs at the top of the character's rate range.
        if (s.mood == MascotMood::panic) {
            EXPECT_DOUBLE_EQ(state.cyclesPerSecond, run.character.cycleRate.upper);
        }
    }
}

TEST(MascotStateMachine, SweatLatchWithMarginsAndRearm) {
    Script run;
    struct Step {
        double t;
        std::optional<double> celsius;
        bool sweating;
    } steps[] = {
        {0, 86, true},  {1, 84, true},  {2, 85.5, true}, {3, 83, true},
        {4, 84.5, true}, {5, 82.5, true}, {6, 81, false},
        {7, 90, false},  // within 30 s of the end: no new start
        {36, 90, true},  {37, std::nullopt, false},  // an absent reading releases at once
    };
    for (const auto& s : steps) {
        auto state = run.at(s.t, hot(s.celsius));
        EXPECT_EQ(run.machine.isSweating(), s.sweating) << "t=" << s.t;
        EXPECT_EQ(state.accessories.contains(MascotAccessories::sweat), s.sweating) << s.t;
    }
}

TEST(MascotStateMachine, OverheatedLatchAndNoSweatDropWhileOverheated) {
    Script run;
    struct Step {
        std::optional<double> celsius;
        bool serious;
        MascotMood mood;
    } steps[] = {
        {100, false, MascotMood::running},    {108, false, MascotMood::overheated},
        {95, false, MascotMood::overheated},  {89.9, false, MascotMood::running},
        {70, true, MascotMood::overheated},   {std::nullopt, true, MascotMood::overheated},
        {std::nullopt, false, MascotMood::running},  // sensors gone, state nominal: ends
        {110, false, MascotMood::overheated},
    };
    double t = 0;
    for (const auto& s : steps) {
        auto state = run.at(t, hot(s.celsius, s.serious));
        EXPECT_EQ(state.mood, s.mood) << "t=" << t;
        if (state.mood == MascotMood::overheated) {
            EXPECT_FALSE(state.accessories.contains(MascotAccessories::sweat)) << t;
        }
        t += 1;
    }
    // Overheated moves at the plain pace of its load.
    EXPECT_DOUBLE_EQ(run.machine.state().cyclesPerSecond,
                     cyclesPerSecond(MascotMood::running, 0.3, 0.75, run.character));
}

TEST(MascotStateMachine, LowBatteryHysteresis) {
    Script run;
    struct Step {
        int percent;
        bool plugged;
        MascotMood mood;
    } steps[] = {
        {14, false, MascotMood::lowBattery}, {16, false, MascotMood::lowBattery},
        {14, false, MascotMood::lowBattery}, {19, false, MascotMood::lowBattery},
        {20, false, MascotMood::running},    {16, false, MascotMood::running},
        {15, false, MascotMood::lowBattery}, {15, true, MascotMood::running},
        {15, false, MascotMood::lowBattery},
    };
    double t = 0;
    for (const auto& s : steps) {
        EXPECT_EQ(run.at(t, onBattery(s.percent, s.plugged)).mood, s.mood) << "t=" << t;
        t += 1;
    }
    auto low = run.machine.state();
    EXPECT_DOUBLE_EQ(low.cyclesPerSecond,
                     0.6 * cyclesPerSecond(MascotMood::running, 0.3, 0.75, run.character));
    // No battery at all clears it.
    EXPECT_EQ(run.at(t, loadOf(0.3)).mood, MascotMood::running);
}

TEST(MascotStateMachine, OfflineCountsAfterThreeSecondsWithUmbrellaAndCappedPace) {
    Script run;
    MascotReadings off = loadOf(1.0 - 0.2);
    off.online = false;
    EXPECT_EQ(run.at(0, off).mood, MascotMood::running);
    EXPECT_EQ(run.at(2.9, off).mood, MascotMood::running);
    auto s = run.at(3, off);
    EXPECT_EQ(s.mood, MascotMood::offline);
    EXPECT_TRUE(s.accessories.contains(MascotAccessories::umbrella));
    const auto& rate = run.character.cycleRate;
    EXPECT_DOUBLE_EQ(s.cyclesPerSecond, rate.lower + 0.4 * (rate.upper - rate.lower));
    EXPECT_EQ(run.at(4, loadOf(0.8)).mood, MascotMood::running);
    EXPECT_EQ(run.at(5, off).mood, MascotMood::running);  // the clock starts again
}

TEST(MascotStateMachine, CalmThenSittingThenSleeping) {
    Script run;
    struct Step {
        double t;
        double raw;
        MascotMood mood;
    } steps[] = {
        {0, 0.02, MascotMood::running},   {19.9, 0.02, MascotMood::running},
        {20, 0.02, MascotMood::sitting},  {30, 0.06, MascotMood::sitting},  // between 0.04 and 0.08
        {59.9, 0.02, MascotMood::sitting}, {60, 0.02, MascotMood::sleeping},
        {61, 0.09, MascotMood::running},  // calm clock cleared
        {62, 0.02, MascotMood::running},  {82, 0.02, MascotMood::sitting},
    };
    for (const auto& s : steps) {
        auto state = run.load(s.t, s.raw);
        EXPECT_EQ(state.mood, s.mood) << "t=" << s.t;
        if (s.mood == MascotMood::sitting || s.mood == MascotMood::sleeping) {
            EXPECT_DOUBLE_EQ(state.cyclesPerSecond, 0.25);
        }
    }
}

TEST(MascotStateMachine, SleepWhenIdleOffNeverSitsOrSleeps) {
    Script run;
    run.behavior.sleepWhenIdle = false;
    run.behavior.userIdleSeconds = 1000;
    for (double t = 0; t <= 600; t += 10) {
        auto mood = run.load(t, 0.0).mood;
        EXPECT_EQ(mood, MascotMood::running) << "t=" << t;
    }
}

TEST(MascotStateMachine, AwayAndAwayNap) {
    struct Case {
        bool reactions;
        double raw;
        MascotMood mood;
        bool away;
    } cases[] = {
        {true, 0.05, MascotMood::sleeping, false},
        {true, 0.6, MascotMood::running, true},
        {false, 0.05, MascotMood::sleeping, false},
        {false, 0.6, MascotMood::running, true},
    };
    for (const auto& c : cases) {
        Script run;
        run.behavior.stateReactions = c.reactions;
        run.behavior.userIdleSeconds = 400;
        auto s = run.load(0, c.raw);
        EXPECT_EQ(s.mood, c.mood) << c.raw << " reactions " << c.reactions;
        EXPECT_EQ(s.userAway, c.away);
        if (c.mood == MascotMood::running) {  // the true pace, not a slowed one
            EXPECT_DOUBLE_EQ(s.cyclesPerSecond,
                             cyclesPerSecond(MascotMood::running, c.raw, 0.75, run.character));
        }
    }
}

TEST(MascotStateMachine, AwayLatchAndNapMargins) {
    Script run;
    struct Step {
        std::optional<double> idle;
        double raw;
        bool away;
        bool nap;
    } steps[] = {
        {100, 0.2, false, false},
        {300, 0.2, true, true},
        {std::nullopt, 0.28, true, true},  // unknown idle keeps the latch; 0.28 keeps the nap
        {150, 0.33, true, false},          // between 2 and 300 s stays away; load ends the nap
        {150, 0.3, true, false},
        {150, 0.24, true, true},
        {1.5, 0.24, false, false},
    };
    double t = 0;
    for (const auto& s : steps) {
        run.behavior.userIdleSeconds = s.idle;
        run.load(t, s.raw);
        EXPECT_EQ(run.machine.isUserAway(), s.away) << "t=" << t;
        EXPECT_EQ(run.machine.awayNap(), s.nap) << "t=" << t;
        t += 1;
    }
}

TEST(MascotStateMachine, ReactionsOffGivesOnlyCelebratingSleepingOrRunningAndNoAccessories) {
    Script run;
    run.behavior.stateReactions = false;
    MascotReadings r = hot(120, true);
    r.rawLoad = 1.0;
    r.online = false;
    r.batteryPresent = true;
    r.batteryPercent = 5;
    r.batteryCharging = true;
    r.memoryUnderPressure = true;
    for (double t = 0; t <= 40; t += 5) {
        auto s = run.at(t, r);
        EXPECT_EQ(s.mood, MascotMood::running) << t;
        EXPECT_TRUE(s.accessories.isEmpty()) << t;
    }
    run.machine.setCelebrateUntil(at(42));
    EXPECT_EQ(run.at(41, r).mood, MascotMood::celebrating);
    EXPECT_EQ(run.at(42, r).mood, MascotMood::running);  // the end is exclusive
}

TEST(MascotStateMachine, CelebratingBeatsPanic) {
    Script run;
    run.load(0, 1.0);
    ASSERT_EQ(run.load(10, 1.0).mood, MascotMood::panic);
    run.machine.setCelebrateUntil(at(12));
    auto s = run.load(11, 1.0);
    EXPECT_EQ(s.mood, MascotMood::celebrating);
    EXPECT_DOUBLE_EQ(s.cyclesPerSecond, 1.0);
    EXPECT_EQ(run.load(12, 1.0).mood, MascotMood::panic);
}

TEST(MascotStateMachine, MoodPriorityOrder) {
    Script run;
    MascotReadings all = hot(110);
    all.rawLoad = 1.0;
    all.online = false;
    all.batteryPresent = true;
    all.batteryPercent = 5;
    run.at(0, all);
    EXPECT_EQ(run.at(3, all).mood, MascotMood::overheated);  // before panic's 10 s
    EXPECT_EQ(run.at(10, all).mood, MascotMood::panic);
    all.rawLoad = 0.5;
    all.temperatureC = 60;
    EXPECT_EQ(run.at(11, all).mood, MascotMood::lowBattery);
    all.batteryPercent = 50;
    EXPECT_EQ(run.at(12, all).mood, MascotMood::offline);
}

TEST(MascotStateMachine, CalendarAccessories) {
    struct Case {
        LocalCalendar calendar;
        double raw;  // 0 sleeps after a minute of calm, 0.5 runs
        std::uint64_t expected;
    } cases[] = {
        {{3, 10, 4}, 0.5, MascotAccessories::nightcap},
        {{3, 10, 5}, 0.5, 0},
        {{3, 10, 23}, 0.0, MascotAccessories::nightcap},   // sleeping late
        {{3, 10, 6}, 0.0, MascotAccessories::nightcap},    // sleeping early
        {{3, 10, 7}, 0.0, 0},
        {{3, 10, 23}, 0.5, 0},                             // awake late: no cap
        {{10, 24, 12}, 0.5, MascotAccessories::halloweenHat},
        {{10, 31, 12}, 0.5, MascotAccessories::halloweenHat},
        {{11, 1, 12}, 0.5, 0},
        {{10, 23, 12}, 0.5, 0},
        {{10, 28, 2}, 0.5, MascotAccessories::nightcap},   // the cap wins over the hat
        {{12, 20, 12}, 0.5, MascotAccessories::holidayHat},
        {{12, 26, 12}, 0.0, MascotAccessories::holidayHat},
        {{12, 27, 12}, 0.5, 0},
        {{std::nullopt, std::nullopt, 12}, 0.5, 0},
    };
    for (const auto& c : cases) {
        Script run;
        run.calendar = c.calendar;
        run.load(0, c.raw);
        auto s = run.load(60, c.raw);
        EXPECT_EQ(s.accessories.rawValue, c.expected)
            << "month " << c.calendar.month.value_or(0) << " day " << c.calendar.day.value_or(0)
            << " hour " << c.calendar.hour;
    }
}

TEST(MascotStateMachine, ChargingAndBackpack) {
    Script run;
    MascotReadings r = onBattery(60, true);
    r.memoryUnderPressure = true;
    auto s = run.at(0, r);
    EXPECT_TRUE(s.accessories.contains(MascotAccessories::charging | MascotAccessories::backpack));
}

metrics::MetricsSnapshot idleWithMemory(metrics::MemoryPressure pressure) {
    metrics::MetricsSnapshot s;
    s.network.online = true;
    s.cpu.total = 0.01;
    s.memory.total = 1000;
    s.memory.used = 700;
    s.memory.pressure = pressure;
    return s;
}

TEST(MascotStateMachine, BusiestWithBadges) {
    using metrics::MemoryPressure;
    MascotBehavior busiest;
    busiest.speedSource = LoadSource::busiest;

    // 70 % used under normal pressure does not count: the machine can nap.
    {
        MascotStateMachine m;
        auto snap = idleWithMemory(MemoryPressure::normal);
        EXPECT_DOUBLE_EQ(LoadMapping::load(snap, LoadSource::busiest), 0.01);
        m.update(snap, busiest, characterFor("cat"), at(0), unsmoothed, noon());
        auto s = m.update(snap, busiest, characterFor("cat"), at(60), unsmoothed, noon());
        EXPECT_EQ(s.mood, MascotMood::sleeping);
        EXPECT_TRUE(s.accessories.isEmpty());
    }
    // Under warning pressure memory wins the race and shows its badge (with the backpack).
    {
        MascotStateMachine m;
        auto snap = idleWithMemory(MemoryPressure::warning);
        EXPECT_EQ(LoadMapping::winningSource(snap, LoadSource::busiest), LoadSource::memory);
        auto s = m.update(snap, busiest, characterFor("cat"), at(0), unsmoothed, noon());
        EXPECT_EQ(s.mood, MascotMood::running);
        EXPECT_EQ(s.accessories.rawValue,
                  MascotAccessories::backpack | MascotAccessories::memoryBadge);
    }
    // GPU at 80 %.
    {
        MascotStateMachine m;
        auto snap = idleWithMemory(MemoryPressure::normal);
        snap.gpu = metrics::GPUMetrics{};
        snap.gpu->utilization = 0.8;
        auto s = m.update(snap, busiest, characterFor("cat"), at(0), unsmoothed, noon());
        EXPECT_TRUE(s.accessories.contains(MascotAccessories::gpuBadge));
        // The same sample with the cpu source wears no badge.
        MascotStateMachine plain;
        auto p = plain.update(snap, MascotBehavior{}, characterFor("cat"), at(0), unsmoothed,
                              noon());
        EXPECT_TRUE(p.accessories.isEmpty());
    }
    // A CPU win gives no badge; a load at or below 0.2 gives none either.
    {
        MascotStateMachine m;
        auto snap = idleWithMemory(MemoryPressure::normal);
        snap.cpu.total = 0.9;
        EXPECT_TRUE(m.update(snap, busiest, characterFor("cat"), at(0), unsmoothed, noon())
                        .accessories.isEmpty());
        MascotStateMachine low;
        snap.cpu.total = 0.0;
        snap.network.downBps = 10'000;  // log scale: 0.2
        EXPECT_TRUE(low.update(snap, busiest, characterFor("cat"), at(0), unsmoothed, noon())
                        .accessories.isEmpty());
    }
}

TEST(MascotStateMachine, BandDwellAndMargins) {
    Script run;
    run.character.loadBands = {0.6};
    // A ramp up and down crosses the threshold exactly twice.
    int changes = 0;
    std::uint8_t band = 0;
    double t = 0;
    for (int i = 0; i <= 100; ++i, t += 1) {
        auto s = run.load(t, i / 100.0);
        if (s.loadBand != band) ++changes, band = s.loadBand;
    }
    for (int i = 100; i >= 0; --i, t += 1) {
        auto s = run.load(t, i / 100.0);
        if (s.loadBand != band) ++changes, band = s.loadBand;
    }
    EXPECT_EQ(changes, 2);

    struct Step {
        double t;
        double load;
        int band;
    } steps[] = {
        {1000, 0.3, 0},  {1010, 0.62, 0},  // inside the margin
        {1011, 0.65, 1}, {1012, 0.3, 1},   // dwell: dropped, not queued
        {1013, 0.62, 1}, {1014, 0.58, 1},  // back inside the margin after the dwell
        {1015, 0.3, 0},  {1016, 0.9, 0},   // a 2 s excursion never changes the band
        {1017, 0.9, 0},  {1018, 0.3, 0},
    };
    for (const auto& s : steps) EXPECT_EQ(run.load(s.t, s.load).loadBand, s.band) << s.t;
}

TEST(MascotStateMachine, ThreeBandsClimbSeveralAtOnceAndNoBandsMeansZero) {
    Script run;
    run.character.loadBands = {0.35, 0.7};
    EXPECT_EQ(run.load(0, 0.95).loadBand, 2);
    EXPECT_EQ(run.load(5, 0.1).loadBand, 0);
    Script flat;
    flat.character.loadBands = {};
    for (double x : {0.0, 0.5, 1.0}) EXPECT_EQ(flat.load(x * 10, x).loadBand, 0);
}

TEST(Gait, ThresholdsAndMargins) {
    struct Case {
        double load;
        std::optional<Gait> previous;
        Gait expected;
    } cases[] = {
        {0.0, std::nullopt, Gait::napping},     {0.049, std::nullopt, Gait::napping},
        {0.05, std::nullopt, Gait::strolling},  {0.2, std::nullopt, Gait::trotting},
        {0.45, std::nullopt, Gait::running},    {0.7, std::nullopt, Gait::sprinting},
        {0.9, std::nullopt, Gait::zoomies},     {0.46, Gait::trotting, Gait::trotting},
        {0.475, Gait::trotting, Gait::trotting}, {0.49, Gait::trotting, Gait::running},
        {0.43, Gait::running, Gait::running},   {0.41, Gait::running, Gait::trotting},
        {0.95, Gait::trotting, Gait::zoomies},  // far from the old gait: no margin applies
    };
    for (const auto& c : cases) EXPECT_EQ(gaitFor(c.load, c.previous), c.expected) << c.load;
}

TEST(MascotStateMachine, GaitFollowsSmoothedLoadWithMargin) {
    Script run;
    EXPECT_EQ(run.load(0, 0.44).gait, Gait::trotting);
    EXPECT_EQ(run.load(1, 0.46).gait, Gait::trotting);
    EXPECT_EQ(run.load(2, 0.49).gait, Gait::running);
    EXPECT_EQ(run.load(3, 0.43).gait, Gait::running);
}

TEST(MascotState, EncodesKeysInOrderAndRoundTrips) {
    MascotState s{MascotMood::offline,
                  {MascotAccessories::umbrella | MascotAccessories::charging},
                  0.25,
                  Gait::trotting,
                  1.5,
                  1,
                  true};
    auto json = s.toJson();
    std::vector<std::string> keys;
    for (auto it = json.begin(); it != json.end(); ++it) keys.push_back(it.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"mood", "accessories", "load", "gait",
                                              "cyclesPerSecond", "loadBand", "userAway"}));
    EXPECT_EQ(json["mood"], "offline");
    EXPECT_EQ(json["accessories"], 17);
    EXPECT_EQ(MascotState::fromJson(json), s);
    EXPECT_EQ(s.accessories.dumpNames(), (std::vector<std::string>{"charging", "umbrella"}));
    MascotAccessories hats{MascotAccessories::holidayHat | MascotAccessories::gpuBadge};
    EXPECT_TRUE(hats.dumpNames().empty());
}

TEST(LoadMapping, TermsAndClamping) {
    using metrics::MemoryPressure;
    metrics::MetricsSnapshot s;
    s.cpu.total = 1.3;
    EXPECT_DOUBLE_EQ(LoadMapping::load(s, LoadSource::cpu), 1.0);
    EXPECT_DOUBLE_EQ(LoadMapping::load(s, LoadSource::gpu), 0.0);  // no GPU record
    struct MemoryCase {
        MemoryPressure pressure;
        std::uint64_t used, total;
        double expected;
    } memory[] = {
        {MemoryPressure::normal, 500, 1000, 0.25},  {MemoryPressure::normal, 5, 0, 0.0},
        {MemoryPressure::warning, 800, 1000, 0.8},  {MemoryPressure::warning, 5, 0, 0.6},
        {MemoryPressure::critical, 1, 1000, 1.0},   {MemoryPressure::unknown, 900, 1000, 0.0},
    };
    for (const auto& m : memory) {
        s.memory.pressure = m.pressure;
        s.memory.used = m.used;
        s.memory.total = m.total;
        EXPECT_DOUBLE_EQ(LoadMapping::load(s, LoadSource::memory), m.expected);
    }
    struct NetCase {
        double bps;
        double expected;
    } net[] = {{0, 0}, {1000, 0}, {100'000, 0.4}, {1e8, 1}, {1e10, 1}};
    for (const auto& n : net) {
        s.network.downBps = n.bps / 2;
        s.network.upBps = n.bps / 2;
        EXPECT_NEAR(LoadMapping::load(s, LoadSource::network), n.expected, 1e-12) << n.bps;
    }
}

TEST(LoadMapping, BusiestTieGoesToTheEarlierSource) {
    metrics::MetricsSnapshot s;
    s.cpu.total = 0.6;
    s.gpu = metrics::GPUMetrics{};
    s.gpu->utilization = 0.6;
    EXPECT_EQ(LoadMapping::winningSource(s, LoadSource::busiest), LoadSource::cpu);
    s.gpu->utilization = 0.61;
    EXPECT_EQ(LoadMapping::winningSource(s, LoadSource::busiest), LoadSource::gpu);
    EXPECT_EQ(LoadMapping::winningSource(s, LoadSource::network), LoadSource::network);
    metrics::MetricsSnapshot idle;
    EXPECT_EQ(LoadMapping::winningSource(idle, LoadSource::busiest), LoadSource::cpu);
}

TEST(MascotCharacter, ThirteenDistinctCharactersInCatalogOrder) {
    const auto& all = allCharacters();
    std::vector<std::string> ids;
    for (const auto& c : all) ids.push_back(c.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"cat", "shiba", "bunny", "penguin", "hamster", "fox",
                                             "ghost", "axolotl", "robot", "trex", "unicorn",
                                             "maneki", "goldenCat"}));
    for (size_t i = 0; i < all.size(); ++i) {
        const auto& c = all[i];
        EXPECT_LT(c.cycleRate.lower, c.cycleRate.upper) << c.id;
        EXPECT_GT(c.strideMeters, 0) << c.id;
        EXPECT_TRUE(std::is_sorted(c.loadBands.begin(), c.loadBands.end())) << c.id;
        for (size_t j = 0; j < i; ++j) {
            const auto& o = all[j];
            EXPECT_FALSE(c.cycleRate.lower == o.cycleRate.lower &&
                         c.cycleRate.upper == o.cycleRate.upper &&
                         c.strideMeters == o.strideMeters && c.loadBands == o.loadBands &&
                         c.signatureColor == o.signatureColor)
                << c.id << " duplicates " << o.id;
        }
    }
    EXPECT_EQ(characterFor("nonsense").id, "cat");
}

TEST(MascotBehavior, SliderMapping) {
    EXPECT_DOUBLE_EQ(MascotBehavior::sliderPosition(0.75), 0.5);
    EXPECT_DOUBLE_EQ(MascotBehavior::exponentForSlider(0.5), 0.75);
    EXPECT_DOUBLE_EQ(MascotBehavior::exponentForSlider(MascotBehavior::sliderPosition(0.3)), 0.3);
}

}  // namespace
}  // namespace trotlet::mascot
