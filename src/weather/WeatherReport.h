#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "weather/WeatherLocation.h"

namespace trotlet::weather {

// Seconds since 1970 (UTC). Every time in the weather subsystem is one of these; the
// forecast is requested with unixtime, so the answer needs no date parsing.
using UnixTime = std::int64_t;

// Temperatures stay in °C and wind in km/h; units change only when formatted.
struct WeatherCurrent {
    UnixTime time = 0;
    double temperatureC = 0;
    double apparentC = 0;
    double humidity = 0;
    int code = 0;
    bool isDay = true;
    double windKmh = 0;
    double windDirection = 0;
    double precipitationMm = 0;
    double cloudCover = 0;
    bool operator==(const WeatherCurrent&) const = default;
};

struct WeatherHour {
    UnixTime time = 0;
    double temperatureC = 0;
    double apparentC = 0;
    double humidity = 0;
    int code = 0;
    bool isDay = true;
    double precipitationProbability = 0;
    double cloudCover = 0;
    double windKmh = 0;
    double windDirection = 0;
    bool operator==(const WeatherHour&) const = default;
};

struct WeatherDay {
    UnixTime date = 0;  // the place's local midnight
    int code = 0;
    double maxC = 0;
    double minC = 0;
    UnixTime sunrise = 0;
    UnixTime sunset = 0;
    double precipitationProbability = 0;  // the day's maximum
    bool operator==(const WeatherDay&) const = default;
};

struct WeatherReport {
    WeatherLocation location;
    UnixTime fetchedAt = 0;
    int utcOffsetSeconds = 0;
    WeatherCurrent current;
    std::vector<WeatherHour> hourly;
    std::vector<WeatherDay> daily;
    bool operator==(const WeatherReport&) const = default;
};

// What the UI shows for one moment: either the current record or the hourly slot that
// stands in for it (see `conditionsAt`).
struct WeatherConditions {
    UnixTime time = 0;
    double temperatureC = 0;
    double apparentC = 0;
    double humidity = 0;
    int code = 0;
    bool isDay = true;
    double windKmh = 0;
    double windDirection = 0;
    double cloudCover = 0;
    bool fromHourly = false;
    bool operator==(const WeatherConditions&) const = default;
};

// The horizon rule: the current record serves for 45 minutes after its own time; after that
// the last hourly slot at or before `at` serves for one hour; past that there is nothing,
// because a stale forecast must not pass for the weather outside.
std::optional<WeatherConditions> conditionsAt(const WeatherReport& report, UnixTime at);

// The cache's field names and order. Decoding is strict: a report with a missing or
// mistyped field, or a time outside the plausible years (metrics/TimeRange.h), is no report.
nlohmann::ordered_json reportToJson(const WeatherReport& report);
std::optional<WeatherReport> reportFromJson(const nlohmann::json& json);

}  // namespace trotlet::weather
