#include "layout/qt/LayoutDebugCLI.h"

namespace trotlet::layout {

// Placeholder until the subsystem lands: nothing is ours.
std::optional<int> LayoutDebugCLI::run(const std::vector<std::string>&) { return std::nullopt; }

}  // namespace trotlet::layout
