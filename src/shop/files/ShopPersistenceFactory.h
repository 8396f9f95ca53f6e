#pragma once

#include <functional>
#include <memory>

#include "shop/ShopDebugOptions.h"
#include "shop/ShopPersistence.h"

namespace trotlet::shop {

// Chooses where the app's shop lives: a demo shop in memory (`--shop-demo`), an in-memory
// session's demo shop (`--skip-onboarding`, never touching shop.json), another file
// (`--shop-file`), or the real "shop.json" in the data folder.
std::unique_ptr<ShopPersistence> makeShopPersistence(const ShopDebugOptions& debug, bool inMemorySession,
                                                     const Calendar& calendar, std::function<Timestamp()> now,
                                                     uint64_t seed);

}  // namespace trotlet::shop
