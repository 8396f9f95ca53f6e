#pragma once

#include <QImage>

#include <string>

#include "panel/Appearance.h"
#include "panel/CardContent.h"

namespace trotlet::ui {
class PanelModel;
}

namespace trotlet::snapshot {

// The forecast the scenes show: a mild, partly cloudy afternoon.
panel::WeatherSummary sceneWeather();

// A tray strip for one mascot: each run loop by load band, then sitting and sleeping, each
// with the reading beside it as a top bar shows it, at menu-bar size.
QImage paintMenuBarStrip(const std::string& mascotId, panel::ColorScheme scheme);

// The panel hanging under its tray item in a desktop's top bar.
QImage paintHero(const QImage& panel, const ui::PanelModel& model, panel::ColorScheme scheme);

}  // namespace trotlet::snapshot
