#pragma once

#include <functional>
#include <optional>
#include <string>

#include "shop/Calendar.h"
#include "shop/ShopNotice.h"
#include "shop/ShopState.h"

namespace trotlet::shop {

struct ShopLoadResult {
    ShopState state;
    std::optional<ShopNotice> notice;
    bool savingAllowed = true;
};

struct ShopSaveResult {
    bool ok = true;
    std::string error;
    explicit operator bool() const { return ok; }
};

// Where the shop lives between runs.
class ShopPersistence {
public:
    virtual ~ShopPersistence() = default;
    virtual ShopLoadResult loadResult() = 0;
    virtual ShopSaveResult save(const ShopState& state) = 0;
    virtual std::optional<std::string> fileDirectory() const = 0;
};

// The wallet's load-time repair on a decoded state: the ledger wins over a stored balance.
// Returns the correction (0 when none was needed).
int64_t repairLoadedState(ShopState& state, const Calendar& calendar, Timestamp now);

// Whether `next` carries on the history of `earlier`, so that a backup of `earlier` may be
// replaced by it: the same shop (the same creation time) whose ledger still holds earlier's
// newest row, or, once that row has been folded away, holds no fewer Fish. A fresh shop, or an
// older or poorer copy, does not carry it on.
bool continuesHistory(const ShopState& next, const ShopState& earlier);

// Never touches a file: demo runs, runs that skip onboarding, the harnesses. Saves go
// through the codec, so a state that can't round-trip shows up here too.
class InMemoryShopPersistence final : public ShopPersistence {
public:
    InMemoryShopPersistence(const Calendar& calendar, std::function<Timestamp()> now, uint64_t seed,
                            std::optional<ShopState> initial = std::nullopt);

    ShopLoadResult loadResult() override;
    ShopSaveResult save(const ShopState& state) override;
    std::optional<std::string> fileDirectory() const override { return std::nullopt; }

    const std::optional<std::string>& savedBytes() const { return saved_; }
    int saveCount() const { return saves_; }

private:
    const Calendar& calendar_;
    std::function<Timestamp()> now_;
    uint64_t seed_;
    std::optional<ShopState> initial_;
    std::optional<std::string> saved_;
    int saves_ = 0;
};

}  // namespace trotlet::shop
