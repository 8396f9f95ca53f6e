#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "shop/LedgerReason.h"
#include "shop/SplitMix64.h"
#include "shop/Timestamp.h"

namespace trotlet::shop {

// One row of the Fish history.
struct LedgerEntry {
    std::string id;
    Timestamp date = 0;
    int64_t amount = 0;
    LedgerReason reason = LedgerReason::carryover();
    int64_t balanceAfter = 0;
    int64_t merged = 1;

    nlohmann::ordered_json toJson() const;

    // Money is strict: a row without a readable date, integer amount or known reason fails
    // with a message. `id` may be missing (a fresh one comes from `ids`); `balanceAfter` and
    // `merged` fall back to 0 and 1, because they are recomputed or only informative.
    static std::variant<LedgerEntry, std::string> fromJson(const nlohmann::json& json, IdGenerator& ids);

    friend bool operator==(const LedgerEntry&, const LedgerEntry&) = default;
};

// Rewrites every row's balanceAfter as the running sum from the first row.
void recomputeRunningBalances(std::vector<LedgerEntry>& ledger);

// Overflow of a Fish sum is a programming error, never a wrap: it stops the program.
int64_t checkedAdd(int64_t a, int64_t b);

}  // namespace trotlet::shop
