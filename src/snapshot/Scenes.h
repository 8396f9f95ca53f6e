#pragma once

#include <QImage>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "panel/Appearance.h"

namespace trotlet::snapshot {

// A scene builds its widgets once and renders them in both schemes.
class SceneStage {
public:
    virtual ~SceneStage() = default;
    virtual QImage render(panel::ColorScheme scheme) = 0;
};

struct Scene {
    std::string name;
    std::function<std::unique_ptr<SceneStage>()> stage;
};

// The header sky's scenes and the Paw Report's (SkyScenes.cpp).
void addSkyScenes(std::vector<Scene>& scenes);

// Every scene the harness knows, in a fixed order.
const std::vector<Scene>& allScenes();

// The scenes whose name starts with one of the prefixes (all of them for none).
std::vector<const Scene*> scenesMatching(const std::vector<std::string>& prefixes);

}  // namespace trotlet::snapshot
