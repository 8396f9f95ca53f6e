// The weather in the running app: the store follows the weather settings and the panel, and
// nothing goes online until a place is chosen and something shows the weather.
#include <gtest/gtest.h>

#include <cstdlib>

#include <QDateTime>

#include "settings/DefaultsStore.h"
#include "settings/WeatherSettings.h"
#include "weather/qt/WeatherRuntime.h"
#include "weather/tests/LocalHttpServer.h"
#include "weather/tests/OpenMeteoSamples.h"
#include "weather/tests/ScriptedFetcher.h"

namespace trotlet::weather {
namespace {

using testing::ScriptedFetcher;

constexpr UnixTime T0 = 1795852800;

WeatherLocation paris() {
    return {2988507, "Paris", "Île-de-France", "France", "FR", 48.85341, 2.3488, "Europe/Paris"};
}
WeatherLocation london() {
    return {2643743, "London", "England", "United Kingdom",
            "GB",    51.50853, -0.12574,  "Europe/London"};
}

class SilentWatch : public NetworkPathWatch {
public:
    void start(std::function<void(bool)>) override {}
    void stop() override {}
};

// Sets an environment variable for one test and puts the old value back.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value)
            ::setenv(name, value->c_str(), 1);
        else
            ::unsetenv(name);
    }
    ~ScopedEnv() {
        if (old_)
            ::setenv(name_, old_->c_str(), 1);
        else
            ::unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

struct WeatherRuntimeTest : ::testing::Test {
    settings::DefaultsStore defaults = settings::DefaultsStore::ephemeral({"trotlet"});
    settings::WeatherSettings settings{defaults};
    ScriptedFetcher fetcher;
    UnixTime now = T0;

    std::unique_ptr<WeatherRuntime> scripted() {
        testing::ensureApp();
        return std::make_unique<WeatherRuntime>(settings, fetcher, WeatherCache(),
                                                std::make_unique<SilentWatch>(),
                                                [this] { return now; });
    }
};

TEST_F(WeatherRuntimeTest, WithoutAPlaceNothingRunsAndNoClientIsMade) {
    ScopedEnv cache("TROTLET_WEATHER_CACHE", std::nullopt);
    testing::ensureApp();
    WeatherRuntime runtime(settings, true);
    EXPECT_TRUE(runtime.store().isStarted());
    settings.setShowInMenuBar(true);
    runtime.setPanelOpen(true);
    EXPECT_FALSE(runtime.store().isLoopRunning());
    EXPECT_FALSE(runtime.store().isTimerArmed());
    EXPECT_FALSE(runtime.store().isFetching());
    EXPECT_FALSE(runtime.hasClient());

    // A stored place that can't be read is no place either.
    settings.setEncodedLocation("{\"name\": 12}");
    EXPECT_FALSE(runtime.store().location());
    EXPECT_FALSE(runtime.store().isTimerArmed());
    EXPECT_FALSE(runtime.hasClient());
}

TEST_F(WeatherRuntimeTest, ThePlaceAndTheSwitchesFollowTheSettings) {
    auto runtime = scripted();
    settings.setEncodedLocation(encodeLocationSetting(paris()));
    // Chosen, but nothing shows the weather: the panel is closed and the menu bar is off.
    EXPECT_FALSE(runtime->store().isLoopRunning());
    settings.setShowInMenuBar(true);
    ASSERT_TRUE(runtime->store().isTimerArmed());
    EXPECT_EQ(runtime->store().nextRefresh(), T0);
    runtime->store().runDue();
    ASSERT_EQ(fetcher.calls.size(), 1u);
    EXPECT_EQ(fetcher.calls[0]->place.name, "Paris");

    // Another place: the fetch for the old one is cancelled and the new one asked at once.
    settings.setEncodedLocation(encodeLocationSetting(london()));
    EXPECT_TRUE(fetcher.calls[0]->cancelled);
    EXPECT_EQ(runtime->store().nextRefresh(), T0);
    runtime->store().runDue();
    ASSERT_EQ(fetcher.calls.size(), 2u);
    EXPECT_EQ(fetcher.calls[1]->place.name, "London");

    // Forgetting the place stops everything.
    settings.setEncodedLocation(std::nullopt);
    EXPECT_TRUE(fetcher.calls[1]->cancelled);
    EXPECT_FALSE(runtime->store().isLoopRunning());
    EXPECT_FALSE(runtime->store().isTimerArmed());
}

TEST_F(WeatherRuntimeTest, TheOpenPanelWantsTheWeatherOnlyWhileItsHeaderShowsIt) {
    settings.setEncodedLocation(encodeLocationSetting(paris()));
    auto runtime = scripted();
    EXPECT_FALSE(runtime->store().isLoopRunning());
    runtime->setPanelOpen(true);  // the header shows the weather by default
    EXPECT_TRUE(runtime->store().isLoopRunning());
    settings.setShowInHeader(false);
    EXPECT_FALSE(runtime->store().isLoopRunning());
    settings.setShowInHeader(true);
    EXPECT_TRUE(runtime->store().isLoopRunning());
    runtime->setPanelOpen(false);
    EXPECT_FALSE(runtime->store().isLoopRunning());
}

TEST_F(WeatherRuntimeTest, GoingAwayCancelsTheFetchAndStopsListening) {
    settings.setEncodedLocation(encodeLocationSetting(paris()));
    settings.setShowInMenuBar(true);
    auto runtime = scripted();
    runtime->store().runDue();
    ASSERT_EQ(fetcher.open(), 1u);
    runtime.reset();
    EXPECT_TRUE(fetcher.calls[0]->cancelled);
    // The settings outlive the runtime; their changes must reach nothing.
    settings.setEncodedLocation(encodeLocationSetting(london()));
    EXPECT_EQ(fetcher.calls.size(), 1u);
}

TEST_F(WeatherRuntimeTest, TheLiveRuntimeFetchesFromTheServiceOnceAPlaceIsShown) {
    testing::LocalHttpServer server([](const testing::HttpRequest&) {
        return testing::HttpResponse{testing::HttpResponse::Kind::normal, 200,
                                     samples::forecastJson(T0 - 3600).dump()};
    });
    ScopedEnv forecast("TROTLET_OPEN_METEO_FORECAST", server.base("/v1/forecast"));
    ScopedEnv geocoding("TROTLET_OPEN_METEO_GEOCODING", server.base("/v1/search"));
    ScopedEnv cache("TROTLET_WEATHER_CACHE", std::nullopt);
    WeatherRuntime runtime(settings, true);
    EXPECT_FALSE(runtime.hasClient());
    settings.setEncodedLocation(encodeLocationSetting(paris()));
    settings.setShowInMenuBar(true);
    ASSERT_TRUE(
        testing::spinUntil([&] { return runtime.store().currentReport().has_value(); }, 10000));
    EXPECT_TRUE(runtime.hasClient());
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(server.requests()[0].path(), "/v1/forecast");
    EXPECT_EQ(runtime.store().menuBarText(false), "11°C");
    // The next refresh is half an hour away: the menu bar alone asks no more often.
    ASSERT_TRUE(runtime.store().nextRefresh());
    EXPECT_GT(*runtime.store().nextRefresh() - QDateTime::currentSecsSinceEpoch(), 1700);
}

}  // namespace
}  // namespace trotlet::weather
