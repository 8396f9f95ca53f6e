#include "weather/WeatherSky.h"

namespace trotlet::weather {

int localHour(UnixTime at, int utcOffsetSeconds) {
    UnixTime local = at + utcOffsetSeconds;
    UnixTime secondsOfDay = ((local % 86400) + 86400) % 86400;
    return static_cast<int>(secondsOfDay / 3600);
}

WeatherSkyInput skyInputAt(const WeatherReport& report, UnixTime at) {
    WeatherSkyInput sky;
    sky.city = report.location.name;
    sky.placeHour = localHour(at, report.utcOffsetSeconds);
    auto conditions = conditionsAt(report, at);
    if (conditions) {
        sky.condition = conditionFromWmo(conditions->code);
        sky.code = conditions->code;
        sky.intensity = intensity(conditions->code);
        sky.cloudCover = conditions->cloudCover;
        sky.isDay = conditions->isDay;
    } else {
        const int h = sky.placeHour;
        sky.isDay = h >= 6 && h < 18;
    }
    sky.sunUp = sky.isDay;
    for (const auto& day : report.daily) {
        if (at >= day.date && at < day.date + 86400) {
            sky.sunUp = at >= day.sunrise && at < day.sunset;
            break;
        }
    }
    return sky;
}

}  // namespace trotlet::weather
