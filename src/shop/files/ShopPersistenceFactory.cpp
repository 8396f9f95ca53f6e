#include "shop/files/ShopPersistenceFactory.h"

#include "shop/ShopDemoStates.h"
#include "shop/files/FileShopPersistence.h"

namespace trotlet::shop {

std::unique_ptr<ShopPersistence> makeShopPersistence(const ShopDebugOptions& debug, bool inMemorySession,
                                                     const Calendar& calendar, std::function<Timestamp()> now,
                                                     uint64_t seed) {
    if (debug.demo || inMemorySession) {
        const ShopDemo demo = debug.demo.value_or(ShopDemo::midGame);
        return std::make_unique<InMemoryShopPersistence>(calendar, now, seed, buildShopDemo(demo, now()));
    }
    const std::string path = debug.shopFile.value_or(FileShopPersistence::defaultPath());
    return std::make_unique<FileShopPersistence>(path, calendar, std::move(now), seed);
}

}  // namespace trotlet::shop
