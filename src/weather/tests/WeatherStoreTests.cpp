#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "platform/linux/AtomicFile.h"
#include "weather/qt/WeatherStore.h"
#include "weather/tests/ScriptedFetcher.h"

namespace trotlet::weather {
namespace {

using testing::ScriptedFetcher;

constexpr UnixTime T0 = 1795852800;

class FakeWatch : public NetworkPathWatch {
public:
    struct State {
        std::function<void(bool)> report;
        int starts = 0;
        int stops = 0;
        bool running = false;
    };
    explicit FakeWatch(std::shared_ptr<State> s) : s_(std::move(s)) {}
    void start(std::function<void(bool)> report) override {
        s_->report = std::move(report);
        ++s_->starts;
        s_->running = true;
    }
    void stop() override {
        ++s_->stops;
        s_->running = false;
    }

private:
    std::shared_ptr<State> s_;
};

WeatherLocation paris() { return {2988507, "Paris", "Île-de-France", "France", "FR", 48.85341, 2.3488, "Europe/Paris"}; }
WeatherLocation london() { return {2643743, "London", "England", "United Kingdom", "GB", 51.50853, -0.12574, "Europe/London"}; }

// A report for `place` fetched at `at`, current at `at`, with 36 hourly slots from the hour before.
WeatherReport reportFor(const WeatherLocation& place, UnixTime at, double temperature = 11.4) {
    WeatherReport r;
    r.location = place;
    r.fetchedAt = at;
    r.utcOffsetSeconds = 3600;
    r.current.time = at;
    r.current.temperatureC = temperature;
    r.current.code = 61;
    for (int i = 0; i < 37; ++i) {
        WeatherHour h;
        h.time = at - 3600 + i * 3600;
        h.temperatureC = 20.0 + i;
        h.code = 3;
        r.hourly.push_back(h);
    }
    return r;
}

class WeatherStoreTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }

    std::unique_ptr<WeatherStore> makeStore(std::optional<std::string> cachePath = std::nullopt) {
        auto s = std::make_unique<WeatherStore>(fetcher, WeatherCache(cachePath ? cachePath : std::optional(cacheFile())),
                                                std::make_unique<FakeWatch>(watch), [this] { return now; });
        s->setTracing(true);
        return s;
    }
    // A started store for `place` with the weather in the menu bar: the one viewer it needs.
    std::unique_ptr<WeatherStore> startedStore(const WeatherLocation& place = paris()) {
        auto s = makeStore();
        s->setLocation(place);
        s->setShowInMenuBar(true);
        s->start();
        return s;
    }
    std::string cacheFile() const { return dir.filePath("data/weather.json").toStdString(); }

    // Moves the clock to the next refresh and fires it, as the timer would.
    void fireDue(WeatherStore& store) {
        ASSERT_TRUE(store.nextRefresh());
        now = std::max(now, *store.nextRefresh());
        store.runDue();
    }

    QTemporaryDir dir;
    ScriptedFetcher fetcher;
    std::shared_ptr<FakeWatch::State> watch = std::make_shared<FakeWatch::State>();
    UnixTime now = T0;
};

TEST_F(WeatherStoreTest, BeforeStartNothingRuns) {
    auto store = makeStore();
    store->setLocation(paris());
    store->setShowInMenuBar(true);
    store->setPanelOpen(true);
    EXPECT_FALSE(store->isTimerArmed());
    EXPECT_FALSE(store->nextRefresh());
    store->runDue();
    EXPECT_TRUE(fetcher.calls.empty());
}

TEST_F(WeatherStoreTest, MenuBarAloneRefreshesEveryThirtyMinutesPanelEveryTwenty) {
    auto store = startedStore();
    ASSERT_EQ(store->nextRefresh(), T0);  // nothing yet: due at once
    EXPECT_TRUE(store->isTimerArmed());
    fireDue(*store);
    ASSERT_EQ(fetcher.calls.size(), 1u);
    EXPECT_EQ(store->status().kind, WeatherStatus::Kind::loading);
    now += 2;
    fetcher.answer(0, reportFor(paris(), now));
    EXPECT_EQ(store->status().kind, WeatherStatus::Kind::idle);
    EXPECT_EQ(store->nextRefresh(), T0 + 2 + 1800);
    EXPECT_EQ(store->menuBarText(false), "11°C");
    EXPECT_EQ(store->menuBarText(true), "53°F");

    store->setPanelOpen(true);  // header on by default
    EXPECT_EQ(store->nextRefresh(), T0 + 2 + 1200);
    store->setShowInHeader(false);
    EXPECT_EQ(store->nextRefresh(), T0 + 2 + 1800);  // panel open, but nothing in it shows weather
    store->setCardVisible(true);
    EXPECT_EQ(store->nextRefresh(), T0 + 2 + 1200);
    fireDue(*store);
    EXPECT_EQ(fetcher.calls.size(), 2u);
}

