#pragma once

#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// How the mascot behaves beyond following the load.
class MascotSettings : public SettingsGroup {
public:
    explicit MascotSettings(DefaultsStore& store);

    bool stateReactions() const { return stateReactions_; }  // panic, overheated, low battery
    bool sleepWhenIdle() const { return sleepWhenIdle_; }
    bool showMoodLine() const { return showMoodLine_; }
    bool goldenFish() const { return goldenFish_; }

    void setStateReactions(bool value);
    void setSleepWhenIdle(bool value);
    void setShowMoodLine(bool value);
    void setGoldenFish(bool value);

private:
    bool stateReactions_;
    bool sleepWhenIdle_;
    bool showMoodLine_;
    bool goldenFish_;
};

}  // namespace trotlet::settings
