#pragma once

// Answers in the shapes Open-Meteo documents for /v1/search and /v1/forecast
// (timeformat=unixtime), with the extra fields the real service adds, so decoding is tested
// against what arrives rather than against what the decoder expects.

#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

namespace trotlet::weather::samples {

inline std::string geocodingParis() {
    return R"({"results":[
 {"id":2988507,"name":"Paris","latitude":48.85341,"longitude":2.3488,"elevation":42.0,
  "feature_code":"PPLC","country_code":"FR","admin1_id":3012874,"admin2_id":2968815,
  "timezone":"Europe/Paris","population":2138551,"country_id":3017382,"country":"France",
  "admin1":"Île-de-France","admin2":"Paris"},
 {"id":4717560,"name":"Paris","latitude":33.66094,"longitude":-95.55551,"elevation":183.0,
  "feature_code":"PPLA2","country_code":"US","admin1_id":4736286,"timezone":"America/Chicago",
  "population":24171,"country_id":6252001,"country":"United States","admin1":"Texas",
  "admin2":"Lamar"},
 {"id":4246659,"name":"Paris","latitude":39.61115,"longitude":-87.69614,"elevation":222.0,
  "feature_code":"PPLA2","country_code":"US","admin1_id":4896861,"timezone":"America/Chicago",
  "country_id":6252001,"country":"United States","admin1":"Illinois"}
],"generationtime_ms":0.7}
)";
}

// A forecast as the service answers it: `hourlyCount` hours from `start` (one past hour
// included), three days, Paris's offset. `first` is the unixtime of the first hourly slot.
inline nlohmann::json forecastJson(std::int64_t first, int hourlyCount = 37, int offset = 3600,
                                   const std::string& zone = "Europe/Paris") {
    nlohmann::json j;
    j["latitude"] = 48.86;
    j["longitude"] = 2.3399997;
    j["generationtime_ms"] = 0.12;
    j["utc_offset_seconds"] = offset;
    j["timezone"] = zone;
    j["timezone_abbreviation"] = "GMT+1";
    j["elevation"] = 43.0;
    j["current_units"] = {{"time", "unixtime"}, {"interval", "seconds"}, {"temperature_2m", "°C"}};
    j["current"] = {{"time", first + 3600 + 900}, {"interval", 900},        {"temperature_2m", 11.4},
                    {"apparent_temperature", 9.2}, {"relative_humidity_2m", 81},
                    {"weather_code", 61},           {"is_day", 1},           {"wind_speed_10m", 14.8},
                    {"wind_direction_10m", 232},    {"precipitation", 0.3},  {"cloud_cover", 100}};
    nlohmann::json h;
    for (int i = 0; i < hourlyCount; ++i) {
        h["time"].push_back(first + i * 3600);
        h["temperature_2m"].push_back(10.0 + i * 0.1);
        h["apparent_temperature"].push_back(8.0 + i * 0.1);
        h["relative_humidity_2m"].push_back(80);
        h["weather_code"].push_back(i < 10 ? 61 : 3);
        h["is_day"].push_back((i % 24) < 12 ? 1 : 0);
        h["precipitation_probability"].push_back(i < 10 ? 70 : 10);
        h["cloud_cover"].push_back(90);
        h["wind_speed_10m"].push_back(12.5);
        h["wind_direction_10m"].push_back(240);
    }
    j["hourly_units"] = {{"time", "unixtime"}, {"temperature_2m", "°C"}};
    j["hourly"] = h;
    nlohmann::json d;
    std::int64_t midnight = first - ((first + offset) % 86400);
    for (int i = 0; i < 3; ++i) {
        d["time"].push_back(midnight + i * 86400);
        d["weather_code"].push_back(i == 0 ? 63 : 2);
        d["temperature_2m_max"].push_back(13.1 + i);
        d["temperature_2m_min"].push_back(6.4 + i);
        d["sunrise"].push_back(midnight + i * 86400 + 7 * 3600);
        d["sunset"].push_back(midnight + i * 86400 + 17 * 3600);
        d["precipitation_probability_max"].push_back(80 - i * 20);
    }
    j["daily_units"] = {{"time", "unixtime"}, {"sunrise", "unixtime"}};
    j["daily"] = d;
    return j;
}

}  // namespace trotlet::weather::samples
