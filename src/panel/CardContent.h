#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layout/CardSize.h"
#include "menubar/DisplayUnits.h"
#include "metrics/MetricHistory.h"
#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"
#include "panel/Level.h"
#include "reports/PawReport.h"

namespace trotlet::panel {

// One labelled reading under a card's headline: "Swap" "1.2 GB of 4 GB".
struct CardFact {
    std::string label;
    std::string value;
    Level level = Level::calm;
    bool operator==(const CardFact&) const = default;
};

// A horizontal bar: a core's load, a volume's fill.
struct CardBar {
    std::string label;
    double fraction = 0;  // 0..1
    Level level = Level::calm;
    bool operator==(const CardBar&) const = default;
};

// A chart of one or two history series; `ceiling` fixes the top (1 for fractions), 0 lets the
// chart scale to its data.
struct CardChart {
    metrics::HistorySeries series = metrics::HistorySeries::cpuTotal;
    std::optional<metrics::HistorySeries> second;
    double ceiling = 1;
    // Fixed values drawn as columns instead of a history (the Paw Report's week), oldest
    // first; none marks a day without a record, the last column is today.
    std::vector<std::optional<double>> columns;
    bool operator==(const CardChart&) const = default;
};

// What the Paw Report card and the header's odometer read: today's report with its week.
using PawSummary = reports::PawReport;

// The weather as the card shows it: none when no place is chosen or nothing was fetched.
struct WeatherSummary {
    std::string place;
    double temperatureC = 0;
    std::string condition;  // "Light rain"
    std::string symbol;     // "cloud.rain.fill"
    std::optional<double> highC;
    std::optional<double> lowC;
    std::optional<double> ageSeconds;
};

struct CardInputs {
    const metrics::MetricsSnapshot* sample = nullptr;  // none before the first sample
    metrics::MetricKinds kinds = metrics::MetricKinds::all;
    bool perCore = false;
    menubar::TemperatureUnit temperatureUnit = menubar::TemperatureUnit::celsius;
    menubar::NetworkUnit networkUnit = menubar::NetworkUnit::bytes;
    std::optional<PawSummary> paw;
    std::optional<WeatherSummary> weather;
};

// What one card says for a sample. The headline is split into digits and unit so the view can
// style them apart; a stand-in replaces the readings when the machine cannot give them.
struct CardContent {
    std::string id;
    std::string title;
    std::string symbol;
    std::string value;    // "37"
    std::string unit;     // "%"
    std::string caption;  // one line under the headline
    Level level = Level::calm;
    std::optional<double> gauge;  // 0..1, a fill bar under the headline
    std::optional<CardChart> chart;
    std::vector<CardFact> facts;
    std::vector<CardBar> bars;
    std::optional<std::string> standIn;
    std::string accessibleName;   // "CPU"
    std::string accessibleValue;  // "37 percent"

    bool operator==(const CardContent&) const = default;
};

// How much a card of a size shows.
struct SizeRules {
    bool chart = false;
    std::size_t facts = 0;
    bool bars = false;
};
SizeRules rulesFor(layout::CardSize size);

// The content of the card `id` at `size`. Facts and bars are already cut to what the size
// shows; an unknown id gives a card with only its id as title.
CardContent describeCard(std::string_view id, layout::CardSize size, const CardInputs& in);

// The battery's state in a few words: "Charging · 48m to full", "5h 12m left".
std::string batteryStateText(const metrics::BatteryMetrics& battery);

// "37%" read aloud: "37 percent"; other units as they are.
std::string spokenValue(const std::string& value, const std::string& unit);

}  // namespace trotlet::panel
