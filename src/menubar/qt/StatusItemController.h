#pragma once

#include <functional>
#include <map>
#include <string>

#include <QObject>
#include <QString>

#include "menubar/LabelPlacement.h"
#include "menubar/StickyWidth.h"
#include "menubar/TickerText.h"

#include "settings/SettingsEnums.h"

namespace trotlet::settings {
class AppSettings;
}  // namespace trotlet::settings
namespace trotlet::mascot {
class MascotAnimator;
}
namespace trotlet::metrics {
class MetricsStore;
}
namespace trotlet::platform {
class TrayItem;
}

namespace trotlet::menubar {

// Feeds the tray item: the animator's published frame, the ticker text with its reserved
// width, and a tooltip with the mood line and the main readings. It sends nothing the item
// already shows; the item itself drops frames whose key it has.
class StatusItemController : public QObject {
    Q_OBJECT
public:
    StatusItemController(platform::TrayItem& tray, mascot::MascotAnimator& animator,
                         metrics::MetricsStore& store, settings::AppSettings& settings,
                         LabelPlacement placement, QObject* parent = nullptr);
    ~StatusItemController() override;

    // The mascot's display name for the tooltip ("Mochi").
    void setMascotName(const QString& name);

    // The weather's temperature beside the reading ("12°C"), asked for at every redraw; empty
    // when the weather is off or not known yet.
    void setWeatherText(std::function<QString()> text);
    // The weather or its switch changed: redraw the label without waiting for a sample.
    void weatherChanged() { showReadings(); }

    // Re-reads the menu-bar settings (after a change) and redraws.
    void settingsChanged();

private:
    void showFrame();
    void showReadings();
    // The widest sample text of a metric, measured once.
    const std::string& sampleGuide(settings::MenuBarTextMetric metric);

    platform::TrayItem& tray_;
    mascot::MascotAnimator& animator_;
    metrics::MetricsStore& store_;
    settings::AppSettings& settings_;
    TickerWidth width_;
    StickyWidth sticky_;
    std::map<settings::MenuBarTextMetric, std::string> sampleGuides_;
    QString mascotName_ = QStringLiteral("Mochi");
    std::function<QString()> weatherText_;
    int menuBarObserver_ = -1;
    int monitoringObserver_ = -1;
};

}  // namespace trotlet::menubar
