#include "shop/ShopPersistence.h"

#include "shop/ShopStateCodec.h"
#include "shop/Wallet.h"

namespace trotlet::shop {

int64_t repairLoadedState(ShopState& state, const Calendar& calendar, Timestamp now) {
    Wallet wallet([now] { return now; }, calendar, static_cast<uint64_t>(state.ledger.size()) * 31 + 17);
    wallet.load(state.balance, std::move(state.ledger));
    const int64_t correction = wallet.repairIfNeeded();
    state.balance = wallet.balance();
    state.ledger = wallet.ledger();
    return correction;
}

bool continuesHistory(const ShopState& next, const ShopState& earlier) {
    if (next.createdAt != earlier.createdAt) return false;
    if (earlier.ledger.empty()) return true;
    const std::string& newest = earlier.ledger.back().id;
    for (const auto& row : next.ledger)
        if (row.id == newest) return true;
    int64_t nextSum = 0, earlierSum = 0;
    for (const auto& row : next.ledger) nextSum += row.amount;
    for (const auto& row : earlier.ledger) earlierSum += row.amount;
    return nextSum >= earlierSum;
}

InMemoryShopPersistence::InMemoryShopPersistence(const Calendar& calendar, std::function<Timestamp()> now,
                                                 uint64_t seed, std::optional<ShopState> initial)
    : calendar_(calendar), now_(std::move(now)), seed_(seed), initial_(std::move(initial)) {}

ShopLoadResult InMemoryShopPersistence::loadResult() {
    ShopLoadResult result;
    if (saved_) {
        auto decoded = ShopStateCodec(calendar_).decode(*saved_);
        if (auto* ok = std::get_if<DecodedState>(&decoded)) result.state = std::move(ok->state);
        else result.state = ShopState::fresh(now_(), seed_);
    } else {
        result.state = initial_ ? *initial_ : ShopState::fresh(now_(), seed_);
    }
    if (const int64_t correction = repairLoadedState(result.state, calendar_, now_()))
        result.notice = ShopNotice{ShopNotice::Kind::balanceCorrected, {}, correction};
    return result;
}

ShopSaveResult InMemoryShopPersistence::save(const ShopState& state) {
    saved_ = ShopStateCodec::encode(state);
    ++saves_;
    return {};
}

}  // namespace trotlet::shop
