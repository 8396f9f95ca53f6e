#include "settings/MenuBarSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

MenuBarSettings::MenuBarSettings(DefaultsStore& store) : SettingsGroup(store) {
    showMascot_ = stored::asBool(store.object(keys::showMascot)).value_or(true);
    textMetric_ =
        stored::asEnum<MenuBarTextMetric>(store.object(keys::textMetric), MenuBarTextMetricNames)
            .value_or(MenuBarTextMetric::none);
    textPosition_ = store.string(keys::textPosition, "") == "left" ? MenuBarTextPosition::left
                                                                   : MenuBarTextPosition::right;
    speedSource_ = stored::asEnum<LoadSource>(store.object(keys::speedSource), LoadSourceNames)
                       .value_or(LoadSource::cpu);
    speedSensitivity_ = stored::asDouble(store.object(keys::speedSensitivity)).value_or(0.75);
    maxFPS_ = stored::asInt(store.object(keys::maxFPS)).value_or(24);
    saveEnergy_ = stored::asBool(store.object(keys::saveEnergy)).value_or(true);
    pauseAnimation_ = stored::asBool(store.object(keys::pauseAnimation)).value_or(false);
    animateWithReduceMotion_ =
        stored::asBool(store.object(keys::animateWithReduceMotion)).value_or(false);
}

void MenuBarSettings::setShowMascot(bool value) { update(showMascot_, value, keys::showMascot); }
void MenuBarSettings::setTextMetric(MenuBarTextMetric value) {
    updateRaw(textMetric_, value, MenuBarTextMetricNames, keys::textMetric);
}
void MenuBarSettings::setTextPosition(MenuBarTextPosition value) {
    updateRaw(textPosition_, value, MenuBarTextPositionNames, keys::textPosition);
}
void MenuBarSettings::setSpeedSource(LoadSource value) {
    updateRaw(speedSource_, value, LoadSourceNames, keys::speedSource);
}
void MenuBarSettings::setSpeedSensitivity(double value) {
    update(speedSensitivity_, value, keys::speedSensitivity);
}
void MenuBarSettings::setMaxFPS(int value) { update(maxFPS_, value, keys::maxFPS); }
void MenuBarSettings::setSaveEnergy(bool value) { update(saveEnergy_, value, keys::saveEnergy); }
void MenuBarSettings::setPauseAnimation(bool value) {
    update(pauseAnimation_, value, keys::pauseAnimation);
}
void MenuBarSettings::setAnimateWithReduceMotion(bool value) {
    update(animateWithReduceMotion_, value, keys::animateWithReduceMotion);
}

}  // namespace trotlet::settings
