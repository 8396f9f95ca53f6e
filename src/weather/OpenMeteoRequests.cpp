#include "weather/OpenMeteoRequests.h"

#include <cstdio>

namespace trotlet::weather {

namespace {

std::string fixed4(double value) {
    // "%.4f" is locale-independent for the decimal point only in the "C" locale, which is
    // the only one this process formats numbers in.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.4f", value);
    return buf;
}

void appendEncoded(std::string& out, std::string_view text) {
    static const char* hex = "0123456789ABCDEF";
    for (unsigned char ch : text) {
        bool keep = (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z') || (ch >= '0' && ch <= '9') ||
                    ch == '-' || ch == '.' || ch == '_' || ch == '~' || ch == ',';
        if (keep) {
            out += static_cast<char>(ch);
        } else {
            out += '%';
            out += hex[ch >> 4];
            out += hex[ch & 0xF];
        }
    }
}

}  // namespace

QueryItems searchQueryItems(const std::string& query, const std::string& language) {
    return {{"name", query}, {"count", "8"}, {"language", language}, {"format", "json"}};
}

QueryItems forecastQueryItems(const WeatherLocation& l) {
    return {
        {"latitude", fixed4(l.latitude)},
        {"longitude", fixed4(l.longitude)},
        {"current",
         "temperature_2m,apparent_temperature,relative_humidity_2m,weather_code,is_day,"
         "wind_speed_10m,wind_direction_10m,precipitation,cloud_cover"},
        {"hourly",
         "temperature_2m,apparent_temperature,relative_humidity_2m,weather_code,is_day,"
         "precipitation_probability,cloud_cover,wind_speed_10m,wind_direction_10m"},
        {"daily",
         "weather_code,temperature_2m_max,temperature_2m_min,sunrise,sunset,"
         "precipitation_probability_max"},
        {"timeformat", "unixtime"},
        {"timezone", l.timezone.empty() ? std::string("auto") : l.timezone},
        {"forecast_days", "7"},
        {"forecast_hours", "36"},
        {"past_hours", "1"},
    };
}

std::string buildURL(std::string_view base, const QueryItems& items) {
    std::string url(base);
    char sep = url.find('?') == std::string::npos ? '?' : '&';
    for (const auto& [key, value] : items) {
        url += sep;
        appendEncoded(url, key);
        url += '=';
        appendEncoded(url, value);
        sep = '&';
    }
    return url;
}

std::string searchURL(std::string_view base, const std::string& query, const std::string& language) {
    return buildURL(base, searchQueryItems(query, language));
}

std::string forecastURL(std::string_view base, const WeatherLocation& location) {
    return buildURL(base, forecastQueryItems(location));
}

}  // namespace trotlet::weather
