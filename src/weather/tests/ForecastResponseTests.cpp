#include <gtest/gtest.h>

#include <limits>

#include "weather/ForecastResponse.h"
#include "weather/OpenMeteoRequests.h"
#include "weather/WeatherLocation.h"
#include "weather/WeatherReport.h"
#include "weather/tests/OpenMeteoSamples.h"

namespace trotlet::weather {
namespace {

constexpr UnixTime kFirst = 1795852800;  // 2026-11-28 08:00 UTC

WeatherLocation paris(std::string zone = "Europe/Paris") {
    return {2988507, "Paris", "Île-de-France", "France", "FR", 48.85341, 2.3488, std::move(zone)};
}

TEST(OpenMeteoRequests, SearchURLHasExactlyTheItemsInOrder) {
    EXPECT_EQ(searchURL(kDefaultGeocodingBase, "Paris", "en"),
              "https://geocoding-api.open-meteo.com/v1/search?name=Paris&count=8&language=en&format=json");
    // Text is sent as UTF-8, percent-encoded; spaces never become "+".
    EXPECT_EQ(searchURL("http://127.0.0.1:9/v1/search", "Hà Nội", "vi"),
              "http://127.0.0.1:9/v1/search?name=H%C3%A0%20N%E1%BB%99i&count=8&language=vi&format=json");
    EXPECT_EQ(searchURL("http://x/v1/search", "a&b=c", "en"),
              "http://x/v1/search?name=a%26b%3Dc&count=8&language=en&format=json");
}

TEST(OpenMeteoRequests, ForecastURLRoundsCoordinatesAndAsksForTheZone) {
    WeatherLocation place = paris("");
    place.latitude = 48.853419999;
    place.longitude = -2.34884999;
    EXPECT_EQ(forecastURL(kDefaultForecastBase, place),
              "https://api.open-meteo.com/v1/forecast?latitude=48.8534&longitude=-2.3488"
              "&current=temperature_2m,apparent_temperature,relative_humidity_2m,weather_code,is_day,"
              "wind_speed_10m,wind_direction_10m,precipitation,cloud_cover"
              "&hourly=temperature_2m,apparent_temperature,relative_humidity_2m,weather_code,is_day,"
              "precipitation_probability,cloud_cover,wind_speed_10m,wind_direction_10m"
              "&daily=weather_code,temperature_2m_max,temperature_2m_min,sunrise,sunset,"
              "precipitation_probability_max"
              "&timeformat=unixtime&timezone=auto&forecast_days=7&forecast_hours=36&past_hours=1");
    auto items = forecastQueryItems(paris("Asia/Tokyo"));
    ASSERT_EQ(items.size(), 10u);
    EXPECT_EQ(items[6], (std::pair<std::string, std::string>{"timezone", "Asia/Tokyo"}));
}

TEST(ForecastResponse, DecodesTheDocumentedAnswer) {
    std::string body = samples::forecastJson(kFirst).dump();
    auto report = decodeForecast(body, paris(""), kFirst + 5000);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->location.timezone, "Europe/Paris");  // filled in from the answer
    EXPECT_EQ(report->fetchedAt, kFirst + 5000);
    EXPECT_EQ(report->utcOffsetSeconds, 3600);
    EXPECT_EQ(report->current.time, kFirst + 4500);
    EXPECT_DOUBLE_EQ(report->current.temperatureC, 11.4);
    EXPECT_EQ(report->current.code, 61);
    EXPECT_TRUE(report->current.isDay);
    EXPECT_DOUBLE_EQ(report->current.precipitationMm, 0.3);
    ASSERT_EQ(report->hourly.size(), 37u);
    EXPECT_EQ(report->hourly[36].time, kFirst + 36 * 3600);
    EXPECT_DOUBLE_EQ(report->hourly[2].precipitationProbability, 70);
    EXPECT_FALSE(report->hourly[12].isDay);
    ASSERT_EQ(report->daily.size(), 3u);
    EXPECT_DOUBLE_EQ(report->daily[0].maxC, 13.1);
    EXPECT_EQ(report->daily[1].sunrise - report->daily[1].date, 7 * 3600);
    EXPECT_DOUBLE_EQ(report->daily[2].precipitationProbability, 40);

    // A place that already names its zone keeps it.
    auto kept = decodeForecast(body, paris("Europe/London"), 0);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->location.timezone, "Europe/London");
}

TEST(ForecastResponse, RejectsAnythingButAWholeAnswer) {
    auto base = samples::forecastJson(kFirst);
    std::vector<std::pair<std::string, std::function<void(nlohmann::json&)>>> faults = {
        {"garbage", nullptr},
        {"no current", [](auto& j) { j.erase("current"); }},
        {"current missing a field", [](auto& j) { j["current"].erase("cloud_cover"); }},
        {"string temperature", [](auto& j) { j["current"]["temperature_2m"] = "11"; }},
        {"short hourly column", [](auto& j) { j["hourly"]["cloud_cover"].erase(0); }},
        {"null in hourly", [](auto& j) { j["hourly"]["temperature_2m"][3] = nullptr; }},
        {"daily missing sunset", [](auto& j) { j["daily"].erase("sunset"); }},
        {"no offset", [](auto& j) { j.erase("utc_offset_seconds"); }},
        {"an hour in 2538", [](auto& j) { j["hourly"]["time"][2] = 17955000005LL; }},
        {"current before 1970", [](auto& j) { j["current"]["time"] = -3600; }},
        {"sunset in 2262", [](auto& j) { j["daily"]["sunset"][0] = 9223372036LL; }},
        {"array at top", [](auto& j) { j = nlohmann::json::array({1, 2}); }},
    };
    for (const auto& [name, fault] : faults) {
        std::string body;
        if (fault) {
            auto j = base;
            fault(j);
            body = j.dump();
        } else {
            body = "<html>502 Bad Gateway</html>";
        }
        EXPECT_FALSE(decodeForecast(body, paris(), 0)) << name;
    }
    std::string whole = base.dump();
    EXPECT_FALSE(decodeForecast(whole.substr(0, whole.size() / 2), paris(), 0)) << "truncated";
}