TEST_F(WeatherStoreTest, NoSchedulerWithoutAViewer) {
    auto store = makeStore();
    store->setLocation(paris());
    store->start();
    EXPECT_FALSE(store->isLoopRunning());
    EXPECT_FALSE(store->isTimerArmed());
    store->setPanelOpen(true);
    EXPECT_TRUE(store->isLoopRunning());
    EXPECT_EQ(store->nextRefresh(), T0);
    store->setPanelOpen(false);
    EXPECT_FALSE(store->isLoopRunning());
    EXPECT_FALSE(store->isTimerArmed());
    EXPECT_FALSE(store->nextRefresh());
    // No place: nothing, whatever is on screen.
    store->setLocation(std::nullopt);
    store->setShowInMenuBar(true);
    EXPECT_FALSE(store->isLoopRunning());
    EXPECT_TRUE(fetcher.calls.empty());
}

TEST_F(WeatherStoreTest, OfflineBackoffSequenceKeepsTheReport) {
    auto store = startedStore();
    fireDue(*store);
    fetcher.answer(0, reportFor(paris(), now));
    ASSERT_TRUE(store->currentReport());
    now += 1800;
    std::vector<UnixTime> gaps;
    for (size_t i = 0; i < 8; ++i) {
        fireDue(*store);
        fetcher.answer(fetcher.calls.size() - 1, WeatherError::offline());
        gaps.push_back(*store->nextRefresh() - now);
    }
    EXPECT_EQ(gaps, (std::vector<UnixTime>{60, 120, 240, 480, 960, 1800, 1800, 1800}));
    EXPECT_EQ(store->failureCount(), 8);
    EXPECT_EQ(store->status().error, WeatherError::offline());
    EXPECT_TRUE(store->report());  // the stale forecast stays
    EXPECT_TRUE(store->isWatchingNetwork());
    EXPECT_EQ(watch->starts, 1);
    const auto& t = store->trace();
    EXPECT_NE(std::find(t.begin(), t.end(), "fail Paris offline backoff 60s"), t.end());
    EXPECT_NE(std::find(t.begin(), t.end(), "fail Paris offline backoff 960s"), t.end());
    EXPECT_NE(std::find(t.begin(), t.end(), "watch network on"), t.end());
    // Server errors count too; a success ends it all.
    fireDue(*store);
    fetcher.answer(fetcher.calls.size() - 1, WeatherError::server(503));
    EXPECT_EQ(t.back(), "fail Paris server(503) backoff 1800s");
    fireDue(*store);
    fetcher.answer(fetcher.calls.size() - 1, reportFor(paris(), now));
    EXPECT_EQ(store->failureCount(), 0);
    EXPECT_FALSE(store->isWatchingNetwork());
    EXPECT_FALSE(watch->running);
    EXPECT_EQ(store->nextRefresh(), now + 1800);
}

TEST_F(WeatherStoreTest, PanelOpeningAllowsOneEarlyRetry) {
    auto store = startedStore();
    for (int i = 0; i < 4; ++i) {
        fireDue(*store);
        fetcher.answer(fetcher.calls.size() - 1, WeatherError::offline());
    }
    const UnixTime last = *store->lastAttempt();
    ASSERT_EQ(store->nextRefresh(), last + 480);
    now = last + 10;
    store->setPanelOpen(true);
    EXPECT_EQ(store->nextRefresh(), last + 60);  // a minute after the last attempt, not sooner
    fireDue(*store);
    fetcher.answer(fetcher.calls.size() - 1, WeatherError::offline());
    EXPECT_EQ(store->nextRefresh(), now + 960);  // the backoff holds for the rest of this opening
    store->setPanelOpen(false);
    now += 5;
    store->setPanelOpen(true);
    EXPECT_EQ(store->nextRefresh(), now - 5 + 60);
}

