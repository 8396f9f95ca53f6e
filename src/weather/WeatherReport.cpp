#include "weather/WeatherReport.h"

#include "metrics/TimeRange.h"
#include "weather/JsonFields.h"

namespace trotlet::weather {

namespace {

constexpr UnixTime kCurrentHorizon = 2700;  // 45 min
constexpr UnixTime kHourlyHorizon = 3600;

}  // namespace

std::optional<WeatherConditions> conditionsAt(const WeatherReport& report, UnixTime at) {
    const WeatherCurrent& c = report.current;
    if (at - c.time < kCurrentHorizon) {
        return WeatherConditions{c.time, c.temperatureC, c.apparentC, c.humidity, c.code,
                                 c.isDay, c.windKmh, c.windDirection, c.cloudCover, false};
    }
    for (auto it = report.hourly.rbegin(); it != report.hourly.rend(); ++it) {
        if (it->time > at) continue;
        if (at - it->time >= kHourlyHorizon) return std::nullopt;
        return WeatherConditions{it->time, it->temperatureC, it->apparentC, it->humidity,
                                 it->code, it->isDay, it->windKmh, it->windDirection,
                                 it->cloudCover, true};
    }
    return std::nullopt;
}

nlohmann::ordered_json reportToJson(const WeatherReport& r) {
    nlohmann::ordered_json j;
    j["location"] = locationToJson(r.location);
    j["fetchedAt"] = r.fetchedAt;
    j["utcOffsetSeconds"] = r.utcOffsetSeconds;
    const auto& c = r.current;
    j["current"] = {{"time", c.time},
                    {"temperatureC", c.temperatureC},
                    {"apparentC", c.apparentC},
                    {"humidity", c.humidity},
                    {"code", c.code},
                    {"isDay", c.isDay},
                    {"windKmh", c.windKmh},
                    {"windDirection", c.windDirection},
                    {"precipitationMm", c.precipitationMm},
                    {"cloudCover", c.cloudCover}};
    auto hours = nlohmann::ordered_json::array();
    for (const auto& h : r.hourly) {
        hours.push_back({{"time", h.time},
                         {"temperatureC", h.temperatureC},
                         {"apparentC", h.apparentC},
                         {"humidity", h.humidity},
                         {"code", h.code},
                         {"isDay", h.isDay},
                         {"precipitationProbability", h.precipitationProbability},
                         {"cloudCover", h.cloudCover},
                         {"windKmh", h.windKmh},
                         {"windDirection", h.windDirection}});
    }
    j["hourly"] = std::move(hours);
    auto days = nlohmann::ordered_json::array();
    for (const auto& d : r.daily) {
        days.push_back({{"date", d.date},
                        {"code", d.code},
                        {"maxC", d.maxC},
                        {"minC", d.minC},
                        {"sunrise", d.sunrise},
                        {"sunset", d.sunset},
                        {"precipitationProbability", d.precipitationProbability}});
    }
    j["daily"] = std::move(days);
    return j;
}

namespace {

// Reads every listed field or fails as a whole.
struct Strict {
    const nlohmann::json& j;
    bool ok = true;
    double num(const char* k) {
        auto v = json::number(j, k);
        ok = ok && v.has_value();
        return v.value_or(0);
    }
    std::int64_t integer(const char* k) {
        auto v = json::integer(j, k);
        ok = ok && v.has_value();
        return v.value_or(0);
    }
    // A moment outside the plausible years is no moment: the age and horizon arithmetic on it
    // would overflow.
    UnixTime time(const char* k) {
        const std::int64_t v = integer(k);
        ok = ok && metrics::isPlausibleUnixSeconds(static_cast<double>(v));
        return v;
    }
    bool flag(const char* k) {
        auto v = json::boolean(j, k);
        ok = ok && v.has_value();
        return v.value_or(false);
    }
};

}  // namespace

std::optional<WeatherReport> reportFromJson(const nlohmann::json& j) {
    if (!j.is_object()) return std::nullopt;
    WeatherReport r;
    auto* loc = json::field(j, "location");
    if (!loc) return std::nullopt;
    auto location = locationFromJson(*loc);
    if (!location) return std::nullopt;
    r.location = *location;
    Strict top{j};
    r.fetchedAt = top.time("fetchedAt");
    r.utcOffsetSeconds = static_cast<int>(top.integer("utcOffsetSeconds"));
    if (!top.ok) return std::nullopt;

    auto* cur = json::field(j, "current");
    if (!cur || !cur->is_object()) return std::nullopt;
    Strict c{*cur};
    r.current = {c.time("time"), c.num("temperatureC"), c.num("apparentC"), c.num("humidity"),
                 static_cast<int>(c.integer("code")), c.flag("isDay"), c.num("windKmh"),
                 c.num("windDirection"), c.num("precipitationMm"), c.num("cloudCover")};
    if (!c.ok) return std::nullopt;

    auto* hours = json::field(j, "hourly");
    auto* days = json::field(j, "daily");
    if (!hours || !hours->is_array() || !days || !days->is_array()) return std::nullopt;
    for (const auto& item : *hours) {
        Strict h{item};
        WeatherHour hour{h.time("time"), h.num("temperatureC"), h.num("apparentC"),
                         h.num("humidity"), static_cast<int>(h.integer("code")), h.flag("isDay"),
                         h.num("precipitationProbability"), h.num("cloudCover"), h.num("windKmh"),
                         h.num("windDirection")};
        if (!h.ok) return std::nullopt;
        r.hourly.push_back(hour);
    }
    for (const auto& item : *days) {
        Strict d{item};
        WeatherDay day{d.time("date"), static_cast<int>(d.integer("code")), d.num("maxC"),
                       d.num("minC"), d.time("sunrise"), d.time("sunset"),
                       d.num("precipitationProbability")};
        if (!d.ok) return std::nullopt;
        r.daily.push_back(day);
    }
    return r;
}

}  // namespace trotlet::weather
