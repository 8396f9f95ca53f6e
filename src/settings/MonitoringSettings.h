#pragma once

#include <string>
#include <vector>

#include "settings/SettingsEnums.h"
#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// Sampling, units and what the panel lists.
class MonitoringSettings : public SettingsGroup {
public:
    // `usesUSMeasurement`: the user's locale measures in the US system, which makes Fahrenheit
    // the default temperature unit. The application layer asks the locale.
    MonitoringSettings(DefaultsStore& store, bool usesUSMeasurement);

    double updateInterval() const { return updateInterval_; }  // seconds, the open panel's tick
    TemperatureUnit temperatureUnit() const { return temperatureUnit_; }
    NetworkUnit networkUnit() const { return networkUnit_; }
    bool showPerCoreCPU() const { return showPerCoreCPU_; }
    // Card ids hidden by the older fixed-grid Overview; the layout reads them to migrate.
    const std::vector<std::string>& hiddenCards() const { return hiddenCards_; }
    int processListSize() const { return processListSize_; }

    void setUpdateInterval(double seconds);
    void setTemperatureUnit(TemperatureUnit value);
    void setNetworkUnit(NetworkUnit value);
    void setShowPerCoreCPU(bool value);
    void setHiddenCards(std::vector<std::string> ids);
    void setProcessListSize(int rows);

    static TemperatureUnit defaultTemperatureUnit(bool usesUSMeasurement) {
        return usesUSMeasurement ? TemperatureUnit::fahrenheit : TemperatureUnit::celsius;
    }

private:
    double updateInterval_;
    TemperatureUnit temperatureUnit_;
    NetworkUnit networkUnit_;
    bool showPerCoreCPU_;
    std::vector<std::string> hiddenCards_;
    int processListSize_;
};

}  // namespace trotlet::settings
