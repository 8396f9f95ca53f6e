#include "weather/qt/WeatherCLI.h"

#include <QDateTime>
#include <QTimeZone>

#include "weather/OpenMeteoRequests.h"
#include "weather/PlaceSearch.h"
#include "weather/UnicodeText.h"
#include "weather/qt/LanguageRecogniser.h"
#include "weather/qt/OpenMeteoClient.h"
#include "weather/qt/WeatherHarness.h"
#include "weather/qt/WeatherPolishCLI.h"
#include "weather/qt/WeatherRecoveryCLI.h"
#include "weather/qt/WeatherSearch.h"

namespace trotlet::weather {

namespace {

bool takesValue(const std::vector<std::string>& args, size_t i) {
    return i + 1 < args.size() && args[i + 1].rfind("--", 0) != 0;
}

nlohmann::ordered_json requestsJson(const OpenMeteoClient& client, const std::string& query,
                                    const std::string& language) {
    auto out = nlohmann::ordered_json::array();
    for (const auto& r : planSearch(query, language, recogniseLanguages(unicode::trimmed(query))))
        out.push_back(client.searchURL(r.query, r.language));
    return out;
}

int runSearch(const std::string& name, const std::string& language) {
    harness::EventLoopScope scope;
    OpenMeteoClient client;
    auto result = harness::awaitSearch(client, name, language);
    if (auto* error = errorOf(result)) return harness::failure("weather search failed: " + error->message());
    nlohmann::ordered_json out;
    out["query"] = name;
    out["language"] = language;
    out["requests"] = requestsJson(client, name, language);
    auto places = nlohmann::ordered_json::array();
    for (const auto& p : std::get<0>(result)) places.push_back(harness::placeJson(p));
    out["count"] = places.size();
    out["places"] = std::move(places);
    harness::printJson(out);
    return 0;
}

int runDump(const std::string& name, const std::string& language) {
    harness::EventLoopScope scope;
    OpenMeteoClient client;
    auto found = harness::awaitSearch(client, name, language);
    if (auto* error = errorOf(found)) return harness::failure("weather search failed: " + error->message());
    const auto& places = std::get<0>(found);
    if (places.empty()) return harness::failure("no place found for \"" + name + "\"");
    const WeatherLocation place = places.front();
    auto fetched = harness::awaitForecast(client, place);
    if (auto* error = errorOf(fetched)) return harness::failure("forecast failed: " + error->message());
    const WeatherReport& report = std::get<WeatherReport>(fetched);
    const UnixTime now = QDateTime::currentSecsSinceEpoch();
    nlohmann::ordered_json out;
    out["query"] = name;
    out["language"] = language;
    out["place"] = harness::placeJson(place);
    out["request"] = client.forecastURL(place);
    out["report"] = reportToJson(report);
    out["derived"] = harness::derivedJson(report, now);
    harness::printJson(out);
    return 0;
}

// One place per script the search has to handle, with what the search must find.
struct E2EPlace {
    const char* query;
    const char* language;
    const char* countryCode;
};

constexpr E2EPlace kE2EPlaces[] = {
    {"Paris", "en", "FR"},     {"Hà Nội", "en", "VN"}, {"東京", "en", "JP"},  {"Москва", "en", "RU"},
    {"서울", "en", "KR"},      {"São Paulo", "en", "BR"}, {"Reykjavík", "en", "IS"}, {"Auckland", "en", "NZ"},
};

int runE2E() {
    harness::EventLoopScope scope;
    OpenMeteoClient client;
    bool allOk = true;
    auto rows = nlohmann::ordered_json::array();
    for (const auto& p : kE2EPlaces) {
        nlohmann::ordered_json row;
        row["query"] = p.query;
        auto checks = nlohmann::ordered_json::object();
        auto check = [&](const char* name, bool ok) {
            checks[name] = ok;
            allOk = allOk && ok;
            return ok;
        };
        auto found = harness::awaitSearch(client, p.query, p.language);
        if (auto* error = errorOf(found)) {
            row["error"] = error->message();
            check("search", false);
            row["checks"] = checks;
            rows.push_back(row);
            continue;
        }
        const auto& places = std::get<0>(found);
        if (!check("found", !places.empty())) {
            row["checks"] = checks;
            rows.push_back(row);
            continue;
        }
        const WeatherLocation place = places.front();
        row["place"] = harness::placeJson(place);
        check("country", place.countryCode.value_or("") == p.countryCode);
        // The forecast must fill in the zone itself, so ask without one.
        WeatherLocation unzoned = place;
        unzoned.timezone.clear();
        auto fetched = harness::awaitForecast(client, unzoned);
        if (auto* error = errorOf(fetched)) {
            row["error"] = error->message();
            check("forecast", false);
            row["checks"] = checks;
            rows.push_back(row);
            continue;
        }
        const WeatherReport& r = std::get<WeatherReport>(fetched);
        const QTimeZone zone(QByteArray::fromStdString(r.location.timezone));
        check("zone", zone.isValid());
        check("zoneMatchesSearch", place.timezone.empty() || place.timezone == r.location.timezone);
        check("offset", zone.isValid() &&
                            zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(r.current.time, Qt::UTC)) ==
                                r.utcOffsetSeconds);
        bool ascending = r.hourly.size() >= 36;
        for (size_t i = 1; i < r.hourly.size(); ++i) ascending = ascending && r.hourly[i].time - r.hourly[i - 1].time == 3600;
        check("hourly", ascending);
        bool days = !r.daily.empty();
        for (const auto& d : r.daily) {
            // Each day starts at the place's local midnight.
            days = days && zone.isValid() &&
                   QDateTime::fromSecsSinceEpoch(d.date, zone).time() == QTime(0, 0) && d.minC <= d.maxC;
        }
        check("daily", days);
        check("currentInHourly", !r.hourly.empty() && r.current.time >= r.hourly.front().time &&
                                     r.current.time <= r.hourly.back().time);
        auto now = conditionsAt(r, r.current.time);
        check("horizonNow", now && !now->fromHourly);
        auto later = conditionsAt(r, r.current.time + 3 * 3600);
        check("horizon3h", later && later->fromHourly);
        check("horizonBeyond", !r.hourly.empty() && !conditionsAt(r, r.hourly.back().time + 3600));
        row["timezone"] = r.location.timezone;
        row["utcOffsetSeconds"] = r.utcOffsetSeconds;
        row["derived"] = harness::derivedJson(r, r.current.time);
        row["checks"] = checks;
        rows.push_back(row);
    }
    nlohmann::ordered_json out;
    out["geocoding"] = client.options().geocodingBase;
    out["forecast"] = client.options().forecastBase;
    out["places"] = std::move(rows);
    out["ok"] = allOk;
    harness::printJson(out);
    return allOk ? 0 : 1;
}

}  // namespace

std::optional<int> WeatherCLI::run(const std::vector<std::string>& args) {
    for (size_t i = 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--weather-search" || a == "--weather-dump") {
            if (!takesValue(args, i)) return harness::usageError(a + " needs a place name");
            const std::string name = args[i + 1];
            std::string language = WeatherSearch::preferredLanguage();
            for (size_t k = i + 2; k < args.size(); ++k) {
                if (args[k] != "--lang") continue;
                if (!takesValue(args, k)) return harness::usageError("--lang needs a language code");
                language = args[k + 1];
            }
            return a == "--weather-search" ? runSearch(name, language) : runDump(name, language);
        }
        if (a == "--weather-e2e") return runE2E();
        if (a == "--weather-recovery") return WeatherRecoveryCLI::run();
        if (a == "--weather-polish")
            return WeatherPolishCLI::run(takesValue(args, i) ? std::optional(args[i + 1]) : std::nullopt);
    }
    return std::nullopt;
}

}  // namespace trotlet::weather
