#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::alerts {

// The few readings the alert rules look at, written in a line per step of a scripted timeline
// and turned into a full sample. Used by the notification simulation and the tests; the rules
// themselves only ever see `MetricsSnapshot`.
struct SyntheticSample {
    struct Battery {
        std::int64_t percent = 80;
        bool pluggedIn = false;
        bool charging = false;
        bool fullyCharged = false;
        std::optional<std::int64_t> minutesLeft;
    };
    struct Process {
        std::int32_t pid = 0;
        std::string name;
        double cpuPercent = 0;  // of one core
    };

    double cpu = 0.12;                              // total, 0..1
    std::optional<double> temperatureC = 55;        // CPU package
    metrics::ThermalState thermalState = metrics::ThermalState::nominal;
    std::optional<Battery> battery;                 // absent: a desktop
    metrics::MemoryPressure pressure = metrics::MemoryPressure::normal;
    std::optional<double> rootFreeGB = 120;         // absent: the root volume reports no size
    double rootTotalGB = 500;
    std::string rootName = "Root";
    std::vector<Process> processes;                 // busiest first is not required

    metrics::MetricsSnapshot snapshot(metrics::Timestamp at) const;

    // A compact account of the readings for the simulation's step lines.
    nlohmann::ordered_json summary() const;

    // Fluent edits, so a timeline reads as a list of small changes.
    SyntheticSample withCpu(double total) const;
    SyntheticSample withTemperature(std::optional<double> celsius,
                                    metrics::ThermalState state = metrics::ThermalState::nominal) const;
    SyntheticSample withBattery(std::int64_t percent, bool pluggedIn = false, bool charging = false,
                                bool fullyCharged = false) const;
    SyntheticSample withoutBattery() const;
    SyntheticSample withPressure(metrics::MemoryPressure level) const;
    SyntheticSample withRootFree(std::optional<double> gigabytes) const;
    SyntheticSample withProcesses(std::vector<Process> rows) const;
};

}  // namespace trotlet::alerts
