#include "weather/ForecastResponse.h"

#include <cmath>

#include "json/ParseBounded.h"
#include "metrics/TimeRange.h"
#include "weather/JsonFields.h"

namespace trotlet::weather {

namespace {

// One block of parallel arrays ("hourly" or "daily"): every column must be an array of the
// same length as "time", holding only numbers.
struct Columns {
    const nlohmann::json* block = nullptr;
    size_t size = 0;
    bool ok = true;

    explicit Columns(const nlohmann::json* b) : block(b) {
        const nlohmann::json* t = b ? json::field(*b, "time") : nullptr;
        if (!t || !t->is_array()) {
            ok = false;
            return;
        }
        size = t->size();
    }

    const nlohmann::json* column(const char* key) {
        if (!ok) return nullptr;
        const nlohmann::json* c = json::field(*block, key);
        if (!c || !c->is_array() || c->size() != size) {
            ok = false;
            return nullptr;
        }
        return c;
    }

    double num(const nlohmann::json* c, size_t i) {
        if (!c || !(*c)[i].is_number()) {
            ok = false;
            return 0;
        }
        double v = (*c)[i].get<double>();
        if (!std::isfinite(v)) ok = false;
        return v;
    }

    std::int64_t integer(const nlohmann::json* c, size_t i) {
        double v = num(c, i);
        if (!ok || std::fabs(v) > 9.0e15) {
            ok = false;
            return 0;
        }
        return static_cast<std::int64_t>(std::llround(v));
    }

    // A moment outside the plausible years is no moment: the cache would refuse the report,
    // and the age and horizon arithmetic on it would overflow.
    UnixTime time(const nlohmann::json* c, size_t i) {
        const std::int64_t t = integer(c, i);
        if (!metrics::isPlausibleUnixSeconds(static_cast<double>(t))) ok = false;
        return t;
    }
};

}  // namespace

std::optional<WeatherReport> decodeForecast(std::string_view body, const WeatherLocation& location,
                                            UnixTime fetchedAt) {
    auto j = trotlet::json::parseBounded(body);
    if (j.is_discarded() || !j.is_object()) return std::nullopt;

    WeatherReport report;
    report.location = location;
    report.fetchedAt = fetchedAt;

    auto offset = json::integer(j, "utc_offset_seconds");
    auto zone = json::string(j, "timezone");
    if (!offset || !zone) return std::nullopt;
    report.utcOffsetSeconds = static_cast<int>(*offset);
    if (!location.timezoneKnown()) report.location.timezone = *zone;

    const nlohmann::json* cur = json::field(j, "current");
    if (!cur || !cur->is_object()) return std::nullopt;
    auto time = json::integer(*cur, "time");
    auto temp = json::number(*cur, "temperature_2m");
    auto apparent = json::number(*cur, "apparent_temperature");
    auto humidity = json::number(*cur, "relative_humidity_2m");
    auto code = json::integer(*cur, "weather_code");
    auto isDay = json::boolean(*cur, "is_day");
    auto wind = json::number(*cur, "wind_speed_10m");
    auto windDir = json::number(*cur, "wind_direction_10m");
    auto precip = json::number(*cur, "precipitation");
    auto cloud = json::number(*cur, "cloud_cover");
    if (!time || !metrics::isPlausibleUnixSeconds(static_cast<double>(*time)) || !temp ||
        !apparent || !humidity || !code || !isDay || !wind || !windDir || !precip || !cloud)
        return std::nullopt;
    report.current = {*time, *temp, *apparent, *humidity, static_cast<int>(*code), *isDay,
                      *wind, *windDir, *precip, *cloud};

    Columns h(json::field(j, "hourly"));
    const auto *hTime = h.column("time"), *hTemp = h.column("temperature_2m"),
               *hApparent = h.column("apparent_temperature"),
               *hHumidity = h.column("relative_humidity_2m"), *hCode = h.column("weather_code"),
               *hDay = h.column("is_day"), *hProb = h.column("precipitation_probability"),
               *hCloud = h.column("cloud_cover"), *hWind = h.column("wind_speed_10m"),
               *hWindDir = h.column("wind_direction_10m");
    for (size_t i = 0; h.ok && i < h.size; ++i) {
        WeatherHour hour;
        hour.time = h.time(hTime, i);
        hour.temperatureC = h.num(hTemp, i);
        hour.apparentC = h.num(hApparent, i);
        hour.humidity = h.num(hHumidity, i);
        hour.code = static_cast<int>(h.integer(hCode, i));
        hour.isDay = h.integer(hDay, i) != 0;
        hour.precipitationProbability = h.num(hProb, i);
        hour.cloudCover = h.num(hCloud, i);
        hour.windKmh = h.num(hWind, i);
        hour.windDirection = h.num(hWindDir, i);
        report.hourly.push_back(hour);
    }
    if (!h.ok) return std::nullopt;

    Columns d(json::field(j, "daily"));
    const auto *dTime = d.column("time"), *dCode = d.column("weather_code"),
               *dMax = d.column("temperature_2m_max"), *dMin = d.column("temperature_2m_min"),
               *dRise = d.column("sunrise"), *dSet = d.column("sunset"),
               *dProb = d.column("precipitation_probability_max");
    for (size_t i = 0; d.ok && i < d.size; ++i) {
        WeatherDay day;
        day.date = d.time(dTime, i);
        day.code = static_cast<int>(d.integer(dCode, i));
        day.maxC = d.num(dMax, i);
        day.minC = d.num(dMin, i);
        day.sunrise = d.time(dRise, i);
        day.sunset = d.time(dSet, i);
        day.precipitationProbability = d.num(dProb, i);
        report.daily.push_back(day);
    }
    if (!d.ok) return std::nullopt;
    return report;
}

}  // namespace trotlet::weather
