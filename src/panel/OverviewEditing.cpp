#include "panel/OverviewEditing.h"

#include <algorithm>

namespace trotlet::panel {

std::vector<TrayEntry> hiddenTray(const layout::OverviewLayout& layout,
                                  const layout::OverviewCardRegistry& registry) {
    std::vector<TrayEntry> tray;
    for (const auto& card : layout.cards) {
        if (!card.hidden) continue;
        const auto* kind = registry.kind(card.id);
        if (!kind) continue;
        tray.push_back({kind->id, kind->title, kind->symbol, kind->color, kind->trayCaption,
                        "Add the " + kind->title + " card"});
    }
    return tray;
}

std::optional<layout::CardSize> steppedSize(const layout::OverviewCardKind& kind,
                                            layout::CardSize current, int by) {
    const auto at = std::find(kind.sizes.begin(), kind.sizes.end(), current);
    if (at == kind.sizes.end() || by == 0) return std::nullopt;
    const long index = (at - kind.sizes.begin()) + (by > 0 ? 1 : -1);
    if (index < 0 || index >= long(kind.sizes.size())) return std::nullopt;
    return kind.sizes[std::size_t(index)];
}

std::string sizeTitle(layout::CardSize size) {
    switch (size) {
        case layout::CardSize::small:
            return "Small";
        case layout::CardSize::medium:
            return "Medium";
        case layout::CardSize::wide:
            return "Wide";
        case layout::CardSize::large:
            return "Large";
    }
    return "Medium";
}

std::string editDescription(const layout::OverviewCardKind& kind, layout::CardSize size) {
    std::string text = sizeTitle(size) + ". Alt and an arrow key move it";
    if (kind.sizes.size() > 1) text += ", plus and minus resize it";
    return text + ", Delete hides it.";
}

std::string editHint() { return "Drag cards to arrange them, or their corner to resize."; }

}  // namespace trotlet::panel
