#pragma once

#include <string>

namespace trotlet::panel {

// What a card says in place of readings this computer cannot give. The machine is named with
// the app's one word for it.
std::string noFansText();
std::string fanSpeedsUnavailableText();
// A disk whose file system does not answer (a hung network share): its space is unknown.
std::string diskSpaceUnavailableText();
std::string noTemperatureSensorsText();
std::string noGpuStatisticsText();
std::string noBatteryText();
std::string noWeatherPlaceText();
std::string waitingForReadingsText();

}  // namespace trotlet::panel
