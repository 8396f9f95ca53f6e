#include "snapshot/SceneFixtures.h"

#include "shop/Calendar.h"
#include "snapshot/SceneRig.h"

namespace trotlet::snapshot {
namespace {

constexpr std::int64_t berlinOffset = 2 * 3600;
// 2026-10-01 00:00 in Berlin.
constexpr std::int64_t dayStart = 1790805600;

weather::UnixTime at(int hour, int minute) { return dayStart + hour * 3600 + minute * 60; }

shop::DailyCounters day(const char* key, double activeH, std::int64_t fish, double km,
                        double asleepH, std::int64_t opens, std::int64_t golden, double peak,
                        const char* process, double hottest, std::int64_t busy) {
    shop::DailyCounters d;
    d.day = key;
    d.activeSeconds = activeH * 3600;
    d.fishEarned = fish;
    d.metersRun = km * 1000;
    d.secondsAsleep = asleepH * 3600;
    d.panelOpens = opens;
    d.goldenFishCaught = golden;
    d.goldenFishSpawned = golden;
    d.peakCPU = peak;
    d.peakCPUAt = 0;
    d.peakCPUProcess = process;
    d.hottestCPU = hottest;
    d.panicMoments = busy;
    return d;
}

}  // namespace

weather::WeatherReport sceneForecast(int code) {
    weather::WeatherReport r;
    r.location.id = 2950159;
    r.location.name = "Berlin";
    r.location.country = "Germany";
    r.location.countryCode = "DE";
    r.location.latitude = 52.52;
    r.location.longitude = 13.41;
    r.location.timezone = "Europe/Berlin";
    r.utcOffsetSeconds = int(berlinOffset);
    r.fetchedAt = at(14, 20);  // ten minutes before the scenes' clock
    r.current.time = at(0, 0);
    r.current.code = code;
    r.current.temperatureC = 14;
    r.current.cloudCover = 60;
    // An hourly slot for every hour stands in for the current record through the day.
    for (int h = 0; h < 24; ++h) {
        weather::WeatherHour hour;
        hour.time = at(h, 0);
        hour.code = code;
        hour.temperatureC = 14;
        hour.cloudCover = 60;
        hour.isDay = h >= 7 && h < 19;
        r.hourly.push_back(hour);
    }
    weather::WeatherDay d;
    d.date = at(0, 0);
    d.code = code;
    d.maxC = 17;
    d.minC = 9;
    d.sunrise = at(7, 10);
    d.sunset = at(18, 52);
    r.daily.push_back(d);
    return r;
}

metrics::Timestamp scenePhaseTime(sky::SkyPhase phase, bool withForecast) {
    weather::UnixTime t = at(13, 0);
    switch (phase) {
        case sky::SkyPhase::dawn:
            t = withForecast ? at(7, 16) : at(6, 12);
            break;
        case sky::SkyPhase::day:
            t = at(13, 0);
            break;
        case sky::SkyPhase::dusk:
            t = withForecast ? at(18, 46) : at(17, 52);
            break;
        case sky::SkyPhase::night:
            t = at(23, 10);
            break;
    }
    return metrics::Timestamp(std::chrono::seconds(t));
}

int sceneCode(weather::WeatherCondition condition) {
    using weather::WeatherCondition;
    switch (condition) {
        case WeatherCondition::clear:
            return 0;
        case WeatherCondition::mainlyClear:
            return 1;
        case WeatherCondition::partlyCloudy:
            return 2;
        case WeatherCondition::overcast:
            return 3;
        case WeatherCondition::fog:
            return 45;
        case WeatherCondition::drizzle:
            return 53;
        case WeatherCondition::rain:
            return 63;
        case WeatherCondition::snow:
            return 73;
        case WeatherCondition::thunderstorm:
            return 95;
    }
    return 0;
}

reports::PawReportInputs scenePawInputs() {
    reports::PawReportInputs in;
    in.currentDay = "2026-10-01";
    in.pastDays = {
        day("2026-09-25", 5.2, 31, 4.1, 1.3, 9, 1, 0.88, "cargo", 78, 2),
        day("2026-09-26", 1.1, 7, 0.9, 3.7, 3, 0, 0.42, "", 61, 0),
        day("2026-09-28", 6.7, 40, 5.6, 0.8, 14, 2, 0.97, "rustc", 86, 5),
        day("2026-09-29", 4.3, 26, 3.2, 1.2, 11, 0, 0.76, "code", 74, 1),
        day("2026-09-30", 5.8, 35, 4.4, 0.7, 12, 1, 0.91, "firefox", 81, 3),
    };
    shop::DailyCounters& t = in.today;
    t.day = "2026-10-01";
    t.activeSeconds = 3 * 3600 + 35 * 60;
    t.metersRun = 3420;
    t.secondsAsleep = 25 * 60;
    t.panelOpens = 7;
    t.goldenFishSpawned = 1;
    t.peakCPU = 0.98;
    t.peakCPUAt = double(at(11, 42));
    t.peakCPUProcess = "firefox";
    t.hottestCPU = 83;
    t.hottestAt = double(at(11, 43));
    t.panicMoments = 4;
    in.fishEarnedToday = 36;
    in.lifetime.metersRun = 31640;
    in.lifetime.metersByMascot = {{"cat", 27900}, {"shiba", 3740}};
    return in;
}

reports::PawReport scenePawReport() {
    return reports::buildPawReport(scenePawInputs(), shop::FixedOffsetCalendar(berlinOffset));
}

}  // namespace trotlet::snapshot
