#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "panel/CardContent.h"
#include "panel/PanelRoute.h"
#include "panel/PublicAddress.h"
#include "weather/WeatherError.h"
#include "weather/WeatherReport.h"

namespace trotlet::panel {

// One labelled reading: "Swap" "1.2 GB of 8 GB". A `missing` value is a stand-in ("Not
// available") and is drawn in a quieter voice.
struct DetailRow {
    std::string label;
    std::string value;
    Level level = Level::calm;
    bool missing = false;
    bool operator==(const DetailRow&) const = default;
};

// A labelled bar: a core's load, a volume's fill, a fan's speed. `floor` and `ceiling`, when
// set, mark a range on the bar (a fan's minimum and maximum speed) in the bar's 0..1 scale.
struct DetailBar {
    std::string label;
    std::string value;
    double fraction = 0;
    Level level = Level::calm;
    std::string note;               // a second line: "201 GB free of 512 GB"
    std::vector<std::string> tags;  // "Internal", "Read-only"
    bool operator==(const DetailBar&) const = default;
};

struct DetailChart {
    metrics::HistorySeries series = metrics::HistorySeries::cpuTotal;
    std::optional<metrics::HistorySeries> second;
    double ceiling = 1;
    std::string name;        // for the read-out when two series share the chart: "↓"
    std::string secondName;  // "↑"
    bool operator==(const DetailChart&) const = default;
};

struct DetailProcess {
    std::int32_t pid = 0;
    std::string name;
    std::string value;  // "18%", "1.2 GB"
    double fraction = 0;
    bool operator==(const DetailProcess&) const = default;
};

struct DetailHour {
    std::string time;  // "15:00" in the place's zone
    std::string symbol;
    std::string temperature;
    std::string precipitation;  // "40%", empty when unlikely
    bool operator==(const DetailHour&) const = default;
};

struct DetailDay {
    std::string name;  // "Today", "Fri"
    std::string symbol;
    std::string low;
    std::string high;
    double from = 0;  // the day's low and high within the week's range, 0..1
    double to = 1;
    std::string precipitation;
    bool operator==(const DetailDay&) const = default;
};

// One part of a detail screen, drawn top to bottom under its title.
struct DetailBlock {
    enum class Kind {
        chart,      // `chart`, with the range switch
        pressure,   // `chart` as a strip of levels (memory pressure), following the chart's range
        rows,       // `rows`
        bars,       // `bars`, each with its label, value and note
        cores,      // `bars` as a compact grid of per-core meters
        processes,  // `processes`
        hours,      // `hours`: a strip of the next hours
        days,       // `days`: the week
        note,       // `note`, a sentence
        publicAddress,  // `rows` with the look-up button
    };
    Kind kind = Kind::rows;
    std::string title;
    std::optional<DetailChart> chart;
    std::vector<DetailRow> rows;
    std::vector<DetailBar> bars;
    std::vector<DetailProcess> processes;
    std::vector<DetailHour> hours;
    std::vector<DetailDay> days;
    std::string note;
    Level level = Level::calm;  // a note's tone
    std::string action;         // the button's label (the public address look-up)
    bool actionEnabled = true;
    bool operator==(const DetailBlock&) const = default;
};

struct DetailContent {
    MetricDetail detail = MetricDetail::cpu;
    std::string title;
    std::string symbol;
    std::string color;
    // The headline, as on the card: digits and unit apart, a caption under them.
    std::string value;
    std::string unit;
    std::string caption;
    Level level = Level::calm;
    std::string headlineSymbol;  // drawn large beside the reading (the weather's condition)
    // Replaces the readings when the machine has none of this kind; blocks may still follow.
    std::optional<std::string> standIn;
    std::vector<DetailBlock> blocks;
    std::string accessibleValue;  // the headline read aloud

    bool operator==(const DetailContent&) const = default;
    const DetailBlock* block(DetailBlock::Kind kind, const std::string& title = {}) const;
};

struct WeatherDetailInputs {
    bool placeChosen = false;
    std::optional<weather::WeatherReport> report;
    std::optional<weather::WeatherError> error;  // the last refresh failed
    bool loading = false;
    bool imperialWind = false;
};

struct DetailInputs {
    CardInputs card;       // the sample and the user's units
    std::int64_t now = 0;  // Unix seconds
    WeatherDetailInputs weather;
    PublicAddressState publicAddress;
};

// Everything a detail screen says for its kind: what the sample holds, laid out for reading,
// with the stand-in texts where the machine gives no reading.
DetailContent describeDetail(MetricDetail detail, const DetailInputs& in);

// "2.4 GHz", "5 GHz", "6 GHz" for a Wi-Fi frequency; empty outside the three bands.
std::string wifiBand(double frequencyMHz);

}  // namespace trotlet::panel
