#pragma once

#include "settings/SettingsEnums.h"
#include "settings/SettingsGroup.h"

namespace trotlet::settings {

// The tray item: the mascot, the reading beside it and the animation's budget.
class MenuBarSettings : public SettingsGroup {
public:
    explicit MenuBarSettings(DefaultsStore& store);

    bool showMascot() const { return showMascot_; }
    MenuBarTextMetric textMetric() const { return textMetric_; }
    MenuBarTextPosition textPosition() const { return textPosition_; }
    LoadSource speedSource() const { return speedSource_; }
    // The exponent that maps load to running speed.
    double speedSensitivity() const { return speedSensitivity_; }
    int maxFPS() const { return maxFPS_; }
    bool saveEnergy() const { return saveEnergy_; }
    bool pauseAnimation() const { return pauseAnimation_; }
    bool animateWithReduceMotion() const { return animateWithReduceMotion_; }

    void setShowMascot(bool value);
    void setTextMetric(MenuBarTextMetric value);
    void setTextPosition(MenuBarTextPosition value);
    void setSpeedSource(LoadSource value);
    void setSpeedSensitivity(double value);
    void setMaxFPS(int value);
    void setSaveEnergy(bool value);
    void setPauseAnimation(bool value);
    void setAnimateWithReduceMotion(bool value);

private:
    bool showMascot_;
    MenuBarTextMetric textMetric_;
    MenuBarTextPosition textPosition_;
    LoadSource speedSource_;
    double speedSensitivity_;
    int maxFPS_;
    bool saveEnergy_;
    bool pauseAnimation_;
    bool animateWithReduceMotion_;
};

}  // namespace trotlet::settings
