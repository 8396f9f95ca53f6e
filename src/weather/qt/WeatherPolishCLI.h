#pragma once

#include <optional>
#include <string>

namespace trotlet::weather {

// --weather-polish [dir]: every weather text for every documented WMO code, by day and by
// night, in each part of the day, as one JSON table on standard output (and as
// weather-polish.json in `dir` when given), for proofreading the words in one place.
struct WeatherPolishCLI {
    static int run(const std::optional<std::string>& dir);
};

}  // namespace trotlet::weather
