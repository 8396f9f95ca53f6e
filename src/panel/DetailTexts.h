#pragma once

#include <string>

#include "metrics/MetricEnums.h"

namespace trotlet::panel {

// The words the detail screens use for states and for readings they do not have.
std::string notAvailableText();
std::string waitingForProcessesText();
std::string noMemoryPressureText();
std::string noDisksText();
std::string noVolumesText();
// A volume that has not answered: "Unavailable", and the line under it.
std::string volumeUnavailableText();
std::string volumeNotRespondingNote(const std::string& path);
std::string noForecastYetText();
// "Shows this computer's address on the internet. Asks api.ipify.org once."
std::string publicAddressPrompt(const std::string& service);

std::string pressureName(metrics::MemoryPressure pressure);  // "Normal"
std::string thermalStateName(metrics::ThermalState state);   // "Nominal"
std::string sensorGroupName(metrics::SensorGroup group);     // "Storage"
std::string interfaceKindName(metrics::InterfaceKind kind);  // "Wi-Fi", "Ethernet"
// Power into or out of the battery: "7.9 W out", "21.0 W in", "0.0 W".
std::string powerFlowText(double watts);
// "just now", "5 min ago": how old a reading is.
std::string weatherAge(double seconds);

}  // namespace trotlet::panel
