#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "shop/EconomyEngine.h"

namespace trotlet::shop::testing {

inline constexpr Timestamp day1 = 1790845200.0;  // 2026-10-01T09:00:00Z, a Thursday

// An engine on a manual clock in UTC, with its saves and moments counted.
struct EngineFixture : ::testing::Test {
    ManualClock clock{day1};
    FixedOffsetCalendar calendar{0};
    std::unique_ptr<EconomyEngine> engine;
    int saves = 0;
    std::vector<EconomyMoment> moments;

    void SetUp() override { start(ShopState::fresh(day1, 7)); }

    void start(ShopState state) {
        engine = std::make_unique<EconomyEngine>(std::move(state), clock, calendar, 99);
        engine->setChangeCallback([this] { ++saves; });
        engine->setMomentCallback([this](const EconomyMoment& m) { moments.push_back(m); });
    }

    // Real time passes in passive ticks of `step` seconds with the user at `idle`.
    void work(double seconds, double idle = 0, double step = 60) {
        while (seconds > 1e-9) {
            const double s = std::min(step, seconds);
            clock.advance(s);
            engine->tickPassive(s, idle);
            seconds -= s;
        }
    }

    void expectWalletHealthy() {
        const auto violation = engine->wallet().invariantViolation();
        EXPECT_FALSE(violation.has_value()) << *violation;
    }
};

}  // namespace trotlet::shop::testing
