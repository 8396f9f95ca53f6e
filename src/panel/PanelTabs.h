#pragma once

#include <optional>
#include <string>

#include "panel/PanelRoute.h"

namespace trotlet::panel {

std::string tabTitle(PanelTab tab);
std::string detailTitle(MetricDetail detail);

// Ctrl+1 … Ctrl+4 pick a tab by its place; other numbers pick none.
std::optional<PanelTab> tabForNumber(int number);
// Ctrl+Tab and Ctrl+Shift+Tab step through the tabs and wrap around.
PanelTab steppedTab(PanelTab tab, int by);

// The detail a card opens, by card id; none for an id without a detail screen.
std::optional<MetricDetail> detailForCard(const std::string& cardId);

}  // namespace trotlet::panel
