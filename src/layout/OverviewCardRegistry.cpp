#include "layout/OverviewCardRegistry.h"

#include <utility>

namespace trotlet::layout {

OverviewCardRegistry::OverviewCardRegistry(std::vector<OverviewCardKind> kinds)
    : kinds(std::move(kinds)) {}

const OverviewCardKind* OverviewCardRegistry::kind(std::string_view id) const {
    for (const auto& k : kinds)
        if (k.id == id) return &k;
    return nullptr;
}

// The default sizes are chosen in row bands that each fill the six columns exactly, so the
// fresh Overview packs without a hole:
//
//   rows  0–5   cpu medium | memory medium           two 3 × 6 blocks
//   rows  6–8   network wide                         6 × 3
//   rows  9–12  gpu small | heat small | battery small  three 2 × 4 blocks
//   rows 13–18  disk medium | pawreport medium       two 3 × 6 blocks
//   (weather, once shown, appends a full-width band below)
//
// Small readings (gpu, heat, battery) travel in threes; the two big history cards of each half
// sit in pairs. Only the weather card overrides a span: its wide form is one row taller, since
// an hourly strip with its icons does not fit three rows.
const OverviewCardRegistry& OverviewCardRegistry::standard() {
    using S = CardSize;
    static const OverviewCardRegistry registry({
        {"cpu", "CPU", "cpu", "blue", "Load and per-core bars", {S::small, S::medium, S::wide, S::large},
         S::medium, {}, true, "No CPU readings"},
        {"memory", "Memory", "memory", "purple", "Used, cached and pressure", {S::small, S::medium, S::wide},
         S::medium, {}, true, "No memory readings"},
        {"network", "Network", "network-wired", "teal", "Upload and download", {S::small, S::medium, S::wide},
         S::wide, {}, true, "Offline"},
        {"gpu", "GPU", "video-display", "green", "GPU load", {S::small, S::medium},
         S::small, {}, true, "No GPU readings"},
        {"heat", "Heat", "temperature", "orange", "Temperatures and fans", {S::small, S::medium},
         S::small, {}, true, "No temperature sensors"},
        {"battery", "Battery", "battery", "yellow", "Charge and time left", {S::small, S::medium},
         S::small, {}, true, "No battery"},
        {"disk", "Disk", "drive-harddisk", "indigo", "Volumes and disk activity", {S::small, S::medium, S::wide},
         S::medium, {}, true, "No disks"},
        {"pawreport", "Paw Report", "paw", "pink", "Today's summary and distance", {S::medium, S::wide},
         S::medium, {}, true, "Nothing to report yet"},
        {"weather", "Weather", "weather-few-clouds", "cyan", "Conditions and forecast", {S::medium, S::wide},
         S::wide, {{S::wide, {6, 4}}}, false, "Choose a place in Settings"},
    });
    return registry;
}

}  // namespace trotlet::layout
