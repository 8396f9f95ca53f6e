#include "panel/CardContent.h"

#include <algorithm>
#include <cmath>

#include "layout/OverviewCardRegistry.h"
#include "menubar/Format.h"
#include "panel/CardTexts.h"
#include "panel/HeaderContent.h"

namespace trotlet::panel {
namespace {

using layout::CardSize;
using menubar::Format;
using metrics::HistorySeries;
using metrics::MetricKinds;

// How far a gauge fills. A sample that doesn't add up (more used than there is, a battery past
// 100 %) keeps its own numbers in the text; the bar stays inside its track.
double gaugeFill(double fraction) {
    return std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
}

std::string percentText(double fraction) { return Format::percent(fraction); }

void headline(CardContent& c, const Format::Parts& parts) {
    c.value = parts.value;
    c.unit = parts.unit;
}

// "72°C": degrees read as one word, without the space other units get.
std::string temperature(double celsius, menubar::TemperatureUnit unit) {
    const auto parts = Format::temperatureParts(celsius, unit);
    return parts.value + parts.unit;
}

std::string rate(double bps, menubar::NetworkUnit unit) {
    return Format::rateParts(bps, unit).joined();
}

std::string ofTotal(double used, double total) {
    return Format::bytes(used) + " of " + Format::bytes(total);
}

void cpuCard(CardContent& c, const CardInputs& in, const SizeRules& rules) {
    const auto& cpu = in.sample->cpu;
    headline(c, Format::percentParts(cpu.total));
    c.level = loadLevel(cpu.total);
    c.caption = "User " + percentText(cpu.user) + " · System " + percentText(cpu.system);
    // A small card has room for one short fact: the minute's load average.
    if (rules.facts == 0 && !cpu.loadAvg.empty())
        c.caption = "Load " + Format::fixed(2, cpu.loadAvg[0]);
    c.chart = CardChart{HistorySeries::cpuTotal, std::nullopt, 1};
    if (cpu.loadAvg.size() >= 3)
        c.facts.push_back({"Load", Format::fixed(2, cpu.loadAvg[0]) + "  " +
                                       Format::fixed(2, cpu.loadAvg[1]) + "  " +
                                       Format::fixed(2, cpu.loadAvg[2])});
    if (cpu.processCount) c.facts.push_back({"Processes", std::to_string(*cpu.processCount)});
    if (cpu.threadCount) c.facts.push_back({"Threads", std::to_string(*cpu.threadCount)});
    if (rules.bars && in.perCore) {
        // Performance cores first, then the efficiency cluster, each labelled by its number.
        auto add = [&](const std::vector<metrics::CoreLoad>& cores, const char* prefix) {
            for (const auto& core : cores)
                c.bars.push_back(
                    {prefix + std::to_string(core.index), core.load, loadLevel(core.load)});
        };
        add(cpu.performanceCores(), cpu.efficiencyCoreIndices.empty() ? "" : "P");
        add(cpu.efficiencyCores(), "E");
    }
}

void memoryCard(CardContent& c, const CardInputs& in, const SizeRules& rules) {
    const auto& m = in.sample->memory;
    const double fraction = m.total > 0 ? double(m.used) / double(m.total) : 0;
    headline(c, Format::percentParts(fraction));
    c.gauge = gaugeFill(fraction);
    c.level = worst(pressureLevel(m.pressure), fraction >= 0.9 ? Level::hot : Level::calm);
    // A small card has room for the total alone; the used amount is the headline's share.
    c.caption = rules.facts == 0 ? "of " + Format::bytes(double(m.total))
                                 : ofTotal(double(m.used), double(m.total));
    c.chart = CardChart{HistorySeries::memoryUsed, std::nullopt, 1};
    if (m.pressure != metrics::MemoryPressure::unknown) {
        static constexpr const char* names[] = {"Unknown", "Normal", "Warning", "Critical"};
        c.facts.push_back({"Pressure", names[int(m.pressure)], pressureLevel(m.pressure)});
    }
    if (m.swapTotal > 0)
        c.facts.push_back({"Swap", ofTotal(double(m.swapUsed), double(m.swapTotal)),
                           loadLevel(double(m.swapUsed) / double(m.swapTotal))});
    c.facts.push_back({"Apps", Format::bytes(double(m.app))});
    c.facts.push_back({"Cached", Format::bytes(double(m.cached))});
    c.facts.push_back({"Wired", Format::bytes(double(m.wired))});
}

void networkCard(CardContent& c, const CardInputs& in) {
    const auto& n = in.sample->network;
    headline(c, Format::rateParts(n.downBps, in.networkUnit));
    c.caption = n.online ? "Up " + rate(n.upBps, in.networkUnit) : "Offline";
    c.level = n.online ? Level::calm : Level::busy;
    c.chart = CardChart{HistorySeries::downBps, HistorySeries::upBps, 0};
    if (n.interface) {
        std::string kind;
        if (n.interfaceKind == metrics::InterfaceKind::wifi) kind = " · Wi-Fi";
        if (n.interfaceKind == metrics::InterfaceKind::wired) kind = " · Ethernet";
        c.facts.push_back({"Interface", *n.interface + kind});
    }
    if (n.localIP) c.facts.push_back({"Local IP", *n.localIP});
    if (n.totalDownBytes) c.facts.push_back({"Received", Format::bytes(double(*n.totalDownBytes))});
    if (n.totalUpBytes) c.facts.push_back({"Sent", Format::bytes(double(*n.totalUpBytes))});
    if (n.vpnInterface) c.facts.push_back({"VPN", *n.vpnInterface});
}

void gpuCard(CardContent& c, const CardInputs& in) {
    if (!in.sample->gpu) {
        c.standIn = noGpuStatisticsText();
        return;
    }
    const auto& g = *in.sample->gpu;
    headline(c, Format::percentParts(g.utilization));
    c.level = loadLevel(g.utilization);
    c.caption = g.name;
    c.chart = CardChart{HistorySeries::gpuUtilization, std::nullopt, 1};
    if (g.memoryUsedBytes) c.facts.push_back({"Memory", Format::bytes(double(*g.memoryUsedBytes))});
    if (in.sample->thermal.gpuC)
        c.facts.push_back({"Temperature", temperature(*in.sample->thermal.gpuC, in.temperatureUnit),
                           temperatureLevel(*in.sample->thermal.gpuC)});
}

std::string fanText(const metrics::ThermalMetrics& t) {
    if (!t.fans.empty()) {
        double top = 0;
        for (const auto& f : t.fans) top = std::max(top, f.rpm);
        return Format::fixed(0, top) + " rpm";
    }
    if (t.fanCount == 0) return noFansText();
    return fanSpeedsUnavailableText();
}

void heatCard(CardContent& c, const CardInputs& in) {
    const auto& t = in.sample->thermal;
    const std::optional<double> main = t.cpuC ? t.cpuC : t.hottestC();
    if (!main) {
        c.standIn = noTemperatureSensorsText();
        return;
    }
    headline(c, Format::temperatureParts(*main, in.temperatureUnit));
    c.level = worst(temperatureLevel(*main), thermalLevel(t.state));
    c.caption = t.cpuC ? "CPU" : "Hottest sensor";
    c.chart = CardChart{HistorySeries::cpuC, std::nullopt, 0};
    c.facts.push_back({"Fans", fanText(t)});
    if (t.gpuC)
        c.facts.push_back(
            {"GPU", temperature(*t.gpuC, in.temperatureUnit), temperatureLevel(*t.gpuC)});
    if (t.socC)
        c.facts.push_back(
            {"SoC", temperature(*t.socC, in.temperatureUnit), temperatureLevel(*t.socC)});
    if (t.cpuMaxC)
        c.facts.push_back({"Hottest core", temperature(*t.cpuMaxC, in.temperatureUnit),
                           temperatureLevel(*t.cpuMaxC)});
}

std::string batteryCaption(const metrics::BatteryMetrics& b) {
    if (b.fullyCharged) return "Fully charged";
    const std::string left =
        b.timeRemainingMin ? Format::duration(double(*b.timeRemainingMin) * 60) : "";
    if (b.charging) return left.empty() ? "Charging" : "Charging · " + left + " to full";
    if (b.pluggedIn) return "Plugged in, not charging";
    return left.empty() ? "On battery" : left + " left";
}

void batteryCard(CardContent& c, const CardInputs& in) {
    const auto& b = in.sample->battery;
    if (!b.present) {
        c.standIn = noBatteryText();
        return;
    }
    headline(c, Format::percentParts(double(b.percent) / 100.0));
    c.gauge = gaugeFill(double(b.percent) / 100.0);
    c.level = batteryLevel(b.percent, b.charging);
    c.caption = batteryCaption(b);
    c.chart = CardChart{HistorySeries::batteryPercent, std::nullopt, 100};
    if (b.healthPct) c.facts.push_back({"Health", Format::fixed(0, *b.healthPct) + "%"});
    if (b.cycles) c.facts.push_back({"Cycles", std::to_string(*b.cycles)});
    if (b.watts) c.facts.push_back({"Power", Format::fixed(1, *b.watts) + " W"});
    if (b.lowPowerMode) c.facts.push_back({"Power saver", "On"});
}

void diskCard(CardContent& c, const CardInputs& in, const SizeRules& rules) {
    const auto& d = in.sample->disks;
    const auto root = d.rootVolume();
    if (root && root->hasSpace()) {
        const auto total = *root->totalBytes, available = *root->availableBytes;
        headline(c, Format::bytesParts(double(available)));
        c.gauge = gaugeFill(1.0 - double(available) / double(total));
        c.level = freeSpaceLevel(available, total);
        c.caption = "free of " + Format::bytes(double(total));
    } else if (d.readBps) {
        headline(c, Format::rateParts(*d.readBps, false));
        c.caption = "Read";
    } else {
        c.standIn = root ? diskSpaceUnavailableText() : "No disks";
        return;
    }
    if (d.readBps || d.writeBps)
        c.chart = CardChart{HistorySeries::diskReadBps, HistorySeries::diskWriteBps, 0};
    if (d.readBps) c.facts.push_back({"Read", rate(*d.readBps, menubar::NetworkUnit::bytes)});
    if (d.writeBps) c.facts.push_back({"Write", rate(*d.writeBps, menubar::NetworkUnit::bytes)});
    if (rules.bars)
        for (const auto& v : d.volumes) {
            // An empty bar would read as an empty disk; a volume that has not answered waits
            // for its detail screen to say so.
            if (!v.hasSpace()) continue;
            const double used = 1.0 - double(*v.availableBytes) / double(*v.totalBytes);
            c.bars.push_back({v.name, used, freeSpaceLevel(*v.availableBytes, *v.totalBytes)});
        }
}

void pawCard(CardContent& c, const CardInputs& in) {
    if (!in.paw) {
        c.standIn = "Nothing to report yet";
        return;
    }
    const reports::PawReport& r = *in.paw;
    // "3.42 km": the number as the headline, the unit beside it.
    const std::string distance = reports::distanceText(r.track.todayMeters);
    const std::string_view text(distance);
    const auto space = text.find(' ');
    c.value = std::string(text.substr(0, space));
    if (space != std::string_view::npos) c.unit = std::string(text.substr(space + 1));
    c.caption = r.track.todayMeters >= 1 ? reports::shortComparisonText(r.track.todayMeters)
                                         : "No run yet today";
    CardChart week;
    week.ceiling = 0;
    const auto& days = r.row(reports::PawMeasure::distance).week;
    week.columns.assign(days.begin(), days.end());
    c.chart = week;
    // Short labels: a card's fact column is narrow.
    c.facts.push_back({"Active", r.row(reports::PawMeasure::activeTime).value});
    c.facts.push_back({"Fish today", r.row(reports::PawMeasure::fishEarned).value});
    c.facts.push_back({"Asleep", r.row(reports::PawMeasure::asleep).value});
}

void weatherCard(CardContent& c, const CardInputs& in) {
    if (!in.weather) {
        c.standIn = noWeatherPlaceText();
        return;
    }
    const auto& w = *in.weather;
    headline(c, Format::temperatureParts(w.temperatureC, in.temperatureUnit));
    c.symbol = w.symbol;
    c.caption = w.condition + " · " + w.place;
    if (w.highC && w.lowC)
        c.facts.push_back({"High / low", temperature(*w.highC, in.temperatureUnit) + " / " +
                                             temperature(*w.lowC, in.temperatureUnit)});
}

bool needsSample(std::string_view id) { return id != "weather" && id != "pawreport"; }

MetricKinds kindsFor(std::string_view id) {
    if (id == "cpu") return MetricKinds::cpu;
    if (id == "memory") return MetricKinds::memory;
    if (id == "network") return MetricKinds::network;
    if (id == "gpu") return MetricKinds::gpu;
    if (id == "heat") return MetricKinds::sensors;
    if (id == "battery") return MetricKinds::battery;
    if (id == "disk") return MetricKinds::volumes | MetricKinds::diskIO;
    return MetricKinds{};
}

}  // namespace

SizeRules rulesFor(CardSize size) {
    switch (size) {
        case CardSize::small:
            return {false, 0, false};
        case CardSize::medium:
            return {true, 2, false};
        case CardSize::wide:
            return {true, 3, false};
        case CardSize::large:
            return {true, 6, true};
    }
    return {};
}

std::string batteryStateText(const metrics::BatteryMetrics& battery) {
    return batteryCaption(battery);
}

std::string spokenValue(const std::string& value, const std::string& unit) {
    if (value.empty()) return "";
    if (unit == "%") return value + " percent";
    if (unit.empty()) return value;
    return value + " " + unit;
}

CardContent describeCard(std::string_view id, CardSize size, const CardInputs& in) {
    CardContent c;
    c.id = std::string(id);
    const auto* kind = layout::OverviewCardRegistry::standard().kind(id);
    c.title = kind ? kind->title : c.id;
    c.symbol = kind ? kind->symbol : "";
    const SizeRules rules = rulesFor(size);

    const bool haveSample = in.sample && in.kinds.intersects(kindsFor(id));
    if (needsSample(id) && !haveSample) {
        c.standIn = waitingForReadingsText();
    } else if (id == "cpu") {
        cpuCard(c, in, rules);
    } else if (id == "memory") {
        memoryCard(c, in, rules);
    } else if (id == "network") {
        networkCard(c, in);
    } else if (id == "gpu") {
        gpuCard(c, in);
    } else if (id == "heat") {
        heatCard(c, in);
    } else if (id == "battery") {
        batteryCard(c, in);
    } else if (id == "disk") {
        diskCard(c, in, rules);
    } else if (id == "pawreport") {
        pawCard(c, in);
    } else if (id == "weather") {
        weatherCard(c, in);
    }

    if (c.standIn) {
        c.value.clear();
        c.unit.clear();
        c.caption.clear();
        c.gauge.reset();
        c.chart.reset();
        c.facts.clear();
        c.bars.clear();
    }
    if (!rules.chart) c.chart.reset();
    if (c.facts.size() > rules.facts) c.facts.resize(rules.facts);
    c.accessibleName = c.title;
    c.accessibleValue = c.standIn ? *c.standIn : spokenValue(c.value, c.unit);
    if (!c.standIn && !c.caption.empty()) c.accessibleValue += ", " + c.caption;
    return c;
}

}  // namespace trotlet::panel
