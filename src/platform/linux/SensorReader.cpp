#include "platform/linux/SensorReader.h"

#include <dirent.h>

#include <algorithm>
#include <cmath>

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

using metrics::SensorGroup;

SensorGroup groupForChip(std::string_view chip) {
    auto starts = [&](std::string_view p) { return chip.substr(0, p.size()) == p; };
    if (chip == "coretemp" || chip == "k10temp" || chip == "zenpower" || chip == "cpu_thermal" ||
        chip == "x86_pkg_temp" || starts("cpu") || chip == "k8temp" || chip == "via_cputemp")
        return SensorGroup::cpu;
    if (chip == "amdgpu" || chip == "radeon" || chip == "nouveau" || chip == "i915" || chip == "xe" ||
        starts("gpu"))
        return SensorGroup::gpu;
    if (chip == "nvme" || chip == "drivetemp") return SensorGroup::storage;
    if (starts("pch_") || chip == "soc_dts0" || chip == "soc_dts1" || starts("soc")) return SensorGroup::soc;
    if (chip == "jc42" || chip == "spd5118" || chip == "ee1004") return SensorGroup::memory;
    if (starts("BAT") || chip == "sbs_battery" || chip == "battery") return SensorGroup::battery;
    if (chip == "acpitz" || chip == "nct6775" || chip == "nct6798" || starts("it87") || starts("nct") ||
        chip == "thinkpad" || chip == "dell_smm" || chip == "asus_wmi_sensors" || chip == "INT3400 Thermal")
        return SensorGroup::board;
    return SensorGroup::other;
}

