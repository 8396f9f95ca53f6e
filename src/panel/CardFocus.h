#pragma once

#include <optional>
#include <string>

#include "layout/LayoutOps.h"

namespace trotlet::panel {

// Where an arrow key takes the keyboard focus on the Overview: the nearest card on that side
// that shares a row band (for left and right) or a column band (for up and down) with the
// focused one, so Down from a half-width card lands on the full-width card right under it.
// Without such a card, the nearest one on that side by centres. None at the edge.
std::optional<std::string> focusNeighbour(const std::string& id, layout::MoveDirection direction,
                                          const layout::Frames& frames);

}  // namespace trotlet::panel
