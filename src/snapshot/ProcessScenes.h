#pragma once

#include <vector>

#include "snapshot/Scenes.h"

namespace trotlet::snapshot {

// The Processes tab: the busy machine's list sorted by CPU with a row opened, a search, the
// Force Quit question, and rows that cannot be quit with their reasons.
void addProcessScenes(std::vector<Scene>& scenes);

}  // namespace trotlet::snapshot
