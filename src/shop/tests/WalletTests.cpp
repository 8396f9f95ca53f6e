#include <gtest/gtest.h>

#include <random>

#include "shop/Calendar.h"
#include "shop/Wallet.h"

namespace trotlet::shop {
namespace {

constexpr Timestamp day1 = 1790845200.0;  // 2026-10-01T09:00:00Z

struct WalletFixture : ::testing::Test {
    Timestamp now = day1;
    FixedOffsetCalendar calendar{0};
    Wallet wallet{[this] { return now; }, calendar, 42};
    std::vector<std::pair<int64_t, bool>> changes;  // amount, had a reason

    void SetUp() override {
        wallet.setChangeCallback([this](int64_t amount, const std::optional<LedgerReason>& reason) {
            changes.emplace_back(amount, reason.has_value());
        });
    }
    void expectInvariants() {
        const auto violation = wallet.invariantViolation();
        EXPECT_FALSE(violation.has_value()) << *violation;
    }
};

TEST_F(WalletFixture, CoalescesRepeatingEarningsWithinADayOnly) {
    for (int i = 0; i < 3; ++i) wallet.record(1, LedgerReason::passive(), true);
    ASSERT_EQ(wallet.ledger().size(), 1u);
    EXPECT_EQ(wallet.ledger()[0].amount, 3);
    EXPECT_EQ(wallet.ledger()[0].merged, 3);
    now += 86400;
    wallet.record(1, LedgerReason::passive(), true);
    EXPECT_EQ(wallet.ledger().size(), 2u);
    // One-off events never grow a row, even with the same reason on the same day.
    wallet.record(10, LedgerReason::checkIn(1), false);
    wallet.record(10, LedgerReason::checkIn(1), false);
    EXPECT_EQ(wallet.ledger().size(), 4u);
    // A different reason in between starts a new passive row.
    wallet.record(1, LedgerReason::passive(), true);
    EXPECT_EQ(wallet.ledger().size(), 5u);
    EXPECT_EQ(wallet.balance(), 25);
    EXPECT_EQ(changes.size(), 7u);
    expectInvariants();
}

TEST_F(WalletFixture, FoldsTheOldestRowsIntoOneCarryoverAt501) {
    for (int i = 0; i < 500; ++i) wallet.record(i + 1, LedgerReason::goldenFish(), false);
    EXPECT_EQ(wallet.ledger().size(), 500u);
    const int64_t before = wallet.balance();
    wallet.record(7, LedgerReason::goldenFish(), false);
    ASSERT_EQ(wallet.ledger().size(), 500u);
    EXPECT_EQ(wallet.ledger()[0].reason, LedgerReason::carryover());
    EXPECT_EQ(wallet.ledger()[0].amount, 1 + 2);
    EXPECT_EQ(wallet.ledger()[0].merged, 2);
    EXPECT_EQ(wallet.ledger()[0].balanceAfter, 3);
    EXPECT_EQ(wallet.balance(), before + 7);
    // The next fold takes the previous carryover row in again.
    wallet.record(1, LedgerReason::goldenFish(), false);
    EXPECT_EQ(wallet.ledger()[0].amount, 1 + 2 + 3);
    EXPECT_EQ(wallet.ledger()[0].merged, 3);
    expectInvariants();
}

TEST_F(WalletFixture, SpendingRefusesBadAmountsAndShortfalls) {
    wallet.record(100, LedgerReason::welcomeGift(), false);
    EXPECT_EQ(wallet.spend(0, LedgerReason::purchase("shiba")), (SpendError{SpendError::Kind::invalidAmount, 0}));
    EXPECT_EQ(wallet.spend(-5, LedgerReason::purchase("shiba")), (SpendError{SpendError::Kind::invalidAmount, 0}));
    EXPECT_EQ(wallet.spend(101, LedgerReason::purchase("shiba")), (SpendError{SpendError::Kind::notEnoughFish, 1}));
    EXPECT_EQ(wallet.ledger().size(), 1u);
    EXPECT_EQ(wallet.spend(100, LedgerReason::purchase("shiba")), std::nullopt);
    EXPECT_EQ(wallet.balance(), 0);
    EXPECT_EQ(wallet.ledger().back().amount, -100);
    EXPECT_EQ(SpendError({SpendError::Kind::notEnoughFish, 1}).message(), "You need 1 more Fish.");
    expectInvariants();
}

TEST_F(WalletFixture, RepairLetsTheLedgerWinOrExplainsABareBalance) {
    std::vector<LedgerEntry> rows = {{"a", day1, 600, LedgerReason::passive(), 0, 1},
                                     {"b", day1, 300, LedgerReason::checkIn(2), 0, 1}};
    wallet.load(5000, rows);
    EXPECT_EQ(wallet.repairIfNeeded(), -4100);
    EXPECT_EQ(wallet.balance(), 900);
    EXPECT_EQ(wallet.ledger()[1].balanceAfter, 900);
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0], std::make_pair(int64_t{0}, false));
    EXPECT_EQ(wallet.repairIfNeeded(), 0);

