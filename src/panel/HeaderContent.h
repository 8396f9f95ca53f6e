#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "menubar/DisplayUnits.h"
#include "panel/CardContent.h"
#include "weather/WeatherReport.h"

namespace trotlet::panel {

struct WeatherChip {
    std::string symbol;
    std::string temperature;  // "12°C"
    std::string age;          // "5m": how old the forecast is
    bool operator==(const WeatherChip&) const = default;
};

struct HeaderChips {
    std::string fish;  // "1,250"
    std::optional<WeatherChip> weather;
};

// The header's chips: the Fish balance always; the weather when the setting shows it and a
// place has a forecast.
HeaderChips headerChips(std::int64_t fish, const std::optional<WeatherSummary>& weather,
                        bool showWeather, menubar::TemperatureUnit unit);

// What the panel shows of a forecast at `now`: the current conditions (or the hourly slot that
// stands in for them), today's high and low, and the forecast's age. None without a report or
// when the report has nothing for `now`.
std::optional<WeatherSummary> summarizeWeather(const std::optional<weather::WeatherReport>& report,
                                               weather::UnixTime now);

// The greeting at the header's foot: the weather's phrase for the place's part of the day,
// " in <city>" when the place's part of the day is not the computer's, ", <name>" when the
// account has a first name, in the longest form that `fits`. Without a forecast the phrase
// follows the computer's own hour.
std::string headerGreeting(const weather::WeatherReport* report, weather::UnixTime now,
                           int localOffsetSeconds, const std::optional<std::string>& firstName,
                           const std::function<bool(const std::string&)>& fits);

// A whole number with thousands separated by commas: "12,345".
std::string groupedNumber(std::int64_t n);

}  // namespace trotlet::panel
