#pragma once

#include <string_view>
#include <vector>

#include "layout/OverviewCardKind.h"

namespace trotlet::layout {

// The ordered list of card kinds. Its order is the default reading order of the Overview.
class OverviewCardRegistry {
public:
    explicit OverviewCardRegistry(std::vector<OverviewCardKind> kinds);

    // The product's cards: cpu, memory, network, gpu, heat, battery, disk, pawreport, weather
    // (weather hidden until the user shows it).
    static const OverviewCardRegistry& standard();

    const std::vector<OverviewCardKind>& all() const { return kinds; }
    const OverviewCardKind* kind(std::string_view id) const;

private:
    std::vector<OverviewCardKind> kinds;
};

}  // namespace trotlet::layout