TEST_F(WeatherStoreTest, NetworkBackResetsTheBackoffAndFetchesAtOnce) {
    auto store = startedStore();
    for (int i = 0; i < 3; ++i) {
        fireDue(*store);
        fetcher.answer(fetcher.calls.size() - 1, WeatherError::offline());
    }
    ASSERT_TRUE(watch->report);
    now += 30;
    watch->report(true);  // first report, path already satisfied: a firewall, not the network
    EXPECT_EQ(store->failureCount(), 3);
    watch->report(false);
    EXPECT_EQ(store->failureCount(), 3);
    watch->report(true);
    EXPECT_EQ(store->failureCount(), 0);
    EXPECT_EQ(store->nextRefresh(), now);
    EXPECT_FALSE(store->isWatchingNetwork());
    const auto& t = store->trace();
    EXPECT_NE(std::find(t.begin(), t.end(), "network back: backoff reset"), t.end());
    EXPECT_NE(std::find(t.begin(), t.end(), "network unsatisfied"), t.end());
    // A report from the stopped watch changes nothing.
    auto stale = watch->report;
    stale(false);
    stale(true);
    EXPECT_EQ(store->nextRefresh(), now);
    fireDue(*store);
    EXPECT_EQ(fetcher.calls.size(), 4u);
}

TEST_F(WeatherStoreTest, PlaceChangeCancelsTheFetchAndNeverShowsTheOldPlace) {
    for (bool silent : {false, true}) {
        ScriptedFetcher local;
        local.silentCancel = silent;
        WeatherStore store(local, WeatherCache(cacheFile()), std::make_unique<FakeWatch>(watch), [this] { return now; });
        store.setTracing(true);
        store.setLocation(paris());
        store.setShowInMenuBar(true);
        store.start();
        store.runDue();
        ASSERT_EQ(local.calls.size(), 1u);
        store.setLocation(london());
        EXPECT_TRUE(local.calls[0]->cancelled);
        EXPECT_EQ(store.nextRefresh(), now);  // the new place at once
        EXPECT_NE(std::find(store.trace().begin(), store.trace().end(), "cancel Paris"), store.trace().end());
        // The old answer arrives anyway: dropped.
        if (!local.calls[0]->finished) local.answer(0, reportFor(paris(), now));
        EXPECT_FALSE(store.report());
        store.runDue();
        ASSERT_EQ(local.calls.size(), 2u);
        EXPECT_EQ(local.calls[1]->place.name, "London");
        local.answer(1, reportFor(london(), now));
        ASSERT_TRUE(store.currentReport());
        EXPECT_EQ(store.currentReport()->location.name, "London");
        EXPECT_EQ(store.failureCount(), 0);
    }
}

TEST_F(WeatherStoreTest, PlaceChangeClearsReportAndCache) {
    auto store = startedStore();
    store->runDue();
    fetcher.answer(0, reportFor(paris(), now));
    ASSERT_EQ(platform::readWholeFile(cacheFile()).status, platform::ReadStatus::ok);
    fireDue(*store);
    fetcher.answer(1, WeatherError::offline());
    store->setLocation(london());
    EXPECT_FALSE(store->report());
    EXPECT_EQ(store->failureCount(), 0);
    EXPECT_FALSE(store->lastAttempt());
    EXPECT_EQ(platform::readWholeFile(cacheFile()).status, platform::ReadStatus::missing);
}

TEST_F(WeatherStoreTest, RelaunchShowsTheCachedForecastAtOnce) {
    {
        auto first = startedStore();
        first->runDue();
        fetcher.answer(0, reportFor(paris(), now, 7.6));
    }
    now += 600;
    auto second = startedStore();
    ASSERT_TRUE(second->currentReport());
    EXPECT_EQ(second->menuBarText(false), "8°C");
    EXPECT_EQ(second->nextRefresh(), T0 + 1800);  // not now: the cached one is fresh
    EXPECT_EQ(fetcher.calls.size(), 1u);
    // A cache for another place is kept but never shown.
    auto third = startedStore(london());
    EXPECT_TRUE(third->report());
    EXPECT_FALSE(third->currentReport());
    EXPECT_FALSE(third->menuBarText(false));
    EXPECT_EQ(third->nextRefresh(), now);
}

