#pragma once

#include <optional>
#include <string>
#include <vector>

#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"

namespace trotlet::panel {

// A hidden card as the edit mode's tray offers it back: its look and its one line.
struct TrayEntry {
    std::string id;
    std::string title;
    std::string symbol;
    std::string color;
    std::string caption;
    std::string accessibleName;  // "Add the GPU card"
    bool operator==(const TrayEntry&) const = default;
};

// The hidden cards the registry knows, in layout order.
std::vector<TrayEntry> hiddenTray(const layout::OverviewLayout& layout,
                                  const layout::OverviewCardRegistry& registry);

// The next size up (+1) or down (−1) among the sizes the card supports; none at either end.
std::optional<layout::CardSize> steppedSize(const layout::OverviewCardKind& kind,
                                            layout::CardSize current, int by);

std::string sizeTitle(layout::CardSize size);  // "Medium"

// What a card in edit mode tells a screen reader: its size and the keys that change it.
std::string editDescription(const layout::OverviewCardKind& kind, layout::CardSize size);

// The edit mode's hint line under the grid.
std::string editHint();

}  // namespace trotlet::panel
