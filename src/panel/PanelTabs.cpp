#include "panel/PanelTabs.h"

#include "settings/RawEnum.h"

namespace trotlet::panel {

std::string tabTitle(PanelTab tab) {
    switch (tab) {
        case PanelTab::overview:
            return "Overview";
        case PanelTab::processes:
            return "Processes";
        case PanelTab::shop:
            return "Shop";
        case PanelTab::settings:
            return "Settings";
    }
    return "";
}

std::string detailTitle(MetricDetail detail) {
    switch (detail) {
        case MetricDetail::cpu:
            return "CPU";
        case MetricDetail::memory:
            return "Memory";
        case MetricDetail::network:
            return "Network";
        case MetricDetail::disk:
            return "Disk";
        case MetricDetail::battery:
            return "Battery";
        case MetricDetail::heat:
            return "Heat";
        case MetricDetail::weather:
            return "Weather";
        case MetricDetail::pawreport:
            return "Paw Report";
        case MetricDetail::gpu:
            return "GPU";
    }
    return "";
}

std::optional<PanelTab> tabForNumber(int number) {
    if (number < 1 || number > int(PanelTabNames.size())) return std::nullopt;
    return PanelTab(number - 1);
}

PanelTab steppedTab(PanelTab tab, int by) {
    const int count = int(PanelTabNames.size());
    return PanelTab(((int(tab) + by) % count + count) % count);
}

std::optional<MetricDetail> detailForCard(const std::string& cardId) {
    // Card ids and detail names agree: the heat card opens "heat", the disk card "disk".
    return settings::fromRawName<MetricDetail>(cardId, MetricDetailNames);
}

}  // namespace trotlet::panel
