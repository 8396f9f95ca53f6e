#include "panel/DetailTexts.h"

#include <cmath>

#include "menubar/Format.h"
#include "settings/Platform.h"
#include "weather/WeatherText.h"

namespace trotlet::panel {

std::string notAvailableText() { return "Not available"; }
std::string waitingForProcessesText() { return "Waiting for the process list…"; }
std::string noMemoryPressureText() {
    return "The kernel reports no memory pressure on this " + std::string(settings::machineNoun) +
           ".";
}
std::string noDisksText() { return "No disks"; }
std::string noVolumesText() { return "No volumes are mounted."; }
std::string volumeUnavailableText() { return "Unavailable"; }
std::string volumeNotRespondingNote(const std::string& path) { return "Not responding · " + path; }
std::string noForecastYetText() { return "Waiting for the forecast…"; }

std::string publicAddressPrompt(const std::string& service) {
    return "Shows this " + std::string(settings::machineNoun) +
           "'s address on the internet. Asks " + (service.empty() ? "an echo service" : service) +
           " once, only when you press the button.";
}

std::string pressureName(metrics::MemoryPressure pressure) {
    switch (pressure) {
        case metrics::MemoryPressure::normal:
            return "Normal";
        case metrics::MemoryPressure::warning:
            return "Warning";
        case metrics::MemoryPressure::critical:
            return "Critical";
        default:
            return "Unknown";
    }
}

std::string thermalStateName(metrics::ThermalState state) {
    switch (state) {
        case metrics::ThermalState::nominal:
            return "Nominal";
        case metrics::ThermalState::fair:
            return "Fair";
        case metrics::ThermalState::serious:
            return "Serious";
        case metrics::ThermalState::critical:
            return "Critical";
    }
    return "Nominal";
}

std::string sensorGroupName(metrics::SensorGroup group) {
    switch (group) {
        case metrics::SensorGroup::cpu:
            return "CPU";
        case metrics::SensorGroup::gpu:
            return "GPU";
        case metrics::SensorGroup::soc:
            return "SoC";
        case metrics::SensorGroup::memory:
            return "Memory";
        case metrics::SensorGroup::storage:
            return "Storage";
        case metrics::SensorGroup::battery:
            return "Battery";
        case metrics::SensorGroup::board:
            return "Board";
        case metrics::SensorGroup::other:
            return "Other";
    }
    return "Other";
}

std::string interfaceKindName(metrics::InterfaceKind kind) {
    switch (kind) {
        case metrics::InterfaceKind::wired:
            return "Ethernet";
        case metrics::InterfaceKind::wifi:
            return "Wi-Fi";
        case metrics::InterfaceKind::cellular:
            return "Cellular";
        case metrics::InterfaceKind::loopback:
            return "Loopback";
        case metrics::InterfaceKind::other:
            return "Other";
    }
    return "Other";
}

std::string powerFlowText(double watts) {
    const std::string amount = menubar::Format::fixed(1, std::abs(watts)) + " W";
    if (watts <= -0.05) return amount + " out";
    if (watts >= 0.05) return amount + " in";
    return amount;
}

std::string weatherAge(double seconds) { return weather::age(seconds); }

}  // namespace trotlet::panel
