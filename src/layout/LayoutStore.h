#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"

namespace trotlet::settings {
class LayoutSettings;
class MonitoringSettings;
}  // namespace trotlet::settings

namespace trotlet::layout {

// The Overview layout as the settings hold it: the stored document ("layout.overview") when the
// user has edited, else the registry's cards with the older hidden-card list
// ("monitoring.hiddenCards") applied. Writes go through the settings groups so every observer of
// those keys hears of them. Main thread only, like the groups.
class LayoutStore {
public:
    LayoutStore(settings::LayoutSettings& settings, settings::MonitoringSettings& monitoring,
                const OverviewCardRegistry& registry = OverviewCardRegistry::standard());
    LayoutStore(const LayoutStore&) = delete;
    LayoutStore& operator=(const LayoutStore&) = delete;

    const OverviewCardRegistry& registry() const { return registry_; }

    // The layout the panel shows, resolved afresh from what is stored.
    OverviewLayout layout() const;
    // The stored document as decoded; none when nothing usable is stored.
    std::optional<OverviewLayout> stored() const;
    bool hasStoredDocument() const;

    // Stores the layout (resolved against the registry first, so the document never carries an
    // unknown or repeated card). Storing what is already stored writes nothing.
    void commit(const OverviewLayout& layout);
    bool canReset() const;
    // Removes the stored document and empties the older hidden-card list.
    void reset();

    // The hidden ids as the settings screen's card toggles see them.
    struct HiddenBinding {
        std::function<std::vector<std::string>()> get;
        std::function<void(const std::vector<std::string>&)> set;
    };
    HiddenBinding hiddenBinding();

    std::string describe(const OverviewLayout& layout) const { return layout::describe(layout); }

    using Observer = std::function<void()>;
    int observe(Observer observer);
    void unobserve(int token);

private:
    void notify();

    settings::LayoutSettings& settings_;
    settings::MonitoringSettings& monitoring_;
    const OverviewCardRegistry& registry_;
    std::map<int, Observer> observers_;
    int nextToken_ = 1;
};

}  // namespace trotlet::layout
