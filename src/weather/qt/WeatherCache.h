#pragma once

#include <optional>
#include <string>

#include "weather/WeatherReport.h"

namespace trotlet::weather {

// The last good forecast on disk, so a relaunch shows the weather at once. The file is
// {"version":1,"savedAt":<unixtime>,"report":{...}}. Reading never fails loudly: a missing,
// unreadable, broken or newer file is simply no cache (it is left in place; the next save
// replaces it).
class WeatherCache {
public:
    static constexpr int kVersion = 1;

    explicit WeatherCache(std::optional<std::string> path = std::nullopt) : path_(std::move(path)) {}

    // TROTLET_WEATHER_CACHE when set and not empty; otherwise none for an in-memory
    // session; otherwise "weather.json" in the app-data folder.
    static WeatherCache forSession(bool ephemeral);

    const std::optional<std::string>& path() const { return path_; }
    std::optional<WeatherReport> load() const;
    // Creates the folder and writes atomically. False (silently for the app) on failure.
    bool save(const WeatherReport& report, UnixTime savedAt) const;
    void clear() const;

private:
    std::optional<std::string> path_;
};

}  // namespace trotlet::weather
