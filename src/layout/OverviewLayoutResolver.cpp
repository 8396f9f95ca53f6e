#include "layout/OverviewLayoutResolver.h"

#include <algorithm>
#include <set>

namespace trotlet::layout {

OverviewLayout OverviewLayoutResolver::defaultLayout(const OverviewCardRegistry& registry) {
    return resolve(std::nullopt, {}, registry);
}

OverviewLayout OverviewLayoutResolver::resolve(const std::optional<OverviewLayout>& stored,
                                               const std::vector<std::string>& legacyHidden,
                                               const OverviewCardRegistry& registry) {
    OverviewLayout layout;
    layout.version = OverviewLayout::currentVersion;
    std::set<std::string> present;

    if (stored) {
        for (const auto& card : stored->cards) {
            const OverviewCardKind* kind = registry.kind(card.id);
            if (!kind || !present.insert(card.id).second) continue;
            layout.cards.push_back(
                {card.id, kind->supports(card.size) ? card.size : kind->defaultSize, card.hidden});
        }
    }
    for (const auto& kind : registry.all()) {
        if (present.count(kind.id)) continue;
        // Only a layout that was never stored reads the old list; a stored one already carries
        // the user's choice, and a card new to this version takes its own default.
        const bool legacy =
            !stored && std::find(legacyHidden.begin(), legacyHidden.end(), kind.id) !=
                           legacyHidden.end();
        layout.cards.push_back({kind.id, kind.defaultSize, legacy || !kind.defaultVisible});
        present.insert(kind.id);
    }
    return layout;
}

std::vector<BentoPacker::Item> OverviewLayoutResolver::items(const OverviewLayout& layout,
                                                             const Availability& available,
                                                             const OverviewCardRegistry& registry) {
    std::vector<BentoPacker::Item> items;
    for (const auto& card : layout.cards) {
        if (card.hidden) continue;
        const OverviewCardKind* kind = registry.kind(card.id);
        if (!kind || (available && !available(card.id))) continue;
        items.push_back({card.id, kind->span(card.size)});
    }
    return items;
}

bool OverviewLayoutResolver::canReset(bool hasStoredDocument, const OverviewLayout& resolved,
                                      const OverviewCardRegistry& registry) {
    return hasStoredDocument || resolved != defaultLayout(registry);
}

}  // namespace trotlet::layout