    wallet.load(15, {});
    EXPECT_EQ(wallet.repairIfNeeded(), 0);
    ASSERT_EQ(wallet.ledger().size(), 1u);
    EXPECT_EQ(wallet.ledger()[0].reason, LedgerReason::carryover());
    EXPECT_EQ(wallet.ledger()[0].amount, 15);
    EXPECT_EQ(wallet.balance(), 15);
    expectInvariants();
}

TEST_F(WalletFixture, EarnedCountsOnlyEarningsOfThatCalendarDay) {
    wallet.record(100, LedgerReason::welcomeGift(), false);
    wallet.record(500, LedgerReason::debug("qa"), false);
    wallet.record(3, LedgerReason::passive(), true);
    ASSERT_EQ(wallet.spend(250, LedgerReason::purchase("shiba")), std::nullopt);
    now += 86400;
    wallet.record(10, LedgerReason::checkIn(1), false);
    EXPECT_EQ(wallet.earned(day1), 103);
    EXPECT_EQ(wallet.earned(now), 10);
    EXPECT_EQ(wallet.earned(now + 86400), 0);
    EXPECT_EQ(wallet.averageDailyEarnings(now, 7), 103.0);
    EXPECT_EQ(wallet.averageDailyEarnings(now + 86400, 7), 56.5);
    EXPECT_EQ(wallet.averageDailyEarnings(day1, 7), std::nullopt);
}

// Random sequences of earning, spending, folding and day changes keep every invariant after
// every single step.
TEST_F(WalletFixture, InvariantsHoldOverRandomOperationSequences) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937_64 random(seed);
        wallet.load(0, {});
        int64_t expected = 0;
        for (int step = 0; step < 1500; ++step) {
            switch (random() % 6) {
            case 0:
            case 1: {
                const int64_t amount = static_cast<int64_t>(random() % 5 + 1);
                wallet.record(amount, LedgerReason::passive(), true);
                expected += amount;
                break;
            }
            case 2:
                wallet.record(5, LedgerReason::goldenFish(), false);
                expected += 5;
                break;
            case 3: {
                const int64_t amount = static_cast<int64_t>(random() % 400) - 20;
                const auto error = wallet.spend(amount, LedgerReason::purchase("shiba"));
                if (!error) expected -= amount;
                else if (amount >= 1) {
                    EXPECT_EQ(error->missing, amount - wallet.balance());
                }
                break;
            }
            case 4: now += static_cast<double>(random() % 50000); break;
            case 5: EXPECT_EQ(wallet.repairIfNeeded(), 0); break;
            }
            ASSERT_EQ(wallet.balance(), expected) << "seed " << seed << " step " << step;
            const auto violation = wallet.invariantViolation();
            ASSERT_FALSE(violation.has_value()) << "seed " << seed << " step " << step << ": " << *violation;
        }
    }
}

}  // namespace
}  // namespace trotlet::shop
