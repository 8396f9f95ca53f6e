#include "shop/qt/ShopDebugCLI.h"

namespace trotlet::shop {

// Placeholder until the subsystem lands: nothing is ours.
std::optional<int> ShopDebugCLI::run(const std::vector<std::string>&) { return std::nullopt; }

}  // namespace trotlet::shop
