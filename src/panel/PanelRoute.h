#pragma once

#include <array>
#include <string_view>

namespace trotlet::panel {

// The panel tab to open on (`--tab`), in declaration order.
enum class PanelTab { overview, processes, shop, settings };
inline constexpr std::array<std::string_view, 4> PanelTabNames = {"overview", "processes", "shop",
                                                                  "settings"};

// A metric detail to open on top of the Overview (`--detail`), in declaration order.
enum class MetricDetail { cpu, memory, network, disk, battery, heat, weather, pawreport, gpu };
inline constexpr std::array<std::string_view, 9> MetricDetailNames = {
    "cpu", "memory", "network", "disk", "battery", "heat", "weather", "pawreport", "gpu"};

}  // namespace trotlet::panel
