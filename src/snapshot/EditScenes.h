#pragma once

#include <vector>

#include "snapshot/Scenes.h"

namespace trotlet::snapshot {

// `panel-edit`: the Overview in edit mode, a card halfway through a drag, the tray of hidden
// cards under the grid.
void addEditScenes(std::vector<Scene>& scenes);

}  // namespace trotlet::snapshot