namespace {

std::vector<std::string> listDir(const std::string& path) {
    std::vector<std::string> out;
    if (DIR* dir = ::opendir(path.c_str())) {
        while (dirent* e = ::readdir(dir))
            if (e->d_name[0] != '.') out.emplace_back(e->d_name);
        ::closedir(dir);
    }
    // Natural order, so "temp10" follows "temp9" and hwmon10 follows hwmon9.
    std::sort(out.begin(), out.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    return out;
}

std::optional<double> milli(const std::string& path) {
    auto text = readTrimmed(path);
    if (!text) return std::nullopt;
    auto v = TextScan::parseDouble(*text);
    if (!v) return std::nullopt;
    return *v / 1000;
}

// A temperature a sensor can really report; drivers use -273 °C, 0 and 127+ as "no reading".
bool plausibleCelsius(double c) { return c > -40 && c < 150 && c != 0; }

}  // namespace

SensorReader::SensorReader(const std::string& root) {
    discoverHwmon(root);
    if (temperatures_.empty()) discoverThermalZones(root);
}

void SensorReader::discoverHwmon(const std::string& root) {
    const std::string base = underRoot(root, "/sys/class/hwmon");
    for (const auto& hw : listDir(base)) {
        const std::string dir = base + "/" + hw;
        auto chip = readTrimmed(dir + "/name");
        if (!chip) continue;
        anyHwmonChip_ = true;
        const SensorGroup group = groupForChip(*chip);
        for (const auto& file : listDir(dir)) {
            const std::string_view f = file;
            const bool temp = f.substr(0, 4) == "temp", fan = f.substr(0, 3) == "fan";
            const size_t us = f.find('_');
            if ((!temp && !fan) || us == std::string_view::npos || f.substr(us) != "_input") continue;
            const std::string stem(f.substr(0, us));
            if (temp) {
                Temperature t;
                t.chip = *chip;
                t.label = readTrimmed(dir + "/" + stem + "_label").value_or(stem);
                t.name = *chip + " " + t.label;
                t.group = group;
                // nvme and drivetemp label their disks' sensors "Composite" and the like; keep the
                // chip's own label when it is only the file stem.
                t.input = KeptFile(dir + "/" + file);
                t.limitC = milli(dir + "/" + stem + "_crit");
                if (!t.limitC) t.limitC = milli(dir + "/" + stem + "_max");
                if (t.limitC && !plausibleCelsius(*t.limitC)) t.limitC.reset();
                temperatures_.push_back(std::move(t));
            } else {
                Fan fanReading;
                fanReading.index = static_cast<std::int64_t>(fans_.size()) + 1;
                fanReading.input = KeptFile(dir + "/" + file);
                auto rpm = [&](const char* suffix) -> std::optional<double> {
                    auto text = readTrimmed(dir + "/" + stem + suffix);
                    if (!text) return std::nullopt;
                    return TextScan::parseDouble(*text);
                };
                fanReading.minRpm = rpm("_min");
                fanReading.maxRpm = rpm("_max");
                fans_.push_back(std::move(fanReading));
            }
        }
    }
}

void SensorReader::discoverThermalZones(const std::string& root) {
    const std::string base = underRoot(root, "/sys/class/thermal");
    for (const auto& zone : listDir(base)) {
        if (zone.rfind("thermal_zone", 0) != 0) continue;
        const std::string dir = base + "/" + zone;
        auto type = readTrimmed(dir + "/type");
        if (!type) continue;
        Temperature t;
        t.chip = *type;
        t.label = *type;
        t.name = *type;
        t.group = groupForChip(*type);
        t.input = KeptFile(dir + "/temp");
        for (int i = 0; i < 16; ++i) {
            const std::string trip = dir + "/trip_point_" + std::to_string(i);
            auto kind = readTrimmed(trip + "_type");
            if (!kind) break;
            if (*kind == "critical") t.limitC = milli(trip + "_temp");
        }
        temperatures_.push_back(std::move(t));
    }
    fromThermalZones_ = !temperatures_.empty();
}

void SensorReader::read(metrics::ThermalMetrics& out) {
    out.sensors.clear();
    out.fans.clear();
    std::optional<double> cpuPackage, cpuMax, cpuLimit, gpu, soc;
    int cpuPriority = -1;
    for (auto& t : temperatures_) {
        auto text = t.input.read();
        if (!text) continue;
        auto raw = TextScan::parseDouble(trimmed(*text));
        if (!raw) continue;
        const double c = *raw / 1000;
        if (!plausibleCelsius(c)) continue;
        out.sensors.push_back({t.name, t.group, c});
        switch (t.group) {
        case SensorGroup::cpu: {
            // The package (Intel), Tdie (AMD, true die temperature) or Tctl (AMD, may carry an
            // offset) reading stands for the CPU; otherwise the hottest core.
            int priority = 0;
            if (t.label.rfind("Package", 0) == 0 || t.label == "Tdie" || t.chip == "x86_pkg_temp") priority = 3;
            else if (t.label == "Tctl") priority = 2;
            else if (t.label.rfind("Core", 0) != 0) priority = 1;
            if (priority > cpuPriority) {
                cpuPriority = priority;
                cpuPackage = c;
            }
            if (!cpuMax || c > *cpuMax) cpuMax = c;
            if (t.limitC && (!cpuLimit || *t.limitC < *cpuLimit)) cpuLimit = t.limitC;
            break;
        }
        case SensorGroup::gpu:
            // amdgpu's "edge" is the board-level reading the vendor tools show first.
            if (!gpu || t.label == "edge") gpu = c;
            break;
        case SensorGroup::soc:
            if (!soc || c > *soc) soc = c;
            break;
        default:
            break;
        }
    }
    out.cpuC = cpuPackage;
    out.cpuMaxC = cpuMax;
    out.gpuC = gpu;
    out.socC = soc;
    for (auto& f : fans_) {
        auto text = f.input.read();
        if (!text) continue;
        if (auto rpm = TextScan::parseDouble(trimmed(*text)); rpm && *rpm >= 0)
            out.fans.push_back({f.index, *rpm, f.minRpm, f.maxRpm});
    }
    // The fans found, whether or not they answered this time: a fan whose file fails (EIO from
    // a busy embedded controller) is a fan without a speed, not a machine without fans.
    out.fanCount = anyHwmonChip_ ? std::optional<std::int64_t>(fans_.size()) : std::nullopt;
    if (!out.sensors.empty()) out.source = fromThermalZones_ ? "thermal_zone" : "hwmon";
    else out.source.reset();
    out.state = tracker_.update(cpuPackage ? cpuMax : std::nullopt, cpuLimit);
}

}  // namespace trotlet::platform
