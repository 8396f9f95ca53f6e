#include "settings/MonitoringSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

MonitoringSettings::MonitoringSettings(DefaultsStore& store, bool usesUSMeasurement)
    : SettingsGroup(store) {
    updateInterval_ = stored::asDouble(store.object(keys::updateInterval)).value_or(2.0);
    temperatureUnit_ =
        stored::asEnum<TemperatureUnit>(store.object(keys::temperatureUnit), TemperatureUnitNames)
            .value_or(defaultTemperatureUnit(usesUSMeasurement));
    networkUnit_ =
        store.string(keys::networkUnit, "") == "bits" ? NetworkUnit::bits : NetworkUnit::bytes;
    showPerCoreCPU_ = stored::asBool(store.object(keys::showPerCoreCPU)).value_or(true);
    hiddenCards_ =
        stored::asStringList(store.object(keys::hiddenCards)).value_or(std::vector<std::string>{});
    processListSize_ = stored::asInt(store.object(keys::processListSize)).value_or(8);
}

void MonitoringSettings::setUpdateInterval(double seconds) {
    update(updateInterval_, seconds, keys::updateInterval);
}
void MonitoringSettings::setTemperatureUnit(TemperatureUnit value) {
    updateRaw(temperatureUnit_, value, TemperatureUnitNames, keys::temperatureUnit);
}
void MonitoringSettings::setNetworkUnit(NetworkUnit value) {
    updateRaw(networkUnit_, value, NetworkUnitNames, keys::networkUnit);
}
void MonitoringSettings::setShowPerCoreCPU(bool value) {
    update(showPerCoreCPU_, value, keys::showPerCoreCPU);
}
void MonitoringSettings::setHiddenCards(std::vector<std::string> ids) {
    update(hiddenCards_, std::move(ids), keys::hiddenCards);
}
void MonitoringSettings::setProcessListSize(int rows) {
    update(processListSize_, rows, keys::processListSize);
}

}  // namespace trotlet::settings
