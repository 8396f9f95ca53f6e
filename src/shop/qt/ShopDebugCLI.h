#pragma once

#include <optional>
#include <string>
#include <vector>

namespace trotlet::shop {

// Runs before the command line is parsed. Owns --simulate-economy, --dump-shop, --verify-shop-persistence.
// Gives no status when the arguments are not its own; otherwise the process exits with it.
struct ShopDebugCLI {
    static std::optional<int> run(const std::vector<std::string>& args);
};

}  // namespace trotlet::shop
