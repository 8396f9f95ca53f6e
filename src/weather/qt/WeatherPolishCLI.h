#pragma once

#include <optional>
#include <string>

namespace trotlet::weather {

// --weather-polish [dir]: every weather text for every documented WMO code, by day and by
// night, in each part of the day, as one JSON table on standard output, for proofreading the
// words in one place. With `dir`, the table goes there as weather-polish.json too, beside
// pictures of a few places' weather card and header sky in light and dark (listed under
// "pictures").
struct WeatherPolishCLI {
    static int run(const std::optional<std::string>& dir);
};

}  // namespace trotlet::weather
