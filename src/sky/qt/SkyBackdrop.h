#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <optional>

#include "sky/SkyScene.h"
#include "sky/qt/SkyPainter.h"

namespace trotlet::ui {
class PanelHeader;
class PanelModel;
class ThemeStore;
}  // namespace trotlet::ui

namespace trotlet::sky {

// The header's sky, live: builds the scene from the panel's model (the forecast, the clock,
// the mascot's mood, reduced motion, the colour scheme), hands the header its backdrop and the
// ink that reads over it, and animates it at the scene's modest frame rate only while the
// header is shown, its animation is wanted and motion is allowed. The time of day is looked at
// once a minute while shown. TROTLET_QA_SKY_PHASE (dawn, day, dusk, night) pins the phase.
class SkyBackdrop : public QObject {
    Q_OBJECT
public:
    SkyBackdrop(ui::PanelHeader& header, ui::PanelModel& model, const ui::ThemeStore& theme);

    const SkyScene& scene() const { return scene_; }
    bool isAnimating() const { return frameTimer_.isActive(); }
    void setForcedPhase(std::optional<SkyPhase> phase);
    // Reads the model again; repaints only when the scene changed.
    void refresh();
    SkyPainter& painter() { return painter_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void reschedule();
    double seconds() const;

    ui::PanelHeader& header_;
    ui::PanelModel& model_;
    const ui::ThemeStore& theme_;
    SkyPainter painter_;
    SkyScene scene_;
    bool hasScene_ = false;
    std::optional<SkyPhase> forcedPhase_;
    QTimer frameTimer_;
    QTimer minuteTimer_;
    QElapsedTimer clock_;
};

// The phase TROTLET_QA_SKY_PHASE asks for, if any.
std::optional<SkyPhase> phaseFromEnvironment();

}  // namespace trotlet::sky
