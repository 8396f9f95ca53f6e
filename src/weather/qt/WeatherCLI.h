#pragma once

#include <optional>
#include <string>
#include <vector>

namespace trotlet::weather {

// Runs before the command line is parsed. Owns --weather-search, --weather-dump, --weather-e2e, --weather-polish, --weather-recovery.
// Gives no status when the arguments are not its own; otherwise the process exits with it.
// Every mode prints JSON and never touches the user's settings or weather cache.
struct WeatherCLI {
    static std::optional<int> run(const std::vector<std::string>& args);
};

}  // namespace trotlet::weather
