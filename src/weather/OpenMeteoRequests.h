#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "weather/WeatherLocation.h"

namespace trotlet::weather {

inline constexpr std::string_view kDefaultGeocodingBase = "https://geocoding-api.open-meteo.com/v1/search";
inline constexpr std::string_view kDefaultForecastBase = "https://api.open-meteo.com/v1/forecast";

using QueryItems = std::vector<std::pair<std::string, std::string>>;

// The exact query items of the two requests, in the order the service gets them. Nothing
// else leaves the machine: the typed text for the search, then only coordinates and zone.
QueryItems searchQueryItems(const std::string& query, const std::string& language);
QueryItems forecastQueryItems(const WeatherLocation& location);

// Percent-encodes the items (UTF-8; unreserved characters and "," stay as they are, so the
// variable lists read as the documentation writes them) and appends them to the base.
std::string buildURL(std::string_view base, const QueryItems& items);

std::string searchURL(std::string_view base, const std::string& query, const std::string& language);
std::string forecastURL(std::string_view base, const WeatherLocation& location);

}  // namespace trotlet::weather
