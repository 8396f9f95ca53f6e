#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <nlohmann/json.hpp>

#include "weather/WeatherFetching.h"

// Shared plumbing of the weather harnesses: an event loop of their own, blocking waits on
// the asynchronous client, JSON out, and the texts derived from a report.
namespace trotlet::weather::harness {

// A QCoreApplication for a harness that runs before the app object exists; reuses one
// that is already there.
class EventLoopScope {
public:
    EventLoopScope();
    ~EventLoopScope();

private:
    std::unique_ptr<QCoreApplication> app_;
};

WeatherResult<std::vector<WeatherLocation>> awaitSearch(WeatherFetching& client, const std::string& query,
                                                        const std::string& language);
WeatherResult<WeatherReport> awaitForecast(WeatherFetching& client, const WeatherLocation& place);

// Runs the event loop until `done` holds or `timeoutMs` passes; true when it holds.
bool waitUntil(const std::function<bool()>& done, int timeoutMs);

void printJson(const nlohmann::ordered_json& json);
// "trotlet: <message>\nRun `Trotlet --help` for usage." on standard error; returns 2.
int usageError(const std::string& message);
// "trotlet: <message>" on standard error; returns 1.
int failure(const std::string& message);

// Place and texts for humans and checks: conditions, titles, symbols, ages, wind, the
// greeting and the local times of the report, as the panel would show them at `now`.
nlohmann::ordered_json placeJson(const WeatherLocation& place);
nlohmann::ordered_json derivedJson(const WeatherReport& report, UnixTime now);

// The computer's measurement preferences from its locale.
bool localeUsesFahrenheit();
bool localeUsesImperialWind();

}  // namespace trotlet::weather::harness
