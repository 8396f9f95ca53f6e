#pragma once

#include <vector>

#include "snapshot/Scenes.h"

namespace trotlet::snapshot {

// Settings and the welcome tour: the index, every section, the city search with suggestions,
// the shortcut recorder listening, and every step of the tour.
void addSettingsScenes(std::vector<Scene>& scenes);

}  // namespace trotlet::snapshot
