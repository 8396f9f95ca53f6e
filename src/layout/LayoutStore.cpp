#include "layout/LayoutStore.h"

#include <algorithm>

#include "layout/OverviewLayoutResolver.h"
#include "settings/LayoutSettings.h"
#include "settings/MonitoringSettings.h"

namespace trotlet::layout {

LayoutStore::LayoutStore(settings::LayoutSettings& settings,
                         settings::MonitoringSettings& monitoring,
                         const OverviewCardRegistry& registry)
    : settings_(settings), monitoring_(monitoring), registry_(registry) {}

std::optional<OverviewLayout> LayoutStore::stored() const {
    const auto& document = settings_.overview();
    if (!document) return std::nullopt;
    return OverviewLayout::decode(*document);
}

bool LayoutStore::hasStoredDocument() const { return settings_.overview().has_value(); }

OverviewLayout LayoutStore::layout() const {
    return OverviewLayoutResolver::resolve(stored(), monitoring_.hiddenCards(), registry_);
}

void LayoutStore::commit(const OverviewLayout& layout) {
    const auto resolved = OverviewLayoutResolver::resolve(layout, {}, registry_);
    const auto before = settings_.overview();
    settings_.setOverview(resolved.json());
    if (settings_.overview() != before) notify();
}

bool LayoutStore::canReset() const {
    // A stored document counts even when it no longer decodes: resetting is how it goes away.
    return OverviewLayoutResolver::canReset(hasStoredDocument(), layout(), registry_);
}

void LayoutStore::reset() {
    const bool changed = hasStoredDocument() || !monitoring_.hiddenCards().empty();
    settings_.setOverview(std::nullopt);
    monitoring_.setHiddenCards({});
    if (changed) notify();
}

LayoutStore::HiddenBinding LayoutStore::hiddenBinding() {
    return {
        [this] { return layout().hiddenIDs(); },
        [this](const std::vector<std::string>& hidden) {
            auto edited = layout();
            for (auto& card : edited.cards)
                card.hidden = std::find(hidden.begin(), hidden.end(), card.id) != hidden.end();
            if (edited != layout()) commit(edited);
        },
    };
}

int LayoutStore::observe(Observer observer) {
    observers_.emplace(nextToken_, std::move(observer));
    return nextToken_++;
}

void LayoutStore::unobserve(int token) { observers_.erase(token); }

void LayoutStore::notify() {
    // Observers may unsubscribe while being told; walk a copy.
    const auto observers = observers_;
    for (const auto& [token, observer] : observers) observer();
}

}  // namespace trotlet::layout
