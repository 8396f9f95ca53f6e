#include "settings/LayoutSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

LayoutSettings::LayoutSettings(DefaultsStore& store) : SettingsGroup(store) {
    auto value = store.object(keys::layoutOverview);
    if (value && value->is_string())
        overview_ = value->get<std::string>();
    else if (value && value->is_object())
        // A document written into the settings file by hand as an object still counts.
        overview_ = value->dump();
}

void LayoutSettings::setOverview(std::optional<std::string> document) {
    if (overview_ == document) return;
    overview_ = std::move(document);
    changed(keys::layoutOverview,
            overview_ ? std::optional<SettingValue>(*overview_) : std::nullopt);
}

}  // namespace trotlet::settings
