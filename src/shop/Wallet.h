#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "shop/Calendar.h"
#include "shop/LedgerEntry.h"
#include "shop/SplitMix64.h"

namespace trotlet::shop {

struct SpendError {
    enum class Kind { invalidAmount, notEnoughFish };
    Kind kind = Kind::invalidAmount;
    int64_t missing = 0;  // for notEnoughFish: amount − balance

    std::string message() const;
    friend bool operator==(const SpendError&, const SpendError&) = default;
};

// The Fish balance and the ledger that explains it. Every change goes through `record`, so
// these hold after every call:
//   1. balance == sum of the ledger's amounts
//   2. each row's balanceAfter is the running sum up to and including it
//   3. spending never takes the balance below 0, so no balanceAfter is negative
//   4. the ledger holds at most 500 rows
class Wallet {
public:
    static constexpr size_t maxRows = 500;
    using Clock = std::function<Timestamp()>;
    // After a repair the callback gets amount 0 and no reason.
    using ChangeCallback = std::function<void(int64_t amount, const std::optional<LedgerReason>& reason)>;

    Wallet(Clock clock, const Calendar& calendar, uint64_t idSeed = 0x5EED);
    Wallet(const Wallet&) = delete;
    Wallet& operator=(const Wallet&) = delete;

    // Takes a stored state as it is; run `repairIfNeeded` afterwards.
    void load(int64_t balance, std::vector<LedgerEntry> ledger);
    void setChangeCallback(ChangeCallback callback) { onChange_ = std::move(callback); }

    int64_t balance() const { return balance_; }
    const std::vector<LedgerEntry>& ledger() const { return ledger_; }

    void record(int64_t amount, const LedgerReason& reason, bool coalesce);
    std::optional<SpendError> spend(int64_t amount, const LedgerReason& reason);
    int64_t repairIfNeeded();

    int64_t ledgerSum() const;
    int64_t earned(Timestamp onDayOf) const;
    // Mean Fish earned per day over the `days` days before the day of `before`, counting only
    // days since the first ledger row; none when no such day exists.
    std::optional<double> averageDailyEarnings(Timestamp before, int days) const;

    // The first broken invariant in words, or none. For tests and the simulator's checks.
    std::optional<std::string> invariantViolation() const;

    IdGenerator& ids() { return ids_; }

private:
    void trim();

    Clock clock_;
    const Calendar& calendar_;
    IdGenerator ids_;
    int64_t balance_ = 0;
    std::vector<LedgerEntry> ledger_;
    ChangeCallback onChange_;
};

}  // namespace trotlet::shop
