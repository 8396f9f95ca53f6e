#include "weather/qt/WeatherCLI.h"

namespace trotlet::weather {

// Placeholder until the subsystem lands: nothing is ours.
std::optional<int> WeatherCLI::run(const std::vector<std::string>&) { return std::nullopt; }

}  // namespace trotlet::weather
