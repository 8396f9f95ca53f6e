#include <gtest/gtest.h>

#include "weather/WeatherSchedule.h"

namespace trotlet::weather {
namespace {

constexpr UnixTime T0 = 1795852800;

TEST(WeatherSchedule, NeedsFollowWhatIsOnScreen) {
    struct Case {
        WeatherNeeds needs;
        bool panel;
        bool updates;
    } cases[] = {
        {{false, true, true, true, true}, true, false},     // no place: never
        {{true, false, true, true, false}, false, false},   // panel closed, menu bar off
        {{true, false, true, false, true}, false, true},    // menu bar alone
        {{true, true, true, false, false}, true, true},     // header shows it
        {{true, true, false, false, false}, false, false},  // header off, card hidden
        {{true, true, false, true, false}, true, true},     // the card is on screen
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.needs.panelNeedsWeather(), c.panel);
        EXPECT_EQ(c.needs.needsUpdates(), c.updates);
    }
}

TEST(WeatherSchedule, RegularRefreshAfterTwentyOrThirtyMinutes) {
    WeatherSchedule s;
    EXPECT_EQ(s.dueDate(T0, std::nullopt, false), T0);
    EXPECT_EQ(s.dueDate(T0, T0 - 100, false), T0 - 100 + 1800);
    EXPECT_EQ(s.dueDate(T0, T0 - 100, true), T0 - 100 + 1200);
    // A report stamped an hour behind our clock does not make every minute a refresh.
    s.attempted(T0);
    s.succeeded();
    EXPECT_EQ(s.dueDate(T0, T0 - 3600, false), T0 + 60);
}

TEST(WeatherSchedule, OfflineSequenceWithThePanelClosed) {
    WeatherSchedule s;
    UnixTime now = T0;
    std::vector<UnixTime> gaps;
    for (int i = 0; i < 8; ++i) {
        s.attempted(now);
        s.failed();
        UnixTime due = s.dueDate(now, std::nullopt, false);
        gaps.push_back(due - now);
        now = due;
    }
    EXPECT_EQ(gaps, (std::vector<UnixTime>{60, 120, 240, 480, 960, 1800, 1800, 1800}));
    EXPECT_EQ(WeatherSchedule::backoffDelay(1000000), 1800);
    // A stale report does not shorten the backoff.
    EXPECT_EQ(s.dueDate(now, T0 - 86400, false), *s.lastAttempt + 1800);
}

TEST(WeatherSchedule, OneEarlyRetryPerPanelOpening) {
    WeatherSchedule s;
    for (int i = 0; i < 5; ++i) {
        s.attempted(T0);
        s.failed();
    }
    ASSERT_EQ(s.dueDate(T0 + 10, std::nullopt, false), T0 + 960);
    s.panelOpened();
    // Not sooner than a minute after the last attempt...
    EXPECT_EQ(s.dueDate(T0 + 10, std::nullopt, true), T0 + 60);
    // ...and at once when that minute has passed.
    EXPECT_EQ(s.dueDate(T0 + 300, std::nullopt, true), T0 + 300);
    // Only while the panel shows the weather.
    EXPECT_EQ(s.dueDate(T0 + 300, std::nullopt, false), T0 + 960);
    s.attempted(T0 + 300);
    s.failed();
    EXPECT_EQ(s.dueDate(T0 + 301, std::nullopt, true), T0 + 300 + 1800);  // backoff holds now
    s.panelClosed();
    s.panelOpened();
    EXPECT_EQ(s.dueDate(T0 + 301, std::nullopt, true), T0 + 360);
}

TEST(WeatherSchedule, NetworkBackResetsOnlyAfterAnUnsatisfiedPath) {
    struct Step {
        bool satisfied;
        bool resets;
    };
    struct Case {
        const char* name;
        std::vector<Step> steps;
    } cases[] = {
        {"unknown then satisfied", {{true, false}}},
        {"satisfied twice", {{true, false}, {true, false}}},
        {"down then up", {{false, false}, {true, true}}},
        {"down, down, up", {{false, false}, {false, false}, {true, true}}},
    };
    for (const auto& c : cases) {
        WeatherSchedule s;
        s.attempted(T0);
        s.failed();
        s.failed();
        ASSERT_TRUE(s.wantsNetworkWatch());
        for (const auto& step : c.steps) EXPECT_EQ(s.networkChanged(step.satisfied), step.resets) << c.name;
        EXPECT_EQ(s.failureCount == 0, c.steps.back().resets) << c.name;
    }
    // Without failures a path coming back changes nothing.
    WeatherSchedule idle;
    idle.networkChanged(false);
    EXPECT_FALSE(idle.networkChanged(true));
    // A stopped watch forgets the path, so a later first report is "unknown then ...".
    WeatherSchedule s;
    s.failed();
    s.networkChanged(false);
    s.watchStopped();
    EXPECT_FALSE(s.networkChanged(true));
}

TEST(WeatherSchedule, PlaceChangeAndRetryNowClearFailures) {
    WeatherSchedule s;
    s.attempted(T0);
    s.failed();
    s.placeChanged();
    EXPECT_EQ(s.failureCount, 0);
    EXPECT_FALSE(s.lastAttempt);
    EXPECT_EQ(s.dueDate(T0 + 1, std::nullopt, false), T0 + 1);
    s.attempted(T0 + 1);
    s.failed();
    s.retryNow();
    EXPECT_EQ(s.dueDate(T0 + 2, std::nullopt, true), T0 + 2);
}

}  // namespace
}  // namespace trotlet::weather
