#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace trotlet::weather {

// One place as the geocoder names it. Shared by the client, the store, the cache and the
// settings (which keep it as one string, see `encodeLocationSetting`).
struct WeatherLocation {
    std::int64_t id = 0;
    std::string name;
    std::optional<std::string> region;  // the geocoder's admin1
    std::optional<std::string> country;
    std::optional<std::string> countryCode;
    double latitude = 0;
    double longitude = 0;
    // An IANA zone id; empty or "auto" means the zone is not known yet.
    std::string timezone;

    bool timezoneKnown() const { return !timezone.empty() && timezone != "auto"; }
    bool operator==(const WeatherLocation&) const = default;
};

// Two places are the same when both carry a non-zero id and the ids agree; without ids
// (hand-made or older entries) places within 0.01° in both axes are taken as one.
bool samePlace(const WeatherLocation& a, const WeatherLocation& b);

nlohmann::ordered_json locationToJson(const WeatherLocation& location);
// Fails (nothing) when a required field is missing or has the wrong type.
std::optional<WeatherLocation> locationFromJson(const nlohmann::json& json);

// The string kept under the "weather.location" setting: the location as compact JSON.
std::string encodeLocationSetting(const WeatherLocation& location);
// An undecodable string means no place.
std::optional<WeatherLocation> decodeLocationSetting(const std::string& text);

}  // namespace trotlet::weather
