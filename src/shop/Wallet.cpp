#include "shop/Wallet.h"

#include <algorithm>
#include <cmath>

namespace trotlet::shop {

std::string SpendError::message() const {
    if (kind == Kind::invalidAmount) return "The amount must be at least 1 Fish.";
    return "You need " + std::to_string(missing) + " more Fish.";
}

Wallet::Wallet(Clock clock, const Calendar& calendar, uint64_t idSeed)
    : clock_(std::move(clock)), calendar_(calendar), ids_(idSeed) {}

void Wallet::load(int64_t balance, std::vector<LedgerEntry> ledger) {
    balance_ = balance;
    ledger_ = std::move(ledger);
}

void Wallet::record(int64_t amount, const LedgerReason& reason, bool coalesce) {
    balance_ = checkedAdd(balance_, amount);
    const Timestamp now = clock_();
    if (coalesce && !ledger_.empty() && ledger_.back().reason == reason &&
        calendar_.sameDay(ledger_.back().date, now)) {
        LedgerEntry& last = ledger_.back();
        last.amount = checkedAdd(last.amount, amount);
        last.merged = checkedAdd(last.merged, 1);
        last.date = now;
        last.balanceAfter = balance_;
    } else {
        ledger_.push_back(LedgerEntry{ids_.next(), now, amount, reason, balance_, 1});
    }
    trim();
    if (onChange_) onChange_(amount, reason);
}

std::optional<SpendError> Wallet::spend(int64_t amount, const LedgerReason& reason) {
    if (amount < 1) return SpendError{SpendError::Kind::invalidAmount, 0};
    if (balance_ < amount) return SpendError{SpendError::Kind::notEnoughFish, amount - balance_};
    record(-amount, reason, false);
    return std::nullopt;
}

void Wallet::trim() {
    if (ledger_.size() <= maxRows) return;
    const size_t folded = ledger_.size() - (maxRows - 1);
    LedgerEntry carry{ids_.next(), ledger_[folded - 1].date, 0, LedgerReason::carryover(),
                      ledger_[folded - 1].balanceAfter, 0};
    for (size_t i = 0; i < folded; ++i) {
        carry.amount = checkedAdd(carry.amount, ledger_[i].amount);
        carry.merged = checkedAdd(carry.merged, ledger_[i].merged);
    }
    ledger_.erase(ledger_.begin(), ledger_.begin() + static_cast<std::ptrdiff_t>(folded));
    ledger_.insert(ledger_.begin(), std::move(carry));
}

int64_t Wallet::repairIfNeeded() {
    const int64_t sum = ledgerSum();
    if (balance_ == sum) return 0;
    if (!ledger_.empty()) {
        const int64_t old = balance_;
        balance_ = sum;
        recomputeRunningBalances(ledger_);
        if (onChange_) onChange_(0, std::nullopt);
        return sum - old;
    }
    // A balance with no history: keep it and give it a row that explains it.
    ledger_.insert(ledger_.begin(), LedgerEntry{ids_.next(), clock_(), balance_, LedgerReason::carryover(), balance_, 1});
    recomputeRunningBalances(ledger_);
    if (onChange_) onChange_(0, std::nullopt);
    return 0;
}

int64_t Wallet::ledgerSum() const {
    int64_t sum = 0;
    for (const auto& row : ledger_) sum = checkedAdd(sum, row.amount);
    return sum;
}

int64_t Wallet::earned(Timestamp onDayOf) const {
    int64_t sum = 0;
    for (const auto& row : ledger_)
        if (row.reason.isEarning() && calendar_.sameDay(row.date, onDayOf)) sum = checkedAdd(sum, row.amount);
    return sum;
}

std::optional<double> Wallet::averageDailyEarnings(Timestamp before, int days) const {
    if (days < 1 || ledger_.empty()) return std::nullopt;
    const std::string today = DayKey::of(before, calendar_);
    const std::string first = DayKey::of(ledger_.front().date, calendar_);
    const auto sinceFirst = DayKey::distance(first, today);
    if (!sinceFirst || *sinceFirst < 1) return std::nullopt;
    const long long counted = std::min<long long>(days, *sinceFirst);
    const auto windowStartKey = DayKey::offset(today, -counted);
    const auto windowStart = windowStartKey ? DayKey::startOf(*windowStartKey, calendar_) : std::nullopt;
    const auto windowEnd = DayKey::startOf(today, calendar_);
    if (!windowStart || !windowEnd) return std::nullopt;
    int64_t sum = 0;
    for (const auto& row : ledger_)
        if (row.reason.isEarning() && row.date >= *windowStart && row.date < *windowEnd)
            sum = checkedAdd(sum, row.amount);
    return static_cast<double>(sum) / static_cast<double>(counted);
}

std::optional<std::string> Wallet::invariantViolation() const {
    if (balance_ != ledgerSum())
        return "balance " + std::to_string(balance_) + " != ledger sum " + std::to_string(ledgerSum());
    int64_t running = 0;
    for (size_t i = 0; i < ledger_.size(); ++i) {
        running += ledger_[i].amount;
        if (ledger_[i].balanceAfter != running)
            return "row " + std::to_string(i) + " balanceAfter " + std::to_string(ledger_[i].balanceAfter) +
                   " != running sum " + std::to_string(running);
        if (running < 0) return "row " + std::to_string(i) + " leaves a negative balance";
    }
    if (ledger_.size() > maxRows) return "ledger holds " + std::to_string(ledger_.size()) + " rows";
    return std::nullopt;
}

}  // namespace trotlet::shop
