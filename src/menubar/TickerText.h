#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "menubar/DisplayUnits.h"
#include "metrics/MetricsSnapshot.h"
#include "settings/SettingsEnums.h"

namespace trotlet::menubar {

using settings::MenuBarTextMetric;

// The short reading beside the mascot in the tray: "37%", "72°C", "↓1.2 MB/s". Empty when
// the metric is `none` or the sample lacks the reading; the item then shows the mascot alone.
std::string tickerText(MenuBarTextMetric metric, const metrics::MetricsSnapshot& snapshot,
                       TemperatureUnit temperatureUnit, NetworkUnit networkUnit);

// The texts whose widest sets the room a metric reserves, so the item keeps one width while
// digits change.
std::vector<std::string> tickerSampleTexts(MenuBarTextMetric metric);

// The width the tray item reserves for its text. Measuring is passed in (the tray font lives in
// the application layer); each metric's sample width is measured once and kept.
class TickerWidth {
public:
    using Measure = std::function<double(std::string_view)>;

    explicit TickerWidth(Measure measure) : measure_(std::move(measure)) {}

    // The widest sample text of the metric, rounded up to whole points; 0 for `none`.
    double sampleWidth(MenuBarTextMetric metric);

    // 0 for `none`, else the larger of the sample width and the current text's width.
    double reservedWidth(MenuBarTextMetric metric, std::string_view text);

private:
    Measure measure_;
    std::map<MenuBarTextMetric, double> cache_;
};

}  // namespace trotlet::menubar
