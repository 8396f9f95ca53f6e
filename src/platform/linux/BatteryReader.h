#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

// What one /sys/class/power_supply/<name> directory says, in SI units; absent fields are
// attributes the driver does not provide.
struct PowerSupplyReading {
    std::string name;
    std::string type;  // "Battery", "Mains", "USB", ...
    bool deviceScope = false;  // scope "Device": a mouse or headset battery, not the computer's
    std::optional<bool> online;
    std::optional<std::string> status;  // "Charging", "Discharging", "Full", "Not charging"
    std::optional<double> capacityPct;
    std::optional<double> energyNowWh, energyFullWh, energyDesignWh;
    std::optional<double> powerW;  // magnitude
    std::optional<double> timeToEmptySec, timeToFullSec;
    std::optional<double> cycles;
    std::optional<std::string> health;
    std::optional<double> temperatureC;
    std::optional<double> adapterMaxW;  // USB PD: voltage_max × current_max
    std::optional<std::string> modelName;
};

// The attribute files of the supplies, kept open between samples; a file found missing is not
// looked for again until `clear` (the reader's next discovery).
class SupplyFiles {
public:
    std::optional<std::string> read(const std::string& path);
    void clear();

private:
    std::unordered_map<std::string, KeptFile> open_;
    std::unordered_set<std::string> missing_;
};

// Reads one supply directory; charge (µAh) figures are turned into energy with the design
// (else present) voltage. Without `files` every attribute is opened and closed.
PowerSupplyReading readPowerSupply(const std::string& directory, const std::string& name,
                                   SupplyFiles* files = nullptr);

// The battery group from the supplies' readings (pure, so captured readings test it). Several
// batteries are combined by energy. No system battery: `present` is false and every battery
// reading absent. `lowPowerMode` is left as it is (it comes from power-profiles-daemon).
void combinePowerSupplies(const std::vector<PowerSupplyReading>& supplies,
                          metrics::BatteryMetrics& out);

class BatteryReader {
public:
    explicit BatteryReader(const std::string& root = "/");
    void read(metrics::BatteryMetrics& out);

private:
    void discover();
    std::string directory_;
    std::vector<std::string> names_;
    std::vector<PowerSupplyReading> readings_;
    SupplyFiles files_;
    int samplesSinceDiscovery_ = 0;
};

}  // namespace trotlet::platform
