#include "settings/WeatherSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

WeatherSettings::WeatherSettings(DefaultsStore& store) : SettingsGroup(store) {
    encodedLocation_ = stored::asString(store.object(keys::weatherLocation));
    showInHeader_ = stored::asBool(store.object(keys::weatherShowInHeader)).value_or(true);
    showInMenuBar_ = stored::asBool(store.object(keys::weatherShowInMenuBar)).value_or(false);
}

void WeatherSettings::setEncodedLocation(std::optional<std::string> encoded) {
    if (encodedLocation_ == encoded) return;
    encodedLocation_ = std::move(encoded);
    changed(keys::weatherLocation,
            encodedLocation_ ? std::optional<SettingValue>(*encodedLocation_) : std::nullopt);
}
void WeatherSettings::setShowInHeader(bool value) {
    update(showInHeader_, value, keys::weatherShowInHeader);
}
void WeatherSettings::setShowInMenuBar(bool value) {
    update(showInMenuBar_, value, keys::weatherShowInMenuBar);
}

}  // namespace trotlet::settings
