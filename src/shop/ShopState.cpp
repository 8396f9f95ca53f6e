#include "shop/ShopState.h"

namespace trotlet::shop {

ShopState ShopState::fresh(Timestamp createdAt, uint64_t seed) {
    ShopState state;
    state.createdAt = createdAt;
    state.goldenFish.randomState = seed;
    return state;
}

}  // namespace trotlet::shop
