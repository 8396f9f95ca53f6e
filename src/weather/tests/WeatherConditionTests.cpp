#include <gtest/gtest.h>

#include "weather/WeatherCondition.h"
#include "weather/WeatherText.h"

namespace trotlet::weather {
namespace {

TEST(WeatherCondition, EveryDocumentedCodeMapsAsTabled) {
    struct Case {
        int code;
        WeatherCondition condition;
        const char* dayTitle;
        const char* nightTitle;
        double intensity;
        const char* daySymbol;
        const char* nightSymbol;
    } cases[] = {
        {0, WeatherCondition::clear, "Sunny", "Clear", 1.0, "sun.max.fill", "moon.stars.fill"},
        {1, WeatherCondition::mainlyClear, "Mostly clear", "Mostly clear", 1.0, "sun.max.fill", "moon.fill"},
        {2, WeatherCondition::partlyCloudy, "Partly cloudy", "Partly cloudy", 1.0, "cloud.sun.fill", "cloud.moon.fill"},
        {3, WeatherCondition::overcast, "Overcast", "Overcast", 1.0, "cloud.fill", "cloud.fill"},
        {45, WeatherCondition::fog, "Fog", "Fog", 0.8, "cloud.fog.fill", "cloud.fog.fill"},
        {48, WeatherCondition::fog, "Freezing fog", "Freezing fog", 1.0, "cloud.fog.fill", "cloud.fog.fill"},
        {51, WeatherCondition::drizzle, "Light drizzle", "Light drizzle", 0.35, "cloud.drizzle.fill", "cloud.drizzle.fill"},
        {53, WeatherCondition::drizzle, "Drizzle", "Drizzle", 0.45, "cloud.drizzle.fill", "cloud.drizzle.fill"},
        {55, WeatherCondition::drizzle, "Heavy drizzle", "Heavy drizzle", 0.55, "cloud.drizzle.fill", "cloud.drizzle.fill"},
        {56, WeatherCondition::drizzle, "Freezing drizzle", "Freezing drizzle", 0.45, "cloud.drizzle.fill", "cloud.drizzle.fill"},
        {57, WeatherCondition::drizzle, "Freezing drizzle", "Freezing drizzle", 0.55, "cloud.drizzle.fill", "cloud.drizzle.fill"},
        {61, WeatherCondition::rain, "Light rain", "Light rain", 0.7, "cloud.rain.fill", "cloud.rain.fill"},
        {63, WeatherCondition::rain, "Rain", "Rain", 0.9, "cloud.rain.fill", "cloud.rain.fill"},
        {65, WeatherCondition::rain, "Heavy rain", "Heavy rain", 1.0, "cloud.heavyrain.fill", "cloud.heavyrain.fill"},
        {66, WeatherCondition::rain, "Freezing rain", "Freezing rain", 0.7, "cloud.rain.fill", "cloud.rain.fill"},
        {67, WeatherCondition::rain, "Freezing rain", "Freezing rain", 1.0, "cloud.heavyrain.fill", "cloud.heavyrain.fill"},
        {71, WeatherCondition::snow, "Light snow", "Light snow", 0.5, "cloud.snow.fill", "cloud.snow.fill"},
        {73, WeatherCondition::snow, "Snow", "Snow", 0.75, "cloud.snow.fill", "cloud.snow.fill"},
        {75, WeatherCondition::snow, "Heavy snow", "Heavy snow", 1.0, "cloud.snow.fill", "cloud.snow.fill"},
        {77, WeatherCondition::snow, "Snow grains", "Snow grains", 0.4, "cloud.snow.fill", "cloud.snow.fill"},
        {80, WeatherCondition::rain, "Light showers", "Light showers", 0.7, "cloud.sun.rain.fill", "cloud.moon.rain.fill"},
        {81, WeatherCondition::rain, "Showers", "Showers", 0.9, "cloud.sun.rain.fill", "cloud.moon.rain.fill"},
        {82, WeatherCondition::rain, "Heavy showers", "Heavy showers", 1.0, "cloud.heavyrain.fill", "cloud.heavyrain.fill"},
        {85, WeatherCondition::snow, "Snow showers", "Snow showers", 0.6, "cloud.snow.fill", "cloud.snow.fill"},
        {86, WeatherCondition::snow, "Heavy snow showers", "Heavy snow showers", 1.0, "cloud.snow.fill", "cloud.snow.fill"},
        {95, WeatherCondition::thunderstorm, "Thunderstorm", "Thunderstorm", 1.0, "cloud.bolt.rain.fill", "cloud.bolt.rain.fill"},
        {96, WeatherCondition::thunderstorm, "Thunderstorm, hail", "Thunderstorm, hail", 1.0, "cloud.bolt.rain.fill", "cloud.bolt.rain.fill"},
        {99, WeatherCondition::thunderstorm, "Thunderstorm, hail", "Thunderstorm, hail", 1.0, "cloud.bolt.rain.fill", "cloud.bolt.rain.fill"},
        // Codes outside the table: below 4 is clear, the rest overcast.
        {-1, WeatherCondition::clear, "Clear", "Clear", 1.0, "sun.max.fill", "moon.stars.fill"},
        {100, WeatherCondition::overcast, "Overcast", "Overcast", 1.0, "cloud.fill", "cloud.fill"},
        {50, WeatherCondition::overcast, "Overcast", "Overcast", 1.0, "cloud.fill", "cloud.fill"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(conditionFromWmo(c.code), c.condition) << c.code;
        EXPECT_EQ(title(c.code, true), c.dayTitle) << c.code;
        EXPECT_EQ(title(c.code, false), c.nightTitle) << c.code;
        EXPECT_DOUBLE_EQ(intensity(c.code), c.intensity) << c.code;
        EXPECT_EQ(symbol(c.code, true), c.daySymbol) << c.code;
        EXPECT_EQ(symbol(c.code, false), c.nightSymbol) << c.code;
        EXPECT_NE(symbolIconName(c.daySymbol), "") << c.code;
    }
}

TEST(WeatherCondition, RawNamesAndWetness) {
    for (size_t i = 0; i < WeatherConditionNames.size(); ++i) {
        auto c = static_cast<WeatherCondition>(i);
        EXPECT_EQ(conditionFromRawName(rawName(c)), c);
        bool wet = c == WeatherCondition::drizzle || c == WeatherCondition::rain || c == WeatherCondition::thunderstorm;
        EXPECT_EQ(isWet(c), wet) << rawName(c);
    }
    EXPECT_FALSE(conditionFromRawName("sleet"));
}

TEST(WeatherText, Ages) {
    struct Case {
        double seconds;
        const char* age;
        const char* chip;
    } cases[] = {{0, "just now", "1m"},       {10, "just now", "1m"},      {89, "just now", "1m"},
                 {90, "2 min ago", "2m"},     {149, "2 min ago", "2m"},    {150, "3 min ago", "3m"},
                 {3599, "60 min ago", "60m"}, {3600, "1 h ago", "1h"},     {3 * 3600, "3 h ago", "3h"},
                 {129599, "36 h ago", "36h"}, {129600, "2 d ago", "2d"},   {5 * 86400, "5 d ago", "5d"}};
    for (const auto& c : cases) {
        EXPECT_EQ(age(c.seconds), c.age) << c.seconds;
        EXPECT_EQ(shortAge(c.seconds), c.chip) << c.seconds;
    }
}

TEST(WeatherText, WindCompassAndTemperature) {
    EXPECT_TRUE(usesImperialWind("US"));
    EXPECT_TRUE(usesImperialWind("en_GB.UTF-8"));
    EXPECT_TRUE(usesImperialWind("en-US"));
    EXPECT_FALSE(usesImperialWind("de_DE.UTF-8"));
    EXPECT_FALSE(usesImperialWind("C.UTF-8"));
    EXPECT_EQ(wind(16.09344, true), "10 mph");
    EXPECT_EQ(wind(14.5, false), "15 km/h");
    EXPECT_EQ(wind(0, false), "0 km/h");
    struct Case {
        double degrees;
        const char* point;
    } cases[] = {{0, "N"}, {22.4, "N"}, {22.5, "NE"}, {90, "E"}, {180, "S"}, {247.5, "W"},
                 {337.4, "NW"}, {337.5, "N"}, {350, "N"}, {360, "N"}, {-10, "N"}, {-90, "W"}, {725, "N"}};
    for (const auto& c : cases) EXPECT_EQ(compass(c.degrees), c.point) << c.degrees;
    EXPECT_EQ(temperatureText(11.5, false), "12°C");
    EXPECT_EQ(temperatureText(-0.4, false), "0°C");
    EXPECT_EQ(temperatureText(37, true), "99°F");
    EXPECT_EQ(temperatureText(-40, true), "-40°F");
}

TEST(WeatherText, GreetingPhrases) {
    using W = WeatherCondition;
    struct Case {
        std::optional<W> condition;
        int hour;
        bool sunUp;
        const char* phrase;
    } cases[] = {
        {std::nullopt, 2, false, "Quiet night"},   {std::nullopt, 9, true, "Good morning"},
        {std::nullopt, 18, true, "Good evening"},  {W::clear, 13, true, "Sunny afternoon"},
        {W::mainlyClear, 7, false, "Clear morning"}, {W::clear, 19, false, "Clear evening"},
        {W::partlyCloudy, 23, false, "Quiet night"}, {W::partlyCloudy, 15, true, "Good afternoon"},
        {W::overcast, 8, true, "Grey morning"},    {W::fog, 6, true, "Foggy morning"},
        {W::drizzle, 16, true, "Drizzly afternoon"}, {W::rain, 23, false, "Rainy night"},
        {W::thunderstorm, 20, false, "Stormy evening"}, {W::snow, 10, true, "Snow day"},
        {W::snow, 19, false, "Snowy evening"},     {W::snow, 4, false, "Snowy night"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(greetingPhrase(c.condition, partOfDay(c.hour), c.sunUp), c.phrase) << c.phrase;
    EXPECT_EQ(partOfDay(5), PartOfDay::morning);
    EXPECT_EQ(partOfDay(4), PartOfDay::night);
    EXPECT_EQ(partOfDay(12), PartOfDay::afternoon);
    EXPECT_EQ(partOfDay(17), PartOfDay::evening);
    EXPECT_EQ(partOfDay(22), PartOfDay::night);
}

}  // namespace
}  // namespace trotlet::weather
