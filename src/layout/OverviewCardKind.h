#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "layout/CardSize.h"
#include "layout/GridGeometry.h"

namespace trotlet::layout {

// One entry of the card registry: what a card is called, how it looks in the tray of cards
// that can be added, and which footprints it supports. The views themselves (the card, its
// tray preview, its stand-in view and the availability test against the live model) belong to
// the panel, which looks them up by `id`; the registry keeps only what layout decisions need.
struct OverviewCardKind {
    std::string id;
    std::string title;
    std::string symbol;       // icon name
    std::string color;        // accent colour name
    std::string trayCaption;  // one line under the preview in the tray of cards
    std::vector<CardSize> sizes;
    CardSize defaultSize = CardSize::small;
    std::vector<std::pair<CardSize, GridSpan>> spanOverrides;
    bool defaultVisible = true;
    std::string standIn;  // shown in place of readings the machine cannot provide

    bool supports(CardSize size) const;
    // The override for the size when there is one, else the size's standard span.
    GridSpan span(CardSize size) const;
};

// Whether a card is shown at all on this machine (a desktop has no battery card, a machine
// without GPU readings no GPU card). The panel builds it from the live model.
using Availability = std::function<bool(std::string_view id)>;

inline Availability everythingAvailable() {
    return [](std::string_view) { return true; };
}

}  // namespace trotlet::layout