TEST_F(WeatherStoreTest, HorizonThroughTheStore) {
    auto store = startedStore();
    store->runDue();
    const UnixTime fetched = now;
    fetcher.answer(0, reportFor(paris(), fetched));
    now = fetched + 3 * 3600;  // the hourly slot at +3 h (index 4) stands in
    EXPECT_EQ(store->menuBarText(false), "24°C");
    now = fetched + 35 * 3600 + 3599;
    EXPECT_EQ(store->menuBarText(false), "56°C");
    now = fetched + 35 * 3600 + 3600;
    EXPECT_FALSE(store->menuBarText(false));
    EXPECT_TRUE(store->skyInput(now));
    EXPECT_FALSE(store->skyInput(now)->condition);
}

TEST_F(WeatherStoreTest, StopCancelsEverything) {
    auto store = startedStore();
    store->runDue();
    fetcher.answer(0, WeatherError::offline());
    fireDue(*store);
    ASSERT_TRUE(store->isFetching());
    store->stop();
    EXPECT_TRUE(fetcher.calls[1]->cancelled);
    EXPECT_FALSE(store->isTimerArmed());
    EXPECT_FALSE(store->isWatchingNetwork());
    EXPECT_EQ(watch->stops, 1);
    EXPECT_EQ(store->status().kind, WeatherStatus::Kind::idle);  // the cancelled fetch is not a failure
    EXPECT_EQ(store->failureCount(), 1);
}

TEST_F(WeatherStoreTest, RetryNowClearsTheFailureState) {
    auto store = startedStore();
    store->runDue();
    fetcher.answer(0, WeatherError::server(500));
    ASSERT_EQ(store->nextRefresh(), now + 60);
    store->retryNow();
    EXPECT_EQ(store->failureCount(), 0);
    EXPECT_EQ(store->nextRefresh(), now);
}

TEST(WeatherCache, BrokenOrNewerFilesReadAsNone) {
    QTemporaryDir dir;
    const std::string path = dir.filePath("weather.json").toStdString();
    WeatherCache cache(path);
    EXPECT_FALSE(cache.load());
    const WeatherReport report = reportFor(paris(), T0);
    ASSERT_TRUE(cache.save(report, T0 + 1));
    auto loaded = cache.load();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(*loaded, report);
    auto text = platform::readWholeFile(path).contents;
    EXPECT_NE(text.find("\"savedAt\": 1795852801"), std::string::npos);
    for (std::string broken : {std::string(""), std::string("{"), text.substr(0, text.size() / 2),
                               std::string(R"({"version":2,"savedAt":1,"report":{}})"),
                               std::string(R"({"version":1,"savedAt":1,"report":{"fetchedAt":"x"}})")}) {
        ASSERT_TRUE(platform::writeAtomically(path, broken));
        EXPECT_FALSE(cache.load()) << broken;
    }
    cache.clear();
    EXPECT_EQ(platform::readWholeFile(path).status, platform::ReadStatus::missing);
    EXPECT_FALSE(WeatherCache().save(report, T0));
    EXPECT_FALSE(WeatherCache().load());
}

TEST(WeatherCache, SessionLocation) {
    ::setenv("TROTLET_WEATHER_CACHE", "/tmp/x/w.json", 1);
    EXPECT_EQ(WeatherCache::forSession(true).path(), "/tmp/x/w.json");
    EXPECT_EQ(WeatherCache::forSession(false).path(), "/tmp/x/w.json");
    ::setenv("TROTLET_WEATHER_CACHE", "", 1);
    EXPECT_FALSE(WeatherCache::forSession(true).path());
    ::setenv("XDG_DATA_HOME", "/tmp/xdg-data", 1);
    EXPECT_EQ(WeatherCache::forSession(false).path(), "/tmp/xdg-data/trotlet/weather.json");
    ::unsetenv("TROTLET_WEATHER_CACHE");
    ::unsetenv("XDG_DATA_HOME");
}

}  // namespace
}  // namespace trotlet::weather
