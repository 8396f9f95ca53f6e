#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "metrics/PressureLevels.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

// The sensor group a hwmon chip (its "name" file) or thermal zone ("type") belongs to.
metrics::SensorGroup groupForChip(std::string_view chip);

// The temperatures, fans and thermal state. hwmon chips are discovered once (their value files
// stay open); thermal zones stand in when no hwmon temperature exists.
class SensorReader {
public:
    explicit SensorReader(const std::string& root = "/");
    void read(metrics::ThermalMetrics& out);

private:
    struct Temperature {
        std::string name;  // "<chip> <label>", e.g. "coretemp Package id 0"
        std::string label;
        std::string chip;
        metrics::SensorGroup group = metrics::SensorGroup::other;
        KeptFile input;
        std::optional<double> limitC;  // crit, else max
    };
    struct Fan {
        std::int64_t index = 0;
        KeptFile input;
        std::optional<double> minRpm, maxRpm;
    };
    void discoverHwmon(const std::string& root);
    void discoverThermalZones(const std::string& root);

    std::vector<Temperature> temperatures_;
    std::vector<Fan> fans_;
    bool anyHwmonChip_ = false;
    bool fromThermalZones_ = false;
    metrics::ThermalStateTracker tracker_;
};

}  // namespace trotlet::platform
