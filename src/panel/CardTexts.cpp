#include "panel/CardTexts.h"

#include "settings/Platform.h"

namespace trotlet::panel {
namespace {
std::string machine() { return std::string(settings::machineNoun); }
}  // namespace

std::string noFansText() { return "This " + machine() + " has no fans."; }
std::string fanSpeedsUnavailableText() { return "Fan speeds aren't available."; }
std::string diskSpaceUnavailableText() { return "Disk space isn't available."; }
std::string noTemperatureSensorsText() {
    return "Temperature sensors aren't available on this " + machine() + ".";
}
std::string noGpuStatisticsText() {
    return "GPU statistics aren't available on this " + machine() + ".";
}
std::string noBatteryText() { return "This " + machine() + " has no battery."; }
std::string noWeatherPlaceText() { return "Choose a place in Settings to see the weather."; }
std::string waitingForReadingsText() { return "Waiting for the first reading…"; }

}  // namespace trotlet::panel
