#include "panel/DetailContent.h"

#include <algorithm>
#include <cmath>

#include "layout/OverviewCardRegistry.h"
#include "mascot/ProcessDisplayName.h"
#include "menubar/Format.h"
#include "panel/CardTexts.h"
#include "panel/DetailTexts.h"
#include "panel/HeaderContent.h"
#include "panel/PanelTabs.h"
#include "panel/WeatherDetail.h"

namespace trotlet::panel {

using menubar::Format;
using metrics::HistorySeries;
using metrics::MetricKinds;
using Kind = DetailBlock::Kind;

namespace {

std::string temperature(double celsius, const CardInputs& in) {
    const auto parts = Format::temperatureParts(celsius, in.temperatureUnit);
    return parts.value + parts.unit;
}

std::string ofTotal(double used, double total) {
    return Format::bytes(used) + " of " + Format::bytes(total);
}

DetailRow missing(const std::string& label) {
    return {label, notAvailableText(), Level::calm, true};
}

template <typename T, typename F>
DetailRow optionalRow(const std::string& label, const std::optional<T>& value, F text) {
    if (!value) return missing(label);
    return {label, text(*value)};
}

DetailBlock chartBlock(const std::string& title, HistorySeries series, double ceiling,
                       std::optional<HistorySeries> second = std::nullopt,
                       const std::string& name = {}, const std::string& secondName = {}) {
    DetailBlock b;
    b.kind = Kind::chart;
    b.title = title;
    b.chart = DetailChart{series, second, ceiling, name, secondName};
    return b;
}

DetailBlock rowsBlock(const std::string& title, std::vector<DetailRow> rows) {
    DetailBlock b;
    b.kind = Kind::rows;
    b.title = title;
    b.rows = std::move(rows);
    return b;
}

DetailBlock noteBlock(const std::string& title, const std::string& note,
                      Level level = Level::calm) {
    DetailBlock b;
    b.kind = Kind::note;
    b.title = title;
    b.note = note;
    b.level = level;
    return b;
}

void headline(DetailContent& c, const Format::Parts& parts) {
    c.value = parts.value;
    c.unit = parts.unit;
}

// The top processes: as many as the sample lists, up to five.
DetailBlock processBlock(const std::vector<metrics::ProcessRow>& rows, bool byMemory,
                         std::uint64_t totalMemory) {
    DetailBlock b;
    b.kind = Kind::processes;
    b.title = byMemory ? "Top processes by memory" : "Top processes by CPU";
    for (const auto& row : rows) {
        if (b.processes.size() == 5) break;
        DetailProcess p;
        p.pid = row.pid;
        p.name = mascot::ProcessDisplayName::of(row).text();
        if (byMemory) {
            p.value = Format::bytes(double(row.memoryBytes));
            p.fraction = totalMemory > 0 ? double(row.memoryBytes) / double(totalMemory) : 0;
        } else {
            // Of one core, as `top` shows it: a busy multi-threaded process may pass 100 %.
            p.value = Format::percent(row.cpuPercent / 100);
            p.fraction = row.cpuPercent / 100;
        }
        p.fraction = std::clamp(p.fraction, 0.0, 1.0);
        b.processes.push_back(std::move(p));
    }
    if (b.processes.empty()) return noteBlock(b.title, waitingForProcessesText());
    return b;
}

void cpuDetail(DetailContent& c, const DetailInputs& in) {
    const auto& cpu = in.card.sample->cpu;
    headline(c, Format::percentParts(cpu.total));
    c.level = loadLevel(cpu.total);
    c.caption = "User " + Format::percent(cpu.user) + " · System " + Format::percent(cpu.system);
    c.blocks.push_back(chartBlock("Load", HistorySeries::cpuTotal, 1));

    auto coreBlock = [&](const std::string& title, const std::vector<metrics::CoreLoad>& cores,
                         const std::string& prefix) {
        if (cores.empty()) return;
        DetailBlock b;
        b.kind = Kind::cores;
        b.title = title + " · " + std::to_string(cores.size());
        for (const auto& core : cores)
            b.bars.push_back({prefix + std::to_string(core.index), Format::percent(core.load),
                              std::clamp(core.load, 0.0, 1.0), loadLevel(core.load)});
        c.blocks.push_back(std::move(b));
    };
    if (cpu.efficiencyCoreIndices.empty()) {
        coreBlock("Cores", cpu.performanceCores(), "");
    } else {
        coreBlock("Performance cores", cpu.performanceCores(), "P");
        coreBlock("Efficiency cores", cpu.efficiencyCores(), "E");
    }

    std::vector<DetailRow> rows;
    if (cpu.loadAvg.size() >= 3)
        rows.push_back({"Load average", Format::fixed(2, cpu.loadAvg[0]) + " · " +
                                            Format::fixed(2, cpu.loadAvg[1]) + " · " +
                                            Format::fixed(2, cpu.loadAvg[2])});
    else
        rows.push_back(missing("Load average"));
    rows.push_back(optionalRow("Processes", cpu.processCount,
                               [](std::int64_t n) { return groupedNumber(n); }));
    rows.push_back(
        optionalRow("Threads", cpu.threadCount, [](std::int64_t n) { return groupedNumber(n); }));
    c.blocks.push_back(rowsBlock("Activity", std::move(rows)));
    if (in.card.kinds.contains(MetricKinds::processes))
        c.blocks.push_back(processBlock(in.card.sample->processes.topCPU, false, 0));
}

void memoryDetail(DetailContent& c, const DetailInputs& in) {
    const auto& m = in.card.sample->memory;
    const double fraction = m.total > 0 ? double(m.used) / double(m.total) : 0;
    headline(c, Format::percentParts(fraction));
    c.level = worst(pressureLevel(m.pressure), fraction >= 0.9 ? Level::hot : Level::calm);
    c.caption = ofTotal(double(m.used), double(m.total)) + " in use";
    c.blocks.push_back(chartBlock("Used", HistorySeries::memoryUsed, 1));

    if (m.pressure == metrics::MemoryPressure::unknown) {
        c.blocks.push_back(noteBlock("Pressure", noMemoryPressureText()));
    } else {
        DetailBlock b = chartBlock("Pressure", HistorySeries::memoryPressure, 3);
        b.kind = Kind::pressure;
        b.note = pressureName(m.pressure);
        b.level = pressureLevel(m.pressure);
        c.blocks.push_back(std::move(b));
    }

    std::vector<DetailRow> rows = {
        {"In use", Format::bytes(double(m.used))},
        {"Apps", Format::bytes(double(m.app))},
        {"Kernel (wired)", Format::bytes(double(m.wired))},
        {"Compressed", Format::bytes(double(m.compressed))},
        {"Cache", Format::bytes(double(m.cached))},
        {"Free", Format::bytes(double(m.free))},
    };
    if (m.swapTotal > 0)
        rows.push_back({"Swap", ofTotal(double(m.swapUsed), double(m.swapTotal)),
                        loadLevel(double(m.swapUsed) / double(m.swapTotal))});
    else
        rows.push_back({"Swap", "None", Level::calm, true});
    c.blocks.push_back(rowsBlock("Breakdown", std::move(rows)));
    if (in.card.kinds.contains(MetricKinds::processes))
        c.blocks.push_back(processBlock(in.card.sample->processes.topMemory, true, m.total));
}

std::string interfaceText(const metrics::NetworkMetrics& n) {
    std::string text = *n.interface;
    if (n.interfaceKind) text += " · " + interfaceKindName(*n.interfaceKind);
    return text;
}

DetailBlock publicAddressBlock(const PublicAddressState& state, std::int64_t now) {
    DetailBlock b;
    b.kind = Kind::publicAddress;
    b.title = "Public address";
    switch (state.status) {
        case PublicAddressState::Status::idle:
            b.note = publicAddressPrompt(state.service);
            b.action = "Show public address";
            break;
        case PublicAddressState::Status::loading:
            b.rows.push_back({"Address", "Looking up…", Level::calm, true});
            b.action = "Looking up…";
            b.actionEnabled = false;
            break;
        case PublicAddressState::Status::found:
            b.rows.push_back({"Address", state.address});
            b.note = "Looked up " + weatherAge(double(now - state.fetchedAt));
            b.action = "Look up again";
            break;
        case PublicAddressState::Status::failed:
            b.note = state.error;
            b.level = Level::hot;
            b.action = "Try again";
            break;
    }
    return b;
}

void networkDetail(DetailContent& c, const DetailInputs& in) {
    const auto& n = in.card.sample->network;
    headline(c, Format::rateParts(n.downBps, in.card.networkUnit));
    c.caption =
        n.online ? "Download · Upload " + Format::rateParts(n.upBps, in.card.networkUnit).joined()
                 : "Offline";
    c.level = n.online ? Level::calm : Level::busy;
    c.blocks.push_back(chartBlock("Download", HistorySeries::downBps, 0));
    c.blocks.push_back(chartBlock("Upload", HistorySeries::upBps, 0));

    std::vector<DetailRow> rows;
    rows.push_back(
        {"Status", n.online ? "Online" : "Offline", n.online ? Level::calm : Level::busy});
    rows.push_back(n.interface ? DetailRow{"Interface", interfaceText(n)} : missing("Interface"));
    rows.push_back(optionalRow("Local address", n.localIP, [](const std::string& s) { return s; }));
    rows.push_back(optionalRow("Router", n.router, [](const std::string& s) { return s; }));
    rows.push_back(n.vpnInterface ? DetailRow{"VPN", *n.vpnInterface}
                                  : DetailRow{"VPN", "Not connected", Level::calm, true});
    c.blocks.push_back(rowsBlock("Connection", std::move(rows)));

    if (n.interfaceKind == metrics::InterfaceKind::wifi) {
        const metrics::WifiDetails wifi = n.wifi.value_or(metrics::WifiDetails{});
        std::vector<DetailRow> w;
        w.push_back(optionalRow("Network", wifi.ssid, [](const std::string& s) { return s; }));
        const std::string band = wifi.frequencyMHz ? wifiBand(*wifi.frequencyMHz) : "";
        w.push_back(band.empty() ? missing("Band") : DetailRow{"Band", band});
        if (wifi.rssiDbm || wifi.qualityPercent) {
            std::string signal = wifi.rssiDbm ? std::to_string(*wifi.rssiDbm) + " dBm" : "";
            if (wifi.qualityPercent)
                signal += (signal.empty() ? "" : " · ") +
                          Format::percent(double(*wifi.qualityPercent) / 100);
            const Level level =
                wifi.qualityPercent && *wifi.qualityPercent < 30 ? Level::busy : Level::calm;
            w.push_back({"Signal", signal, level});
        } else {
            w.push_back(missing("Signal"));
        }
        c.blocks.push_back(rowsBlock("Wi-Fi", std::move(w)));
    }

    c.blocks.push_back(rowsBlock(
        "Since startup", {optionalRow("Received", n.totalDownBytes,
                                      [](std::uint64_t b) { return Format::bytes(double(b)); }),
                          optionalRow("Sent", n.totalUpBytes,
                                      [](std::uint64_t b) { return Format::bytes(double(b)); })}));
    c.blocks.push_back(publicAddressBlock(in.publicAddress, in.now));
}

void diskDetail(DetailContent& c, const DetailInputs& in) {
    const auto& d = in.card.sample->disks;
    const auto root = d.rootVolume();
    if (root && root->hasSpace()) {
        headline(c, Format::bytesParts(double(*root->availableBytes)));
        c.caption = "free of " + Format::bytes(double(*root->totalBytes)) + " on " + root->name;
        c.level = freeSpaceLevel(*root->availableBytes, *root->totalBytes);
    } else if (d.volumes.empty() && !d.readBps) {
        c.standIn = noDisksText();
        return;
    } else if (d.readBps) {
        headline(c, Format::rateParts(*d.readBps, false));
        c.caption = "Read";
    } else if (root) {
        c.caption = diskSpaceUnavailableText();  // the system disk is there but does not answer
    }
    if (d.readBps || d.writeBps) {
        c.blocks.push_back(chartBlock("Read", HistorySeries::diskReadBps, 0));
        c.blocks.push_back(chartBlock("Write", HistorySeries::diskWriteBps, 0));
    }
    DetailBlock volumes;
    volumes.kind = Kind::bars;
    volumes.title = "Volumes";
    for (const auto& v : d.volumes) {
        DetailBar bar;
        bar.label = v.name;
        if (v.hasSpace()) {
            const auto total = *v.totalBytes, available = *v.availableBytes;
            bar.fraction = std::clamp(1.0 - double(available) / double(total), 0.0, 1.0);
            bar.value = Format::bytes(double(available)) + " free";
            bar.level = freeSpaceLevel(available, total);
            bar.note = "of " + Format::bytes(double(total)) + " · " + v.path;
        } else if (!v.totalBytes || !v.availableBytes) {
            bar.value = volumeUnavailableText();
            bar.note = volumeNotRespondingNote(v.path);
        } else {
            bar.note = "of " + Format::bytes(double(std::max<std::int64_t>(*v.totalBytes, 0))) +
                       " · " + v.path;
        }
        if (v.isRoot) bar.tags.push_back("System");
        bar.tags.push_back(v.isInternal ? "Internal" : "External");
        if (v.isRemovable) bar.tags.push_back("Removable");
        if (v.isReadOnly) bar.tags.push_back("Read-only");
        volumes.bars.push_back(std::move(bar));
    }
    if (volumes.bars.empty())
        c.blocks.push_back(noteBlock("Volumes", noVolumesText()));
    else
        c.blocks.push_back(std::move(volumes));
    c.blocks.push_back(rowsBlock(
        "Since startup", {optionalRow("Read", d.totalReadBytes,
                                      [](std::uint64_t b) { return Format::bytes(double(b)); }),
                          optionalRow("Written", d.totalWrittenBytes,
                                      [](std::uint64_t b) { return Format::bytes(double(b)); })}));
}

void batteryDetail(DetailContent& c, const DetailInputs& in) {
    const auto& b = in.card.sample->battery;
    if (!b.present) {
        c.standIn = noBatteryText();
        return;
    }
    headline(c, Format::percentParts(double(b.percent) / 100));
    c.level = batteryLevel(b.percent, b.charging);
    c.caption = batteryStateText(b);
    c.blocks.push_back(chartBlock("Charge", HistorySeries::batteryPercent, 100));

    std::vector<DetailRow> rows;
    const std::string state = b.fullyCharged ? "Fully charged"
                              : b.charging   ? "Charging"
                              : b.pluggedIn  ? "Plugged in, not charging"
                                             : "On battery";
    rows.push_back({"State", state});
    if (b.fullyCharged)
        rows.push_back({"Time remaining", "—", Level::calm, true});
    else
        rows.push_back(
            optionalRow(b.charging ? "Time to full" : "Time remaining", b.timeRemainingMin,
                        [](std::int64_t m) { return Format::duration(double(m) * 60); }));
    rows.push_back(
        optionalRow("Health", b.healthPct, [](double h) { return Format::fixed(0, h) + "%"; }));
    rows.push_back(
        optionalRow("Cycles", b.cycles, [](std::int64_t n) { return groupedNumber(n); }));
    rows.push_back(optionalRow("Condition", b.condition, [](const std::string& s) { return s; }));
    if (b.temperatureC)
        rows.push_back({"Temperature", temperature(*b.temperatureC, in.card),
                        *b.temperatureC >= 45 ? Level::hot : Level::calm});
    else
        rows.push_back(missing("Temperature"));
    rows.push_back(optionalRow("Power draw", b.watts, [](double w) { return powerFlowText(w); }));
    if (b.systemWatts) rows.push_back({"System power", Format::fixed(1, *b.systemWatts) + " W"});
    if (b.adapterWatts || b.adapterName) {
        std::string adapter = b.adapterWatts ? std::to_string(*b.adapterWatts) + " W" : "";
        if (b.adapterName) adapter += (adapter.empty() ? "" : " · ") + *b.adapterName;
        rows.push_back({"Adapter", adapter});
    } else {
        rows.push_back(
            {"Adapter", b.pluggedIn ? notAvailableText() : "Not connected", Level::calm, true});
    }
    rows.push_back({"Power saver", b.lowPowerMode ? "On" : "Off"});
    c.blocks.push_back(rowsBlock("Battery", std::move(rows)));
}

void heatDetail(DetailContent& c, const DetailInputs& in) {
    const auto& t = in.card.sample->thermal;
    const std::optional<double> main = t.cpuC ? t.cpuC : t.hottestC();
    if (main) {
        headline(c, Format::temperatureParts(*main, in.card.temperatureUnit));
        c.level = worst(temperatureLevel(*main), thermalLevel(t.state));
        c.caption = (t.cpuC ? "CPU · " : "Hottest sensor · ") + thermalStateName(t.state);
        c.blocks.push_back(chartBlock("CPU temperature", HistorySeries::cpuC, 0));
    } else {
        c.standIn = noTemperatureSensorsText();
    }

    std::vector<DetailRow> state;
    if (main) state.push_back({"Thermal state", thermalStateName(t.state), thermalLevel(t.state)});
    if (t.cpuMaxC)
        state.push_back(
            {"Hottest core", temperature(*t.cpuMaxC, in.card), temperatureLevel(*t.cpuMaxC)});
    if (t.systemPowerW) state.push_back({"System power", Format::fixed(1, *t.systemPowerW) + " W"});
    if (!state.empty()) c.blocks.push_back(rowsBlock("System", std::move(state)));

    for (std::size_t g = 0; g < metrics::SensorGroupNames.size(); ++g) {
        const auto group = metrics::SensorGroup(g);
        std::vector<DetailRow> rows;
        for (const auto& s : t.sensors)
            if (s.group == group)
                rows.push_back(
                    {s.name, temperature(s.celsius, in.card), temperatureLevel(s.celsius)});
        if (!rows.empty()) c.blocks.push_back(rowsBlock(sensorGroupName(group), std::move(rows)));
    }

    if (t.fans.empty()) {
        c.blocks.push_back(
            noteBlock("Fans", t.fanCount == 0 ? noFansText() : fanSpeedsUnavailableText()));
        return;
    }
    DetailBlock fans;
    fans.kind = Kind::bars;
    fans.title = "Fans";
    double fastest = 1;
    for (const auto& f : t.fans) fastest = std::max(fastest, f.rpm);
    for (const auto& f : t.fans) {
        DetailBar bar;
        bar.label = "Fan " + std::to_string(f.index);
        bar.value = groupedNumber(std::llround(f.rpm)) + " rpm";
        if (f.maxRpm && *f.maxRpm > f.minRpm.value_or(0)) {
            const double low = f.minRpm.value_or(0);
            bar.fraction = std::clamp((f.rpm - low) / (*f.maxRpm - low), 0.0, 1.0);
            bar.note = "Range " + groupedNumber(std::llround(low)) + " – " +
                       groupedNumber(std::llround(*f.maxRpm)) + " rpm";
        } else {
            // Without a reported range, the fans are compared with each other.
            bar.fraction = std::clamp(f.rpm / (fastest * 1.25), 0.0, 1.0);
            bar.note = "No range reported";
        }
        bar.level = bar.fraction >= 0.9 ? Level::busy : Level::calm;
        fans.bars.push_back(std::move(bar));
    }
    c.blocks.push_back(std::move(fans));
}

void gpuDetail(DetailContent& c, const DetailInputs& in) {
    const auto& s = *in.card.sample;
    if (!s.gpu) {
        c.standIn = noGpuStatisticsText();
        return;
    }
    const auto& g = *s.gpu;
    headline(c, Format::percentParts(g.utilization));
    c.level = loadLevel(g.utilization);
    c.caption = g.name;
    c.blocks.push_back(chartBlock("Utilisation", HistorySeries::gpuUtilization, 1));
    std::vector<DetailRow> rows;
    rows.push_back(
        {"Name", g.name.empty() ? notAvailableText() : g.name, Level::calm, g.name.empty()});
    if (g.cores) rows.push_back({"Cores", groupedNumber(*g.cores)});
    if (g.renderer) rows.push_back({"Renderer", Format::percent(*g.renderer)});
    if (g.tiler) rows.push_back({"Tiler", Format::percent(*g.tiler)});
    rows.push_back(optionalRow("Memory used", g.memoryUsedBytes,
                               [](std::uint64_t b) { return Format::bytes(double(b)); }));
    if (s.thermal.gpuC)
        rows.push_back({"Temperature", temperature(*s.thermal.gpuC, in.card),
                        temperatureLevel(*s.thermal.gpuC)});
    else
        rows.push_back(missing("Temperature"));
    c.blocks.push_back(rowsBlock("GPU", std::move(rows)));
}

MetricKinds kindsFor(MetricDetail d) {
    switch (d) {
        case MetricDetail::cpu:
            return MetricKinds::cpu;
        case MetricDetail::memory:
            return MetricKinds::memory;
        case MetricDetail::network:
            return MetricKinds::network;
        case MetricDetail::disk:
            return MetricKinds::volumes | MetricKinds::diskIO;
        case MetricDetail::battery:
            return MetricKinds::battery;
        case MetricDetail::heat:
            return MetricKinds::sensors;
        case MetricDetail::gpu:
            return MetricKinds::gpu;
        default:
            return MetricKinds{};
    }
}

}  // namespace

const DetailBlock* DetailContent::block(DetailBlock::Kind kind, const std::string& title) const {
    for (const auto& b : blocks)
        if (b.kind == kind && (title.empty() || b.title == title)) return &b;
    return nullptr;
}

std::string wifiBand(double mhz) {
    if (mhz >= 2400 && mhz < 2500) return "2.4 GHz";
    if (mhz >= 4900 && mhz < 5925) return "5 GHz";
    if (mhz >= 5925 && mhz <= 7125) return "6 GHz";
    return "";
}

DetailContent describeDetail(MetricDetail detail, const DetailInputs& in) {
    DetailContent c;
    c.detail = detail;
    c.title = detailTitle(detail);
    const std::string id(MetricDetailNames[std::size_t(detail)]);
    if (const auto* kind = layout::OverviewCardRegistry::standard().kind(id)) {
        c.symbol = kind->symbol;
        c.color = kind->color;
    }
    const MetricKinds needed = kindsFor(detail);
    if (detail == MetricDetail::weather) {
        weatherDetail(c, in);
    } else if (detail == MetricDetail::pawreport) {
        pawDetail(c, in);
    } else if (!in.card.sample || !in.card.kinds.intersects(needed)) {
        c.standIn = waitingForReadingsText();
    } else {
        switch (detail) {
            case MetricDetail::cpu:
                cpuDetail(c, in);
                break;
            case MetricDetail::memory:
                memoryDetail(c, in);
                break;
            case MetricDetail::network:
                networkDetail(c, in);
                break;
            case MetricDetail::disk:
                diskDetail(c, in);
                break;
            case MetricDetail::battery:
                batteryDetail(c, in);
                break;
            case MetricDetail::heat:
                heatDetail(c, in);
                break;
            case MetricDetail::gpu:
                gpuDetail(c, in);
                break;
            default:
                break;
        }
    }
    if (c.standIn) {
        c.value.clear();
        c.unit.clear();
        c.caption.clear();
    }
    c.accessibleValue = c.standIn ? *c.standIn : spokenValue(c.value, c.unit);
    if (!c.standIn && !c.caption.empty()) c.accessibleValue += ", " + c.caption;
    return c;
}

}  // namespace trotlet::panel
