#include "weather/WeatherLocation.h"

#include <cmath>

#include "json/ParseBounded.h"
#include "weather/JsonFields.h"

namespace trotlet::weather {

bool samePlace(const WeatherLocation& a, const WeatherLocation& b) {
    if (a.id != 0 && b.id != 0) return a.id == b.id;
    return std::fabs(a.latitude - b.latitude) < 0.01 && std::fabs(a.longitude - b.longitude) < 0.01;
}

nlohmann::ordered_json locationToJson(const WeatherLocation& l) {
    nlohmann::ordered_json j;
    j["id"] = l.id;
    j["name"] = l.name;
    j["region"] = l.region ? nlohmann::ordered_json(*l.region) : nlohmann::ordered_json();
    j["country"] = l.country ? nlohmann::ordered_json(*l.country) : nlohmann::ordered_json();
    j["countryCode"] =
        l.countryCode ? nlohmann::ordered_json(*l.countryCode) : nlohmann::ordered_json();
    j["latitude"] = l.latitude;
    j["longitude"] = l.longitude;
    j["timezone"] = l.timezone;
    return j;
}

std::optional<WeatherLocation> locationFromJson(const nlohmann::json& j) {
    if (!j.is_object()) return std::nullopt;
    WeatherLocation l;
    auto id = json::integer(j, "id");
    auto name = json::string(j, "name");
    auto lat = json::number(j, "latitude");
    auto lon = json::number(j, "longitude");
    if (!id || !name || !lat || !lon) return std::nullopt;
    if (!std::isfinite(*lat) || !std::isfinite(*lon)) return std::nullopt;
    l.id = *id;
    l.name = *name;
    l.latitude = *lat;
    l.longitude = *lon;
    l.region = json::string(j, "region");
    l.country = json::string(j, "country");
    l.countryCode = json::string(j, "countryCode");
    l.timezone = json::string(j, "timezone").value_or("");
    return l;
}

std::string encodeLocationSetting(const WeatherLocation& location) {
    return locationToJson(location).dump();
}

std::optional<WeatherLocation> decodeLocationSetting(const std::string& text) {
    auto j = trotlet::json::parseBounded(text);
    if (j.is_discarded()) return std::nullopt;
    return locationFromJson(j);
}

}  // namespace trotlet::weather
