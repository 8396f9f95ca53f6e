#include "reports/PawTrack.h"

#include <algorithm>
#include <cmath>

#include "menubar/Format.h"
#include "panel/HeaderContent.h"
#include "shop/Catalog.h"

namespace trotlet::reports {
namespace {

using menubar::Format;

// One decimal, without a trailing ".0": "8.6", "12".
std::string oneDecimal(double x) {
    const double rounded = std::round(x * 10) / 10;
    return Format::fixed(std::fmod(rounded, 1.0) == 0 ? 0 : 1, rounded);
}

}  // namespace

PawTrack pawTrack(const shop::DailyCounters& today, const shop::LifetimeStats& lifetime) {
    PawTrack t;
    t.todayMeters = std::max(0.0, today.metersRun);
    t.lifetimeMeters = std::max(0.0, lifetime.metersRun);
    for (const auto& [id, meters] : lifetime.metersByMascot) {
        if (!(meters > 0)) continue;
        const auto* item = shop::Catalog::item(id);
        t.byMascot.push_back({id, item ? item->name : id, meters});
    }
    std::stable_sort(t.byMascot.begin(), t.byMascot.end(),
                     [](const auto& a, const auto& b) { return a.meters > b.meters; });
    t.marathonFraction = std::clamp(t.lifetimeMeters / marathonMeters, 0.0, 1.0);
    t.marathonDone = t.lifetimeMeters >= marathonMeters;
    return t;
}

std::string distanceText(double meters) {
    meters = std::max(0.0, meters);
    if (meters < 999.5) return Format::fixed(0, meters) + " m";
    const double km = meters / 1000;
    if (km < 9.995) return Format::fixed(2, km) + " km";
    if (km < 99.95) return Format::fixed(1, km) + " km";
    return panel::groupedNumber(std::llround(km)) + " km";
}

std::string comparisonText(double meters) {
    if (!(meters >= 1)) return {};
    const double laps = meters / trackLapMeters;
    if (laps < 0.75) {
        // Quarter laps read as words; a share of a lap below that is still a share.
        if (laps < 0.2) return Format::fixed(0, laps * 100) + "% of a lap of a 400 m track";
        return laps < 0.375 ? "A quarter lap of a 400 m track" : "Half a lap of a 400 m track";
    }
    if (meters < 10000) {
        const std::string n = oneDecimal(laps);
        return n + (n == "1" ? " lap" : " laps") + " of a 400 m track";
    }
    const double marathons = meters / marathonMeters;
    // Shares of a marathon round down, as the Marathon's progress does: never more than run.
    if (marathons < 1) return Format::fixed(0, std::floor(marathons * 100)) + "% of a marathon";
    const std::string n = oneDecimal(marathons);
    return n == "1" ? "A whole marathon" : n + " marathons";
}

std::string shortComparisonText(double meters) {
    if (!(meters >= 1)) return {};
    const double laps = meters / trackLapMeters;
    if (laps < 0.75)
        return laps < 0.375 ? Format::fixed(0, laps * 100) + "% of a lap" : "Half a lap";
    if (meters < 10000) {
        const std::string n = oneDecimal(laps);
        return n + (n == "1" ? " track lap" : " track laps");
    }
    return comparisonText(meters);
}

std::string marathonText(const PawTrack& track) {
    if (track.marathonDone) return "Marathon reached";
    return Format::fixed(0, std::floor(track.marathonFraction * 100)) + "% of the way to Marathon";
}

}  // namespace trotlet::reports
