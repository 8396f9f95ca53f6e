#include <cmath>

#include <gtest/gtest.h>

#include "mascot/MascotMotion.h"
#include "mascot/tests/MascotTestSupport.h"

namespace trotlet::mascot {
namespace {

using testing::at;

MascotState runningAt(double cps, Gait gait = Gait::running, MascotMood mood = MascotMood::running) {
    MascotState s;
    s.mood = mood;
    s.gait = gait;
    s.cyclesPerSecond = cps;
    return s;
}

// Settles the eased rate on the state's pace so that steps are predictable.
MascotMotion settled(const MascotState& state, const MascotCharacter& c, double& t) {
    MascotMotion m;
    m.apply(state);
    for (int i = 0; i < 200; ++i, t += 0.05) m.advance(at(t), c);
    return m;
}

TEST(MascotMotion, LongStallAdvancesAtMostHalfASecond) {
    const auto& cat = characterFor("cat");
    double t = 0;
    auto m = settled(runningAt(2.0), cat, t);
    ASSERT_NEAR(m.displayRate(), 2.0, 1e-6);
    const double phase = m.phase();
    const double distance = m.distanceMeters();
    auto tick = m.advance(at(t + 3600), cat);
    EXPECT_DOUBLE_EQ(tick.dt, 0.5);
    EXPECT_NEAR(tick.step, 1.0, 1e-6);
    EXPECT_NEAR(std::fmod(m.phase() - phase + 1, 1.0), 0.0, 1e-5);
    EXPECT_NEAR(m.distanceMeters() - distance, 1.0 * cat.strideMeters, 1e-6);
    // A clock that steps back advances nothing.
    EXPECT_DOUBLE_EQ(m.advance(at(t), cat).dt, 0.0);
}

TEST(MascotMotion, FirstTickAdvancesNothing) {
    MascotMotion m;
    m.apply(runningAt(3));
    auto tick = m.advance(at(0), characterFor("cat"));
    EXPECT_DOUBLE_EQ(tick.dt, 0);
    EXPECT_DOUBLE_EQ(m.phase(), 0);
}

TEST(MascotMotion, EasingIsCriticallyDampedWithoutOvershoot) {
    MascotMotion m;
    m.apply(runningAt(3.0));
    const auto& cat = characterFor("cat");
    double previous = 0;
    for (int i = 0; i <= 100; ++i) {
        m.advance(at(i * 0.05), cat);
        EXPECT_LE(m.displayRate(), 3.0 + 1e-9) << i;
        EXPECT_GE(m.displayRate(), previous - 1e-12) << i;
        previous = m.displayRate();
    }
    // After 5 s at stiffness 4 the gap is below e^-20 x (1 + 20) of the start.
    EXPECT_NEAR(m.displayRate(), 3.0, 1e-6);
    // One closed-form step from rest: x = -3, v = 0, dt = 0.05.
    MascotMotion fresh;
    fresh.apply(runningAt(3.0));
    fresh.advance(at(0), cat);
    const double dt = fresh.advance(at(0.05), cat).dt;  // 0.05 up to the clock's resolution
    ASSERT_NEAR(dt, 0.05, 1e-6);
    const double e = std::exp(-4 * dt);
    EXPECT_NEAR(fresh.displayRate(), 3.0 + e * (-3 + dt * (-12)), 1e-12);
    EXPECT_NEAR(fresh.rateVelocity(), e * (0 - 4 * dt * (-12)), 1e-12);
}

TEST(MascotMotion, RunToPanicKeepsThePhase) {
    const auto& cat = characterFor("cat");
    double t = 0;
    auto m = settled(runningAt(1.0), cat, t);
    // Walk the phase to 0.4 exactly by stepping from a known point.
    while (std::fabs(m.phase() - 0.4) > 1e-3) {
        m.advance(at(t), cat);
        t += 0.001;
    }
    const double phase = m.phase();
    m.apply(runningAt(3.2, Gait::zoomies, MascotMood::panic));
    EXPECT_EQ(m.visual().mood, MascotMood::panic);
    EXPECT_FALSE(m.pendingVisual());
    auto tick = m.advance(at(t), cat);
    EXPECT_NEAR(m.phase(), phase + tick.step, 1e-9);
}

TEST(MascotMotion, RunToSitWaitsForTheStrideToWrap) {
    const auto& cat = characterFor("cat");
    double t = 0;
    auto m = settled(runningAt(1.0), cat, t);
    while (m.phase() > 0.3 || m.phase() < 0.2) {
        m.advance(at(t), cat);
        t += 0.01;
    }
    MascotState sit = runningAt(0.25, Gait::napping, MascotMood::sitting);
    m.apply(sit);
    EXPECT_EQ(m.state().mood, MascotMood::sitting);  // the reported state changes at once
    EXPECT_EQ(m.visual().mood, MascotMood::running);
    ASSERT_TRUE(m.pendingVisual());
    int ticks = 0;
    double last = m.phase();
    bool swapped = false;
    while (!swapped && ticks < 200) {
        t += 0.05;
        auto tick = m.advance(at(t), cat);
        ++ticks;
        if (tick.visualChanged) {
            swapped = true;
            EXPECT_GE(last + tick.step, 1.0);
        } else {
            EXPECT_EQ(m.visual().mood, MascotMood::running);
            EXPECT_GT(m.phase(), last);  // never wraps without swapping
            last = m.phase();
        }
    }
    ASSERT_TRUE(swapped);
    EXPECT_EQ(m.visual().mood, MascotMood::sitting);
    EXPECT_DOUBLE_EQ(m.phase(), 0.0);
    EXPECT_FALSE(m.pendingVisual());
    // Sitting covers no distance.
    const double d = m.distanceMeters();
    m.advance(at(t + 0.3), cat);
    EXPECT_DOUBLE_EQ(m.distanceMeters(), d);
    // Back to a run: at once.
    m.apply(runningAt(2));
    EXPECT_EQ(m.visual().mood, MascotMood::running);
}

TEST(MascotMotion, ARunBeforeTheWrapCancelsThePendingSit) {
    const auto& cat = characterFor("cat");
    double t = 0;
    auto m = settled(runningAt(1.0), cat, t);
    m.apply(runningAt(0.25, Gait::napping, MascotMood::sitting));
    ASSERT_TRUE(m.pendingVisual());
    m.apply(runningAt(1.5, Gait::sprinting));
    EXPECT_FALSE(m.pendingVisual());
    EXPECT_DOUBLE_EQ(m.visual().cyclesPerSecond, 1.5);
}

TEST(MascotMotion, OneShotFramesPauseTheStride) {
    const auto& cat = characterFor("cat");
    double t = 0;
    auto m = settled(runningAt(1.0), cat, t);
    const double phase = m.phase();
    auto tick = m.advance(at(t + 0.1), cat, true);
    EXPECT_TRUE(tick.playedOneShot);
    EXPECT_DOUBLE_EQ(m.phase(), phase);
    EXPECT_EQ(m.frameIndex(cat), -1);
    m.advance(at(t + 0.2), cat, false);
    EXPECT_GE(m.frameIndex(cat), 0);
}

TEST(MascotMotion, FrameIndexFollowsThePhase) {
    const auto& cat = characterFor("cat");
    MascotMotion m;
    m.apply(runningAt(1.0));
    std::vector<int> seen;
    for (int i = 0; i < 400; ++i) {
        m.advance(at(i * 0.01), cat);
        int f = m.frameIndex(cat);
        ASSERT_GE(f, 0);
        ASSERT_LT(f, cat.runFrames);
        if (seen.empty() || seen.back() != f) seen.push_back(f);
    }
    // Frames only move forward, wrapping from the last to the first.
    for (size_t i = 1; i < seen.size(); ++i)
        EXPECT_TRUE(seen[i] == seen[i - 1] + 1 || (seen[i] == 0 && seen[i - 1] == cat.runFrames - 1))
            << i;
}

TEST(MenuBarFPS, CapsInOrder) {
    const auto& cat = characterFor("cat");  // 8 run frames, 4 sit and sleep frames
    struct Case {
        const char* what;
        MascotState state;
        FrameEnvironment env;
        double expected;
    };
    FrameEnvironment plain;
    FrameEnvironment battery15 = plain;
    battery15.onLowBattery = true;
    FrameEnvironment battery15NoSaving = battery15;
    battery15NoSaving.saveEnergy = false;
    FrameEnvironment lowPower = plain;
    lowPower.lowPowerMode = true;
    FrameEnvironment reduced = plain;
    reduced.reduceMotion = true;
    reduced.animateWithReduceMotion = true;
    FrameEnvironment max12 = plain;
    max12.maxFPS = 12;
    MascotState away = runningAt(2.5, Gait::running);
    away.userAway = true;
    const Case cases[] = {
        {"zoomies at full rate", runningAt(3.2, Gait::zoomies), plain, 24},
        {"zoomies on 15 % battery, save energy", runningAt(3.2, Gait::zoomies), battery15, 10},
        {"same without save energy", runningAt(3.2, Gait::zoomies), battery15NoSaving, 24},
        {"low power mode", runningAt(3.2, Gait::zoomies), lowPower, 10},
        {"reduce motion", runningAt(3.2, Gait::zoomies), reduced, 8},
        {"away at 60 %", away, plain, 9},
        {"slow napping raised to 6", runningAt(0.7, Gait::napping), plain, 6},
        {"napping cap", runningAt(1.0, Gait::napping), plain, 7},
        {"strolling cap", runningAt(2.0, Gait::strolling), plain, 9},
        {"trotting cap", runningAt(2.0, Gait::trotting), plain, 13},
        {"running cap", runningAt(3.0, Gait::running), plain, 18},
        {"sprinting cap", runningAt(3.0, Gait::sprinting), plain, 22},
        {"panic raised to 24", runningAt(1.0, Gait::strolling, MascotMood::panic), plain, 24},
        {"panic under maxFPS 12", runningAt(3.2, Gait::zoomies, MascotMood::panic), max12, 12},
        {"sitting is 0.25 x 4", runningAt(0.25, Gait::napping, MascotMood::sitting), plain, 1},
        {"celebrating 1 x 6", runningAt(1.0, Gait::napping, MascotMood::celebrating), plain, 6},
        {"never below 1", runningAt(0.0, Gait::napping, MascotMood::sleeping), plain, 1},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(menuBarFPS(c.state, cat, c.env), c.expected) << c.what;
}

TEST(MenuBarFPS, EnvironmentFromSampleAndStillFrames) {
    metrics::MetricsSnapshot s;
    s.battery.present = true;
    s.battery.percent = 15;
    EXPECT_TRUE(FrameEnvironment::fromSnapshot(s, {}).onLowBattery);
    s.battery.pluggedIn = true;
    EXPECT_FALSE(FrameEnvironment::fromSnapshot(s, {}).onLowBattery);
    s.battery.pluggedIn = false;
    s.battery.percent = 20;
    EXPECT_FALSE(FrameEnvironment::fromSnapshot(s, {}).onLowBattery);
    s.battery.present = false;
    s.battery.percent = 0;
    EXPECT_FALSE(FrameEnvironment::fromSnapshot(s, {}).onLowBattery);

    FrameEnvironment env;
    EXPECT_FALSE(isStillFrame(env, false));
    EXPECT_TRUE(isStillFrame(env, true));
    env.reduceMotion = true;
    EXPECT_TRUE(isStillFrame(env, false));
    env.animateWithReduceMotion = true;
    EXPECT_FALSE(isStillFrame(env, false));
    env.pauseAnimation = true;
    EXPECT_TRUE(isStillFrame(env, false));
}

}  // namespace
}  // namespace trotlet::mascot

namespace trotlet::mascot {
namespace {

// The odometer the Paw Track reads: each stride run is counted once, as the sampling tick
// takes the difference, and a mascot asleep, sitting or celebrating covers no ground.
TEST(MascotMotion, EachStrideIsCreditedOnceAndStillMoodsCreditNothing) {
    const auto& cat = characterFor("cat");
    for (MascotMood still : {MascotMood::sleeping, MascotMood::sitting, MascotMood::celebrating}) {
        SCOPED_TRACE(MascotMoodNames[std::size_t(still)]);
        double t = 0;
        MascotMotion m = settled(runningAt(2.0), cat, t);
        t -= 0.05;  // the time of the last tick
        double credited = 0, last = m.distanceMeters();
        auto sample = [&] {
            credited += std::max(0.0, m.distanceMeters() - last);
            last = m.distanceMeters();
        };
        // Ten seconds at two strides a second, sampled every second as the app does.
        for (int i = 1; i <= 200; ++i) {
            m.advance(at(t += 0.05), cat);
            if (i % 20 == 0) sample();
        }
        EXPECT_NEAR(credited, 20 * cat.strideMeters, 1e-6);
        MascotState rest = runningAt(0, Gait::napping, still);
        m.apply(rest);
        while (m.visual().mood != still) m.advance(at(t += 0.05), cat);
        sample();
        const double before = credited;
        for (int i = 0; i < 100; ++i) m.advance(at(t += 0.05), cat);
        sample();
        EXPECT_DOUBLE_EQ(credited, before);
    }
}

}  // namespace
}  // namespace trotlet::mascot
