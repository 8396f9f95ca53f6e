#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace trotlet::shop {

struct PersistenceVerification {
    nlohmann::ordered_json json;
    bool passed = true;
};

// `--verify-shop-persistence`: round-trips shop files through save and load in a fresh
// temporary folder under `parent` (removed afterwards), including broken, newer, version 1,
// truncated and unreadable files. Never touches the user's own shop.
PersistenceVerification verifyShopPersistence(const std::string& parent);

}  // namespace trotlet::shop
