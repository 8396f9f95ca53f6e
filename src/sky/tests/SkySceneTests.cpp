#include <gtest/gtest.h>

#include "sky/SkyScene.h"

namespace trotlet::sky {
namespace {

using mascot::MascotMood;
using weather::WeatherCondition;

// 2026-10-01 00:00 at UTC+2 (Berlin in summer time).
constexpr weather::UnixTime berlinMidnight = 1790805600;
constexpr int berlin = 7200;

weather::UnixTime berlinAt(int hour, int minute = 0) {
    return berlinMidnight + hour * 3600 + minute * 60;
}

// A forecast for one local day at a place `offset` seconds from UTC: the given code all day,
// sunrise and sunset as minutes after local midnight (none: a polar day without either).
weather::WeatherReport forecast(int code, int offset, int sunrise = 7 * 60 + 10,
                                int sunset = 18 * 60 + 52, bool isDay = true) {
    weather::WeatherReport r;
    r.location.name = "Berlin";
    r.utcOffsetSeconds = offset;
    const weather::UnixTime midnight = berlinMidnight + berlin - offset;
    for (int h = -12; h < 36; ++h)
        r.hourly.push_back({midnight + h * 3600, 14, 14, 60, code, isDay, 0, 50, 10, 0});
    r.current = {midnight - 86400, 14, 14, 60, code, isDay, 10, 0, 0, 50};
    for (int d = -1; d <= 1; ++d)
        r.daily.push_back({midnight + d * 86400, code, 17, 9, midnight + d * 86400 + sunrise * 60,
                           midnight + d * 86400 + sunset * 60, 0});
    return r;
}

SkyScene sceneAt(const weather::WeatherReport* report, weather::UnixTime now,
                 MascotMood mood = MascotMood::running, bool dark = false,
                 bool reduceMotion = false) {
    SkyInputs in;
    in.report = report;
    in.now = now;
    in.localOffsetSeconds = berlin;
    in.mood = mood;
    in.dark = dark;
    in.reduceMotion = reduceMotion;
    return skyScene(in);
}

TEST(SkyScene, PhasesFollowTheSunAtThePlaceInItsOwnZone) {
    const auto berlinSky = forecast(0, berlin);
    const auto tokyoSky = forecast(0, 9 * 3600, 5 * 60 + 40, 17 * 60 + 25);
    struct Case {
        const char* name;
        const weather::WeatherReport* report;
        weather::UnixTime at;
        SkyPhase phase;
    };
    const Case cases[] = {
        {"Berlin before dawn", &berlinSky, berlinAt(3), SkyPhase::night},
        {"Berlin at sunrise", &berlinSky, berlinAt(7, 16), SkyPhase::dawn},
        {"Berlin at noon", &berlinSky, berlinAt(13), SkyPhase::day},
        {"Berlin at sunset", &berlinSky, berlinAt(18, 46), SkyPhase::dusk},
        {"Berlin after dusk", &berlinSky, berlinAt(19, 20), SkyPhase::dusk},
        {"Berlin late", &berlinSky, berlinAt(23, 10), SkyPhase::night},
        // 13:00 in Berlin is 20:00 in Tokyo, well after its sunset.
        {"Tokyo from Berlin's afternoon", &tokyoSky, berlinAt(13), SkyPhase::night},
        // 00:30 in Berlin is 07:30 in Tokyo, two hours after its sunrise.
        {"Tokyo from Berlin's night", &tokyoSky, berlinAt(24, 30), SkyPhase::day},
        {"no weather at noon", nullptr, berlinAt(12), SkyPhase::day},
        {"no weather at six", nullptr, berlinAt(6, 10), SkyPhase::dawn},
        {"no weather at night", nullptr, berlinAt(22), SkyPhase::night},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(sceneAt(c.report, c.at).clock.phase, c.phase);
    }
}

TEST(SkyScene, APolarDayHasNoSunsetAndAPolarNightNoSunrise) {
    // Open-Meteo gives a day without a sunset as a sun up from midnight to midnight.
    const auto summer = forecast(0, berlin, 0, 24 * 60);
    const auto winter = forecast(0, berlin, 0, 0, false);
    for (int hour : {1, 12, 23}) {
        SCOPED_TRACE(hour);
        const SkyScene day = sceneAt(&summer, berlinAt(hour));
        EXPECT_TRUE(day.polar);
        EXPECT_EQ(day.clock.phase, SkyPhase::day);
        EXPECT_TRUE(day.sun);
        const SkyScene night = sceneAt(&winter, berlinAt(hour));
        EXPECT_TRUE(night.polar);
        EXPECT_EQ(night.clock.phase, SkyPhase::night);
        EXPECT_FALSE(night.sun);
    }
}

TEST(SkyScene, ConditionsBringTheirWeatherScaledByIntensity) {
    struct Case {
        int code;
        WeatherCondition condition;
        Precipitation precipitation;
        double amount;
    };
    const Case cases[] = {
        {0, WeatherCondition::clear, Precipitation::none, 0},
        {51, WeatherCondition::drizzle, Precipitation::drizzle, 0.35},
        {61, WeatherCondition::rain, Precipitation::rain, 0.7},
        {65, WeatherCondition::rain, Precipitation::rain, 1.0},
        {71, WeatherCondition::snow, Precipitation::snow, 0.5},
        {95, WeatherCondition::thunderstorm, Precipitation::rain, 1.0},
        {45, WeatherCondition::fog, Precipitation::none, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        const auto report = forecast(c.code, berlin);
        const SkyScene s = sceneAt(&report, berlinAt(13));
        EXPECT_EQ(s.condition, c.condition);
        EXPECT_EQ(s.precipitation, c.precipitation);
        EXPECT_DOUBLE_EQ(s.amount, c.amount);
        EXPECT_EQ(s.lightning, c.condition == WeatherCondition::thunderstorm);
        EXPECT_EQ(s.fogAlpha > 0, c.condition == WeatherCondition::fog);
    }
    const auto overcast = forecast(3, berlin), clear = forecast(0, berlin);
    EXPECT_GT(sceneAt(&overcast, berlinAt(13)).cloudiness,
              sceneAt(&clear, berlinAt(13)).cloudiness + 0.5);
    EXPECT_FALSE(sceneAt(&overcast, berlinAt(13)).sun);
    // Past the forecast's horizon the sky is the hour's alone.
    EXPECT_FALSE(sceneAt(&overcast, berlinAt(13) + 3 * 86400).condition);
}

// The header's text must read over every sky: every condition and none, every phase, both
// schemes, every mood, through lightning at its brightest, on the chips too.
TEST(SkyScene, TextKeepsItsContrastOverEverySky) {
    std::vector<std::optional<int>> codes = {std::nullopt, 0, 1, 2, 3, 45, 53, 63, 73, 95};
    const weather::UnixTime moments[] = {berlinAt(3),  berlinAt(7, 16),  berlinAt(7, 45),
                                         berlinAt(13), berlinAt(18, 46), berlinAt(19, 15),
                                         berlinAt(23)};
    for (const auto& code : codes) {
        const auto report = forecast(code.value_or(0), berlin);
        for (auto at : moments)
            for (bool dark : {false, true})
                for (std::size_t m = 0; m < mascot::MascotMoodNames.size(); ++m) {
                    const SkyScene s = sceneAt(code ? &report : nullptr, at, MascotMood(m), dark);
                    SCOPED_TRACE(testing::Message()
                                 << "code " << code.value_or(-1) << " at " << at << " dark " << dark
                                 << " mood " << mascot::MascotMoodNames[m]);
                    for (const Rgb& bg : textBackgrounds(s, 0.01)) {
                        ASSERT_GE(contrast(s.ink.text, bg), minimumTextContrast);
                        ASSERT_GE(contrast(s.ink.textSecondary, bg), minimumTextContrast);
                        if (s.lightning) {
                            ASSERT_GE(contrast(s.ink.text, over(bg, Rgb{1, 1, 1}, s.flashAlpha)),
                                      minimumTextContrast);
                        }
                    }
                    for (const Rgb& bg : chipBackgrounds(s, 0.01))
                        ASSERT_GE(contrast(s.ink.text, bg), minimumTextContrast);
                    ASSERT_LE(s.framesPerSecond, maxSkyFramesPerSecond);
                }
    }
}

TEST(SkyScene, MotionIsModestAndStopsWhenReduced) {
    const auto storm = forecast(95, berlin), clear = forecast(0, berlin),
               rain = forecast(65, berlin);
    EXPECT_EQ(sceneAt(&clear, berlinAt(13)).framesPerSecond, 0);  // nothing to move: one picture
    EXPECT_GT(sceneAt(&rain, berlinAt(13)).framesPerSecond, 0);
    const SkyScene reduced = sceneAt(&storm, berlinAt(13), MascotMood::panic, false, true);
    EXPECT_EQ(reduced.framesPerSecond, 0);
    EXPECT_FALSE(reduced.lightning);  // no flashes at all under reduced motion
}

TEST(SkyScene, AHotMascotWarmsTheSkyAndASleepingOneCalmsIt) {
    const auto report = forecast(2, berlin);
    const SkyScene calm = sceneAt(&report, berlinAt(13));
    const SkyScene panic = sceneAt(&report, berlinAt(13), MascotMood::panic);
    const SkyScene hot = sceneAt(&report, berlinAt(13), MascotMood::overheated);
    const SkyScene asleep = sceneAt(&report, berlinAt(13), MascotMood::sleeping);
    auto warmth = [](const SkyScene& s) { return s.skyAt(0.8).r - s.skyAt(0.8).b; };
    EXPECT_GT(warmth(panic), warmth(calm) + 0.05);
    EXPECT_GT(warmth(hot), warmth(calm) + 0.05);
    EXPECT_GT(panic.motionScale, 1.5);
    EXPECT_LT(asleep.motionScale, 1.0);
    EXPECT_LT(asleep.framesPerSecond, calm.framesPerSecond);
}

TEST(SkyScene, TheMoonKeepsItsCalendar) {
    EXPECT_NEAR(moonPhase(1706205240), 0.5, 0.04);  // full moon, 25 January 2024 17:54 UTC
    const double fresh = moonPhase(1704880560);     // new moon, 11 January 2024 11:57 UTC
    EXPECT_LT(std::min(fresh, 1 - fresh), 0.04);    // the mean month, within a day
}

}  // namespace
}  // namespace trotlet::sky
