#include "platform/linux/BatteryReader.h"

#include <dirent.h>

#include <algorithm>
#include <cmath>

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextScan.h"

namespace trotlet::platform {

std::optional<std::string> SupplyFiles::read(const std::string& path) {
    if (missing_.count(path)) return std::nullopt;
    auto it = open_.find(path);
    if (it == open_.end()) it = open_.emplace(path, KeptFile(path)).first;
    auto text = it->second.read();
    if (!text) {
        open_.erase(it);
        missing_.insert(path);
        return std::nullopt;
    }
    return std::string(trimmed(*text));
}

void SupplyFiles::clear() {
    open_.clear();
    missing_.clear();
}

PowerSupplyReading readPowerSupply(const std::string& dir, const std::string& name, SupplyFiles* files) {
    auto readTrimmed = [files](const std::string& path) {
        return files ? files->read(path) : platform::readTrimmed(path);
    };
    auto number = [&](const std::string& d, const char* attribute) -> std::optional<double> {
        auto text = readTrimmed(d + "/" + attribute);
        if (!text) return std::nullopt;
        return TextScan::parseDouble(*text);
    };
    PowerSupplyReading r;
    r.name = name;
    r.type = readTrimmed(dir + "/type").value_or("");
    r.deviceScope = readTrimmed(dir + "/scope").value_or("") == "Device";
    if (auto o = number(dir, "online")) r.online = *o != 0;
    r.status = readTrimmed(dir + "/status");
    r.modelName = readTrimmed(dir + "/model_name");
    if (r.type != "Battery") {
        auto vmax = number(dir, "voltage_max"), imax = number(dir, "current_max");
        if (vmax && imax && *vmax > 0 && *imax > 0) r.adapterMaxW = *vmax * *imax / 1e12;
        return r;
    }
    r.capacityPct = number(dir, "capacity");
    // Energies in µWh, charges in µAh, voltages in µV, power in µW, current in µA.
    r.energyNowWh = number(dir, "energy_now");
    r.energyFullWh = number(dir, "energy_full");
    r.energyDesignWh = number(dir, "energy_full_design");
    for (auto* e : {&r.energyNowWh, &r.energyFullWh, &r.energyDesignWh})
        if (*e) **e /= 1e6;
    const auto voltageNow = number(dir, "voltage_now");
    auto voltage = number(dir, "voltage_min_design");
    if (!voltage || *voltage <= 0) voltage = voltageNow;
    if (voltage && *voltage > 0) {
        const double volts = *voltage / 1e6;
        auto fromCharge = [&](const char* attribute, std::optional<double>& energy) {
            if (energy) return;
            if (auto c = number(dir, attribute)) energy = *c / 1e6 * volts;
        };
        fromCharge("charge_now", r.energyNowWh);
        fromCharge("charge_full", r.energyFullWh);
        fromCharge("charge_full_design", r.energyDesignWh);
    }
    if (auto p = number(dir, "power_now")) {
        r.powerW = std::fabs(*p) / 1e6;
    } else if (auto i = number(dir, "current_now"); i && voltageNow) {
        r.powerW = std::fabs(*i) * *voltageNow / 1e12;
    }
    r.timeToEmptySec = number(dir, "time_to_empty_now");
    r.timeToFullSec = number(dir, "time_to_full_now");
    r.cycles = number(dir, "cycle_count");
    r.health = readTrimmed(dir + "/health");
    if (auto t = number(dir, "temp")) r.temperatureC = *t / 10;  // tenths of a degree
    return r;
}

namespace {

// A reading as a whole number when it is one a battery or charger can report: finite and
// within 0...limit. Sysfs values beyond that are a driver's garbage, and rounding them would
// overflow into a negative number.
std::optional<std::int64_t> plausibleWhole(double value, double limit) {
    if (!std::isfinite(value) || value < 0 || value > limit) return std::nullopt;
    return std::llround(value);
}

constexpr double kMinutesLimit = 1e7;  // some 19 years

std::optional<double> finiteOrNone(double value) {
    if (!std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

void combinePowerSupplies(const std::vector<PowerSupplyReading>& supplies,
                          metrics::BatteryMetrics& out) {
    const bool lowPower = out.lowPowerMode;
    out = metrics::BatteryMetrics{};
    out.lowPowerMode = lowPower;

    std::vector<const PowerSupplyReading*> batteries;
    const PowerSupplyReading* adapter = nullptr;
    bool anyAdapterOnline = false;
    for (const auto& s : supplies) {
        if (s.type == "Battery" && !s.deviceScope) batteries.push_back(&s);
        if ((s.type == "Mains" || s.type == "USB" || s.type.rfind("USB_", 0) == 0) && s.online &&
            *s.online) {
            anyAdapterOnline = true;
            if (!adapter || (s.adapterMaxW && !adapter->adapterMaxW)) adapter = &s;
        }
    }
    if (batteries.empty()) return;

    double now = 0, full = 0, design = 0, power = 0;
    bool haveEnergy = true, haveDesign = true, havePower = false;
    double capacitySum = 0;
    bool haveCapacity = true;
    bool charging = false, discharging = false, allFull = true;
    std::optional<double> tte, ttf, cycles, temp;
    std::optional<std::string> health;
    for (const auto* b : batteries) {
        if (b->energyNowWh && b->energyFullWh && *b->energyFullWh > 0) {
            now += *b->energyNowWh;
            full += *b->energyFullWh;
        } else {
            haveEnergy = false;
        }
        if (b->energyDesignWh && *b->energyDesignWh > 0) design += *b->energyDesignWh;
        else haveDesign = false;
        if (b->capacityPct) capacitySum += *b->capacityPct;
        else haveCapacity = false;
        if (b->powerW) {
            power += *b->powerW;
            havePower = true;
        }
        const std::string status = b->status.value_or("Unknown");
        charging = charging || status == "Charging";
        discharging = discharging || status == "Discharging";
        allFull = allFull && status == "Full";
        if (!tte && b->timeToEmptySec) tte = b->timeToEmptySec;
        if (!ttf && b->timeToFullSec) ttf = b->timeToFullSec;
        if (!cycles && b->cycles && *b->cycles >= 0) cycles = b->cycles;
        if (!temp && b->temperatureC) temp = b->temperatureC;
        if (!health && b->health && *b->health != "Unknown") health = b->health;
    }

    std::optional<double> percent;
    if (haveCapacity) percent = capacitySum / double(batteries.size());
    else if (haveEnergy) percent = 100 * now / full;
    // A battery that tells neither its capacity nor its energy is there but unreadable: the
    // group stays absent rather than showing an invented level.
    if (!percent || std::isnan(*percent)) return;

    out.present = true;
    out.percent = std::llround(std::clamp(*percent, 0.0, 100.0));
    out.charging = charging;
    out.pluggedIn = anyAdapterOnline || charging || allFull ||
                    (!discharging && std::any_of(batteries.begin(), batteries.end(), [](auto* b) {
                         return b->status && *b->status == "Not charging";
                     }));
    out.fullyCharged = allFull || (out.pluggedIn && !charging && out.percent >= 100);
    if (havePower && !std::isfinite(power)) havePower = false;
    if (havePower && power > 0) {
        out.watts = discharging ? -power : (charging ? power : 0.0);
        if (discharging && !anyAdapterOnline) out.systemWatts = power;
    } else if (havePower && !charging && !discharging) {
        out.watts = 0.0;
    }
    if (discharging) {
        if (tte)
            out.timeRemainingMin = plausibleWhole(*tte / 60, kMinutesLimit);
        else if (haveEnergy && havePower && power > 0.05)
            out.timeRemainingMin = plausibleWhole(now / power * 60, kMinutesLimit);
    } else if (charging) {
        if (ttf)
            out.timeRemainingMin = plausibleWhole(*ttf / 60, kMinutesLimit);
        else if (haveEnergy && havePower && power > 0.05)
            out.timeRemainingMin =
                plausibleWhole(std::max(0.0, full - now) / power * 60, kMinutesLimit);
    }
    if (haveEnergy && haveDesign && design > 0)
        out.healthPct = finiteOrNone(std::round(1000 * full / design) / 10);
    if (cycles) out.cycles = plausibleWhole(*cycles, 1e9);
    out.condition = health;
    out.temperatureC = temp;
    if (adapter) {
        if (adapter->adapterMaxW) out.adapterWatts = plausibleWhole(*adapter->adapterMaxW, 1e6);
        out.adapterName = adapter->modelName ? *adapter->modelName : adapter->name;
    }
}

BatteryReader::BatteryReader(const std::string& root)
    : directory_(underRoot(root, "/sys/class/power_supply")) {
    discover();
}

void BatteryReader::discover() {
    names_.clear();
    if (DIR* dir = ::opendir(directory_.c_str())) {
        while (dirent* e = ::readdir(dir))
            if (e->d_name[0] != '.') names_.emplace_back(e->d_name);
        ::closedir(dir);
    }
    std::sort(names_.begin(), names_.end());
    samplesSinceDiscovery_ = 0;
    files_.clear();
}

void BatteryReader::read(metrics::BatteryMetrics& out) {
    // Supplies come and go (a docked second battery, a USB-C charger), so look again now and
    // then; in between only the known directories are read.
    if (++samplesSinceDiscovery_ > 30) discover();
    readings_.clear();
    for (const auto& name : names_) readings_.push_back(readPowerSupply(directory_ + "/" + name, name, &files_));
    combinePowerSupplies(readings_, out);
}

}  // namespace trotlet::platform
