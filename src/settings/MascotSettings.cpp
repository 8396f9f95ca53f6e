#include "settings/MascotSettings.h"

#include "settings/SettingsKeys.h"

namespace trotlet::settings {

MascotSettings::MascotSettings(DefaultsStore& store) : SettingsGroup(store) {
    stateReactions_ = stored::asBool(store.object(keys::stateReactions)).value_or(true);
    sleepWhenIdle_ = stored::asBool(store.object(keys::sleepWhenIdle)).value_or(true);
    showMoodLine_ = stored::asBool(store.object(keys::showMoodLine)).value_or(true);
    goldenFish_ = stored::asBool(store.object(keys::goldenFish)).value_or(true);
}

void MascotSettings::setStateReactions(bool value) {
    update(stateReactions_, value, keys::stateReactions);
}
void MascotSettings::setSleepWhenIdle(bool value) {
    update(sleepWhenIdle_, value, keys::sleepWhenIdle);
}
void MascotSettings::setShowMoodLine(bool value) {
    update(showMoodLine_, value, keys::showMoodLine);
}
void MascotSettings::setGoldenFish(bool value) { update(goldenFish_, value, keys::goldenFish); }

}  // namespace trotlet::settings
