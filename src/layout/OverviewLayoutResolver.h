#pragma once

#include <optional>
#include <string>
#include <vector>

#include "layout/BentoPacker.h"
#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"

namespace trotlet::layout {

// Turns what is stored (a layout document, the older hidden-card list, or neither) into the
// layout the panel shows, and that layout into packer items.
struct OverviewLayoutResolver {
    // Every kind in registry order at its default size, hidden when not visible by default.
    static OverviewLayout defaultLayout(const OverviewCardRegistry& registry);

    // Without a stored document the older settings are migrated: the registry's cards, with
    // the ids of `legacyHidden` hidden (unknown ids ignored). A stored document keeps its order,
    // sizes and hidden flags, minus unknown and repeated ids, with unsupported sizes replaced
    // by the kind's default; kinds it lacks are appended in registry order. Always version 1.
    static OverviewLayout resolve(const std::optional<OverviewLayout>& stored,
                                  const std::vector<std::string>& legacyHidden,
                                  const OverviewCardRegistry& registry);

    // The visible, available cards in layout order with their kind's span for their size.
    // Ids the registry does not know are left out.
    static std::vector<BentoPacker::Item> items(const OverviewLayout& layout,
                                                const Availability& available,
                                                const OverviewCardRegistry& registry);

    // "Reset layout" is offered when a document is stored, or when the older settings alone
    // already make the Overview differ from the default.
    static bool canReset(bool hasStoredDocument, const OverviewLayout& resolved,
                         const OverviewCardRegistry& registry);
};

}  // namespace trotlet::layout
