#pragma once

#include <optional>
#include <string>

#include "weather/WeatherCondition.h"
#include "weather/WeatherReport.h"

namespace trotlet::weather {

// What the painted header sky and the greeting need from the weather at one moment.
struct WeatherSkyInput {
    std::optional<WeatherCondition> condition;  // none past the forecast's horizon
    int code = 0;
    double intensity = 0;
    double cloudCover = 0;
    bool isDay = true;
    bool sunUp = true;
    int placeHour = 0;  // 0-23 at the place
    std::string city;
};

// The place's hour comes from the report's UTC offset (the offset at fetch time; a DST switch
// inside the 36-hour window shifts it by an hour at most). The sun is up between the day's
// sunrise and sunset when the daily list covers the moment, else the record's day flag says.
WeatherSkyInput skyInputAt(const WeatherReport& report, UnixTime at);

// The place's local hour (0-23) at a moment, for a fixed UTC offset.
int localHour(UnixTime at, int utcOffsetSeconds);

}  // namespace trotlet::weather
