#include "weather/qt/WeatherHarness.h"

#include <cstdio>
#include <iostream>

#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLocale>
#include <QTimer>

#include "weather/WeatherCondition.h"
#include "weather/WeatherSky.h"
#include "weather/WeatherText.h"
#include "weather/qt/WeatherFormat.h"

namespace trotlet::weather::harness {

namespace {
int gArgc = 1;
char gArg0[] = "trotlet";
char* gArgv[] = {gArg0, nullptr};
}  // namespace

EventLoopScope::EventLoopScope() {
    if (!QCoreApplication::instance()) app_ = std::make_unique<QCoreApplication>(gArgc, gArgv);
}

EventLoopScope::~EventLoopScope() = default;

bool waitUntil(const std::function<bool()>& done, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        const qint64 left = timeoutMs - clock.elapsed();
        if (left <= 0) return false;
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(std::min<qint64>(left, 50)), &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

WeatherResult<std::vector<WeatherLocation>> awaitSearch(WeatherFetching& client, const std::string& query,
                                                        const std::string& language) {
    std::optional<WeatherResult<std::vector<WeatherLocation>>> out;
    auto handle = client.search(query, language, [&](auto r) { out = std::move(r); });
    // The client's own time-outs end every request; the margin only guards a broken fetcher.
    if (!waitUntil([&] { return out.has_value(); }, 60000)) {
        handle->cancel();
        return WeatherError::offline();
    }
    return std::move(*out);
}

WeatherResult<WeatherReport> awaitForecast(WeatherFetching& client, const WeatherLocation& place) {
    std::optional<WeatherResult<WeatherReport>> out;
    auto handle = client.forecast(place, [&](auto r) { out = std::move(r); });
    if (!waitUntil([&] { return out.has_value(); }, 60000)) {
        handle->cancel();
        return WeatherError::offline();
    }
    return std::move(*out);
}

void printJson(const nlohmann::ordered_json& json) {
    std::cout << json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

int usageError(const std::string& message) {
    std::fprintf(stderr, "trotlet: %s\nRun `Trotlet --help` for usage.\n", message.c_str());
    return 2;
}

int failure(const std::string& message) {
    std::fprintf(stderr, "trotlet: %s\n", message.c_str());
    return 1;
}

bool localeUsesFahrenheit() { return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem; }

bool localeUsesImperialWind() { return usesImperialWind(QLocale::system().name().toStdString()); }

nlohmann::ordered_json placeJson(const WeatherLocation& p) { return locationToJson(p); }

nlohmann::ordered_json derivedJson(const WeatherReport& report, UnixTime now) {
    const bool fahrenheit = localeUsesFahrenheit();
    const bool imperial = localeUsesImperialWind();
    const std::string& zone = report.location.timezone;
    const int offset = report.utcOffsetSeconds;
    nlohmann::ordered_json d;
    auto conditions = conditionsAt(report, now);
    if (conditions) {
        const int code = conditions->code;
        d["conditions"] = {
            {"source", conditions->fromHourly ? "hourly" : "current"},
            {"time", conditions->time},
            {"condition", std::string(rawName(conditionFromWmo(code)))},
            {"code", code},
            {"title", title(code, conditions->isDay)},
            {"symbol", symbol(code, conditions->isDay)},
            {"icon", symbolIconName(symbol(code, conditions->isDay))},
            {"intensity", intensity(code)},
            {"isWet", isWet(conditionFromWmo(code))},
            {"temperature", temperatureText(conditions->temperatureC, fahrenheit)},
            {"feelsLike", temperatureText(conditions->apparentC, fahrenheit)},
            {"wind", wind(conditions->windKmh, imperial)},
            {"compass", compass(conditions->windDirection)},
        };
        d["menuBarText"] = temperatureText(conditions->temperatureC, fahrenheit);
    } else {
        d["conditions"] = nullptr;
        d["menuBarText"] = nullptr;
    }
    d["age"] = age(static_cast<double>(now - report.fetchedAt));
    d["shortAge"] = shortAge(static_cast<double>(now - report.fetchedAt));
    WeatherSkyInput sky = skyInputAt(report, now);
    const int computerHour = QDateTime::fromSecsSinceEpoch(now).time().hour();
    d["greeting"] = greetingLine({sky.condition, sky.placeHour, sky.sunUp, sky.city}, computerHour, std::nullopt,
                                 [](const std::string&) { return true; });
    d["localTime"] = WeatherFormat::string(now, "jmm", zone, offset);
    if (!report.daily.empty()) {
        d["sunrise"] = WeatherFormat::string(report.daily.front().sunrise, "jmm", zone, offset);
        d["sunset"] = WeatherFormat::string(report.daily.front().sunset, "jmm", zone, offset);
    }
    auto hours = nlohmann::ordered_json::array();
    for (const auto& h : report.hourly) {
        if (h.time < now - 3600 || hours.size() >= 6) continue;
        hours.push_back({{"time", WeatherFormat::string(h.time, "j", zone, offset)},
                         {"title", title(h.code, h.isDay)},
                         {"symbol", symbol(h.code, h.isDay)},
                         {"temperature", temperatureText(h.temperatureC, fahrenheit)},
                         {"precipitationProbability", h.precipitationProbability}});
    }
    d["hourly"] = std::move(hours);
    auto days = nlohmann::ordered_json::array();
    for (const auto& day : report.daily) {
        days.push_back({{"day", WeatherFormat::string(day.date, "EEE", zone, offset)},
                        {"date", WeatherFormat::string(day.date, "MMMd", zone, offset)},
                        {"title", title(day.code, true)},
                        {"symbol", symbol(day.code, true)},
                        {"max", temperatureText(day.maxC, fahrenheit)},
                        {"min", temperatureText(day.minC, fahrenheit)},
                        {"precipitationProbability", day.precipitationProbability}});
    }
    d["daily"] = std::move(days);
    return d;
}

}  // namespace trotlet::weather::harness
