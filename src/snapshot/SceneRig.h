#pragma once

#include <memory>
#include <optional>

#include <QImage>

#include "layout/LayoutStore.h"
#include "mascot/MascotMood.h"
#include "metrics/MetricHistory.h"
#include "metrics/MetricsFixture.h"
#include "panel/Appearance.h"
#include "settings/AppSettings.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/ThemeStore.h"

class QWidget;

namespace trotlet::snapshot {

// The fixed moment every scene shows: 1 October 2026, 14:30 in the scenes' time zone.
metrics::Timestamp sceneTime();
// The zone the scenes' clock reads in; set before anything formats a local time.
inline constexpr const char* sceneTimeZone = "Europe/Berlin";

// What a scene stands on: in-memory settings, the layout, a history of the last three minutes
// leading up to a fixture's sample, the panel's model and a theme. Nothing touches the user's
// files, the bus or the network.
class SceneRig {
public:
    explicit SceneRig(metrics::MetricsFixture fixture);

    settings::AppSettings& settings() { return settings_; }
    layout::LayoutStore& layout() { return layout_; }
    ui::PanelModel& model() { return model_; }
    ui::ThemeStore& theme() { return theme_; }
    const metrics::MetricsSnapshot& sample() const { return sample_; }
    metrics::MetricHistory& history() { return history_; }

    // Renders a widget in the given scheme at the screen's scale (the harness runs at 2).
    QImage render(QWidget& widget, panel::ColorScheme scheme);

private:
    settings::AppSettings settings_;
    layout::LayoutStore layout_;
    metrics::MetricHistory history_;
    metrics::MetricsSnapshot sample_;
    ui::PanelModel model_;
    ui::ThemeStore theme_;
};

// The fixture whose sample puts the mascot in a mood, for scenes that show moods.
metrics::MetricsFixture fixtureForMood(mascot::MascotMood mood);

// A deterministic recent past for a fixture: the sample's readings wandering gently around
// their values, one point every `stepSeconds` with the `kinds` sampled, ending at the sample.
void fillSceneHistory(metrics::MetricHistory& history, const metrics::MetricsSnapshot& sample,
                      int points, int stepSeconds = 2,
                      metrics::MetricKinds kinds = metrics::MetricKinds::all);

}  // namespace trotlet::snapshot