TEST(WeatherReport, CacheJsonRoundTripsExactly) {
    auto report = decodeForecast(samples::forecastJson(kFirst).dump(), paris(""), kFirst + 10);
    ASSERT_TRUE(report);
    auto j = reportToJson(*report);
    auto again = reportFromJson(nlohmann::json::parse(j.dump()));
    ASSERT_TRUE(again);
    EXPECT_EQ(*again, *report);
    // Field order is the documented one.
    std::vector<std::string> keys;
    for (auto it = j.begin(); it != j.end(); ++it) keys.push_back(it.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"location", "fetchedAt", "utcOffsetSeconds", "current",
                                              "hourly", "daily"}));
    auto broken = nlohmann::json::parse(j.dump());
    broken["hourly"][0].erase("windKmh");
    EXPECT_FALSE(reportFromJson(broken));
    // Times outside 1970-2200 make no cache either: the age arithmetic on them would overflow.
    const struct {
        const char* pointer;
        std::int64_t value;
        bool loads;
    } times[] = {
        {"/fetchedAt", 0, true},
        {"/fetchedAt", 7289654399, true},
        {"/fetchedAt", 7289654400, false},
        {"/current/time", -1, false},
        {"/hourly/0/time", std::numeric_limits<std::int64_t>::min(), false},
        {"/daily/0/sunset", 70'000'000'000, false},
    };
    for (const auto& t : times) {
        auto edited = nlohmann::json::parse(j.dump());
        edited[nlohmann::json::json_pointer(t.pointer)] = t.value;
        EXPECT_EQ(reportFromJson(edited).has_value(), t.loads) << t.pointer << " = " << t.value;
    }
}

TEST(WeatherLocation, SettingEncodingRoundTripsAndRejectsJunk) {
    WeatherLocation hanoi{1581130, "Hà Nội", std::nullopt, "Việt Nam", "VN", 21.0245, 105.84117, ""};
    auto decoded = decodeLocationSetting(encodeLocationSetting(hanoi));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, hanoi);
    for (std::string junk : {"", "null", "{}", "[1]", R"({"id":1,"name":"X","latitude":"1","longitude":2})",
                             "{\"id\":1,"})
        EXPECT_FALSE(decodeLocationSetting(junk)) << junk;
}

TEST(WeatherLocation, SamePlaceByIdElseByCoordinates) {
    WeatherLocation a = paris(), b = paris();
    b.latitude += 1;  // same id wins over coordinates
    EXPECT_TRUE(samePlace(a, b));
    b.id = 42;
    EXPECT_FALSE(samePlace(a, b));
    WeatherLocation c = paris();
    c.id = 0;
    c.latitude += 0.009;
    EXPECT_TRUE(samePlace(a, c));
    c.latitude += 0.002;
    EXPECT_FALSE(samePlace(a, c));
}

TEST(WeatherReport, HorizonUsesCurrentThenHourlyThenNothing) {
    auto report = decodeForecast(samples::forecastJson(kFirst).dump(), paris(), kFirst);
    ASSERT_TRUE(report);
    const UnixTime now = report->current.time;  // kFirst + 4500
    struct Case {
        UnixTime offset;
        bool present;
        bool fromHourly;
        UnixTime slot;
    } cases[] = {
        {0, true, false, 0},
        {2699, true, false, 0},
        {2700, true, true, kFirst + 7200},     // 45 min: the 02:00 slot stands in
        {3 * 3600, true, true, kFirst + 4 * 3600},  // 3 h after the fetch
    };
    for (const auto& c : cases) {
        auto cond = conditionsAt(*report, now + c.offset);
        ASSERT_EQ(cond.has_value(), c.present) << c.offset;
        EXPECT_EQ(cond->fromHourly, c.fromHourly) << c.offset;
        if (c.fromHourly) {
            EXPECT_EQ(cond->time, c.slot) << c.offset;
        }
    }
    const UnixTime last = report->hourly.back().time;
    EXPECT_TRUE(conditionsAt(*report, last + 3599));
    EXPECT_FALSE(conditionsAt(*report, last + 3600));
    // Before the first slot and past the current horizon: nothing is made up.
    WeatherReport gap = *report;
    gap.hourly.erase(gap.hourly.begin(), gap.hourly.begin() + 5);
    EXPECT_FALSE(conditionsAt(gap, now + 2800));
}

}  // namespace
}  // namespace trotlet::weather
