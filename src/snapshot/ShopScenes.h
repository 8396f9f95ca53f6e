#pragma once

#include <vector>

#include "snapshot/Scenes.h"

namespace trotlet::snapshot {

// The Shop's scenes: the tab in each demo state, its catalog, achievements and history pages,
// a restored shop, a clock found behind, and a Golden Fish crossing the header.
void addShopScenes(std::vector<Scene>& scenes);

}  // namespace trotlet::snapshot
