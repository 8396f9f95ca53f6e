#include "sky/SunClock.h"

#include <algorithm>
#include <cmath>

namespace trotlet::sky {
namespace {

constexpr double dayMinutes = 1440;
constexpr double twilightMinutes = 90;  // from sunrise or sunset to the darkest night
constexpr double dayFrom = 0.3;
constexpr double nightBelow = -0.45;

double minuteOf(weather::UnixTime t, int offsetSeconds) {
    const double local = double(t) + offsetSeconds;
    return std::fmod(std::fmod(local, 86400.0) + 86400.0, 86400.0) / 60.0;
}

// Minutes from a to b around the clock, 0…720.
double around(double a, double b) {
    const double d = std::fabs(a - b);
    return std::min(d, dayMinutes - d);
}

}  // namespace

DayLight dayLightAt(const weather::WeatherReport* report, weather::UnixTime now,
                    int fallbackOffsetSeconds) {
    DayLight light;
    if (!report) {
        light.minuteOfDay = minuteOf(now, fallbackOffsetSeconds);
        return light;
    }
    light.minuteOfDay = minuteOf(now, report->utcOffsetSeconds);
    for (const auto& day : report->daily) {
        if (now < day.date || now >= day.date + 86400) continue;
        const double rise = double(day.sunrise - day.date) / 60;
        const double set = double(day.sunset - day.date) / 60;
        const bool inDay = rise >= 0 && set <= dayMinutes + 1;
        // No sunset after the sunrise within the day, or a sun up from midnight to midnight:
        // the sun does not cross the horizon today.
        if (!inDay || set <= rise || (rise <= 1 && set >= dayMinutes - 1)) {
            const auto conditions = weather::conditionsAt(*report, now);
            const bool up = conditions ? conditions->isDay : report->current.isDay;
            light.kind = up ? DayLight::Kind::polarDay : DayLight::Kind::polarNight;
        } else {
            light.sunrise = rise;
            light.sunset = set;
        }
        return light;
    }
    return light;
}

SunClock sunClock(const DayLight& light) {
    SunClock c;
    const double m = light.minuteOfDay;
    if (light.kind == DayLight::Kind::polarDay) {
        // The midnight sun: low all day, a little higher at noon.
        c.elevation = 0.45 + 0.15 * std::cos((m - 720) / dayMinutes * 2 * M_PI);
        c.progress = m / dayMinutes;
        c.phase = SkyPhase::day;
        return c;
    }
    if (light.kind == DayLight::Kind::polarNight) {
        c.elevation = -0.8;
        c.progress = m / dayMinutes;
        c.phase = SkyPhase::night;
        return c;
    }
    const double rise = light.sunrise, set = light.sunset;
    if (m >= rise && m <= set) {
        c.progress = (m - rise) / std::max(1.0, set - rise);
        c.elevation = std::sin(M_PI * c.progress);
    } else {
        const double nightLength = dayMinutes - (set - rise);
        const double sinceSunset = std::fmod(m - set + dayMinutes, dayMinutes);
        c.progress = sinceSunset / std::max(1.0, nightLength);
        c.elevation = -std::min(1.0, std::min(around(m, rise), around(m, set)) / twilightMinutes);
    }
    if (c.elevation >= dayFrom)
        c.phase = SkyPhase::day;
    else if (c.elevation < nightBelow)
        c.phase = SkyPhase::night;
    else
        c.phase = around(m, rise) <= around(m, set) ? SkyPhase::dawn : SkyPhase::dusk;
    return c;
}

SunClock sunClockFor(SkyPhase phase) {
    switch (phase) {
        case SkyPhase::dawn:
            return {SkyPhase::dawn, 0.08, 0.03};
        case SkyPhase::day:
            return {SkyPhase::day, 0.9, 0.4};
        case SkyPhase::dusk:
            return {SkyPhase::dusk, 0.06, 0.98};
        case SkyPhase::night:
            return {SkyPhase::night, -1, 0.4};
    }
    return {};
}

double moonPhase(weather::UnixTime at) {
    // A new moon on 6 January 2000 at 18:14 UTC, and the mean synodic month.
    constexpr double knownNewMoon = 947182440;
    constexpr double synodicSeconds = 29.530588853 * 86400;
    const double age = std::fmod(double(at) - knownNewMoon, synodicSeconds);
    return (age < 0 ? age + synodicSeconds : age) / synodicSeconds;
}

}  // namespace trotlet::sky
