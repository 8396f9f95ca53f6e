#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "EngineFixture.h"
#include "platform/linux/AtomicFile.h"
#include "shop/ShopStateCodec.h"
#include "shop/files/FileShopPersistence.h"

namespace trotlet::shop {
namespace {

namespace fs = std::filesystem;
using testing::day1;

std::string slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void spit(const fs::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

struct PersistenceFixture : ::testing::Test {
    fs::path dir;
    Timestamp now = day1;
    FixedOffsetCalendar calendar{0};

    void SetUp() override {
        std::string pattern = "/tmp/trotlet-shop-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        dir = pattern;
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
    fs::path file() const { return dir / "shop.json"; }
    fs::path backup() const { return dir / "shop.backup.json"; }
    FileShopPersistence store() { return FileShopPersistence(file().string(), calendar, [this] { return now; }, 3); }
    // A user with some history: welcome gift, a week of check-ins, a purchase.
    ShopState someHistory() {
        ManualClock clock(day1);
        EconomyEngine engine(ShopState::fresh(day1, 5), clock, calendar, 8);
        engine.grantWelcomeGiftIfNeeded();
        for (int d = 0; d < 8; ++d) {
            engine.checkInOutcome();
            engine.tickPassive(120, 0);
            clock.advance(86400);
        }
        EXPECT_EQ(engine.buy("shiba").kind, PurchaseResult::Kind::bought);
        return engine.state();
    }
};

// The round trips, the folding of a long ledger, the daily backup, truncation at every byte and
// the other recoveries run in ShopPersistenceVerifier (HarnessTests); here, what it leaves out.
TEST_F(PersistenceFixture, MissingFileIsANewUserAndTheFileIsCompact) {
    auto s = store();
    ShopLoadResult first = s.loadResult();
    EXPECT_FALSE(first.notice);
    EXPECT_TRUE(first.savingAllowed);
    EXPECT_TRUE(first.state.ledger.empty());

    ASSERT_TRUE(s.save(someHistory()));
    EXPECT_FALSE(fs::exists(dir / "shop.json.tmp"));
    const std::string bytes = slurp(file());
    EXPECT_EQ(bytes.find('\n'), std::string::npos) << "compact";
    EXPECT_EQ(bytes.rfind(R"({"schemaVersion":2,"balance":)", 0), 0u);
}

TEST_F(PersistenceFixture, BackupIsRefreshedOnLoad) {
    ASSERT_TRUE(store().save(someHistory()));
    ASSERT_FALSE(fs::exists(backup()));
    store().loadResult();
    EXPECT_EQ(slurp(backup()), slurp(file()));
}

// What each recovery tells the user, and the name the broken file is kept under.
TEST_F(PersistenceFixture, EachNoticeSaysWhatHappenedAndNamesTheKeptFile) {
    const std::string good = ShopStateCodec::encode(someHistory());
    const struct {
        const char* name;
        std::optional<std::string> contents;  // empty: no file; nothing: a directory in its place
        bool withBackup;
        ShopNotice::Kind kind;
        std::string title, body, kept;
    } cases[] = {
        {"broken money, no backup", R"({"schemaVersion":2,"balance":"lots","ledger":[]})", false,
         ShopNotice::Kind::resetAfterCorruption, "Shop data was reset",
         "Your shop file couldn't be read, so Trotlet started fresh. The broken file is saved as "
         "shop.corrupt-20261001-090000.json",
         "shop.corrupt-20261001-090000.json"},
        {"broken JSON beside a backup", R"({"balance": 12, "ledger": [ {"amount": oops)", true,
         ShopNotice::Kind::restoredFromBackup, "Shop data restored", "",
         "shop.corrupt-20261001-090000.json"},
        {"missing beside a backup", std::string(), true, ShopNotice::Kind::restoredFromBackup,
         "Shop data restored",
         "Your shop file was missing, so Trotlet restored the last backup from shop.backup.json",
         ""},
        {"newer", R"({"schemaVersion":99,"balance":5000,"ledger":[]})", false,
         ShopNotice::Kind::newerSchema, "",
         "A newer Trotlet saved this shop. Trotlet started fresh and kept a copy as "
         "shop.v99-20261001-090000.json",
         "shop.v99-20261001-090000.json"},
        {"hand-edited balance",
         R"({"schemaVersion":2,"balance":5000,"ledger":[)"
         R"({"date":"2026-10-01T09:00:00Z","amount":600,"reason":{"passive":{}}},)"
         R"({"date":"2026-10-01T09:00:00Z","amount":300,"reason":{"goldenFish":{}}}]})",
         false, ShopNotice::Kind::balanceCorrected, "",
         "Your balance is now the sum of your Fish history (-4100)", ""},
        {"a directory", std::nullopt, false, ShopNotice::Kind::unreadableFile, "",
         "Trotlet couldn't read shop.json, so it left the file untouched. Progress this session "
         "won't be saved until it can be read again.",
         ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove_all(dir);
        fs::create_directory(dir);
        if (!c.contents) fs::create_directory(file());
        else if (!c.contents->empty()) spit(file(), *c.contents);
        if (c.withBackup) spit(backup(), good);
        const ShopLoadResult r = store().loadResult();
        ASSERT_TRUE(r.notice);
        EXPECT_EQ(r.notice->kind, c.kind);
        if (!c.title.empty()) {
            EXPECT_EQ(r.notice->title(), c.title);
        }
        if (!c.body.empty()) {
            EXPECT_EQ(r.notice->body(), c.body);
        }
        if (!c.kept.empty()) {
            EXPECT_TRUE(fs::exists(dir / c.kept));
        }
    }
    // A second broken file in the same second gets a name of its own.
    fs::remove_all(dir);
    fs::create_directory(dir);
    spit(file(), "{");
    store().loadResult();
    spit(file(), "{");
    EXPECT_EQ(store().loadResult().notice->fileName, "shop.corrupt-20261001-090000-1.json");
}

TEST_F(PersistenceFixture, TheDailyBackupIsKeptAsideBeforeAStateThatDoesNotCarryItOn) {
    // A history the new state does not continue, and a backup that cannot be read at all: both
    // are the user's to recover from, so neither is written over.
    const std::string good = ShopStateCodec::encode(someHistory());
    for (const std::string& earlier : {good, good.substr(0, good.size() / 2)}) {
        SCOPED_TRACE(earlier.size() == good.size() ? "another history" : "an unreadable backup");
        fs::remove_all(dir);
        fs::create_directories(dir);
        auto s = store();
        s.loadResult();
        spit(backup(), earlier);
        now += FileShopPersistence::backupIntervalSeconds;
        ASSERT_TRUE(s.save(ShopState::fresh(now, 9)));
        std::vector<std::string> keptAside;
        for (const auto& entry : fs::directory_iterator(dir))
            if (entry.path().filename().string().starts_with("shop.backup.2"))
                keptAside.push_back(slurp(entry.path()));
        EXPECT_EQ(keptAside, std::vector<std::string>{earlier});
    }
}

TEST(ShopHistory, OnlyAStateThatCarriesTheHistoryOnContinuesIt) {
    const auto row = [](const char* id, int64_t amount) {
        const LedgerReason reason = amount < 0 ? LedgerReason::purchase("shiba") : LedgerReason::passive();
        return LedgerEntry{id, day1, amount, reason, 0, 1};
    };
    const auto state = [](Timestamp createdAt, std::vector<LedgerEntry> ledger) {
        ShopState s = ShopState::fresh(createdAt, 1);
        s.ledger = std::move(ledger);
        return s;
    };
    const ShopState earlier = state(day1, {row("a", 150), row("b", 50)});
    const struct {
        const char* name;
        ShopState next;
        bool continues;
    } cases[] = {
        {"the same", earlier, true},
        {"more rows", state(day1, {row("a", 150), row("b", 50), row("c", 5)}), true},
        {"a purchase since", state(day1, {row("a", 150), row("b", 50), row("c", -100)}), true},
        {"folded, no poorer", state(day1, {row("z", 200), row("d", 5)}), true},
        {"folded and poorer", state(day1, {row("z", 200), row("d", -100)}), false},
        {"an older copy", state(day1, {row("a", 150)}), false},
        {"a fresh shop", state(day1 + 3600, {row("a", 150), row("b", 50)}), false},
        {"after a shop with nothing", state(day1, {}), false},
    };
    for (const auto& c : cases) EXPECT_EQ(continuesHistory(c.next, earlier), c.continues) << c.name;
    EXPECT_TRUE(continuesHistory(earlier, state(day1, {})));
}

TEST_F(PersistenceFixture, VersionOneMigratesWithACarryoverAndNoLoss) {
    spit(file(), R"({"schemaVersion":1,"balance":900,"ledger":[)"
                 R"({"date":"2026-09-01T08:00:00Z","amount":250,"reason":{"passive":{}},"balanceAfter":250},)"
                 R"({"date":"2026-09-02T08:00:00Z","amount":50,"reason":{"checkIn":{"streakDay":9}},"balanceAfter":300}],)"
                 R"("owned":["cat","shiba"],"equipped":"shiba",)"
                 R"("streak":{"current":9,"best":9,"lastCheckInDay":"2026-09-02","lastSaverUsed":"2026-08-20T23:30:00Z"},)"
                 R"("today":{"day":"2026-09-02","activeSeconds":1200,"passiveFish":2}})");
    ShopLoadResult r = store().loadResult();
    EXPECT_FALSE(r.notice) << r.notice->body();
    EXPECT_EQ(r.state.schemaVersion, 2);
    EXPECT_EQ(r.state.balance, 900);
    ASSERT_EQ(r.state.ledger.size(), 3u);
    EXPECT_EQ(r.state.ledger[0].reason, LedgerReason::carryover());
    EXPECT_EQ(r.state.ledger[0].amount, 600);
    EXPECT_EQ(r.state.ledger[0].date, *parseIso8601("2026-09-01T08:00:00Z"));
    EXPECT_EQ(r.state.ledger[2].balanceAfter, 900);
    EXPECT_EQ(r.state.owned, (std::vector<std::string>{"cat", "shiba"}));
    EXPECT_EQ(r.state.streak.lastSaverDay, "2026-08-20");
    EXPECT_EQ(r.state.today.passiveProgress, 1200);
}

TEST_F(PersistenceFixture, AFailedWriteLeavesTheOldFileAndSaysWhy) {
    const ShopState old = someHistory();
    auto s = store();
    ASSERT_TRUE(s.save(old));
    const std::string before = slurp(file());
    ShopState changed = old;
    changed.ledger.push_back({"y", now, 7, LedgerReason::goldenFish(), 0, 1});
    changed.balance += 7;

    // A full disk: the file-size limit makes the write fail half-way.
    rlimit saved{};
    ::getrlimit(RLIMIT_FSIZE, &saved);
    const auto oldHandler = ::signal(SIGXFSZ, SIG_IGN);
    rlimit tiny = saved;
    tiny.rlim_cur = 100;
    ::setrlimit(RLIMIT_FSIZE, &tiny);
    const ShopSaveResult full = s.save(changed);
    ::setrlimit(RLIMIT_FSIZE, &saved);
    ::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(full);
    EXPECT_FALSE(full.error.empty());
    EXPECT_EQ(slurp(file()), before);
    EXPECT_FALSE(fs::exists(dir / "shop.json.tmp"));

    ASSERT_TRUE(s.save(changed));
    EXPECT_EQ(store().loadResult().state.balance, changed.balance);
}

TEST_F(PersistenceFixture, AKillDuringASaveLeavesTheOldOrTheNewFile) {
    const ShopState small = someHistory();
    ShopState big = small;
    for (int i = 0; i < 400; ++i) {
        big.ledger.push_back({std::string("r").append(std::to_string(i)), now, 1, LedgerReason::goldenFish(), 0, 1});
        big.balance += 1;
    }
    recomputeRunningBalances(big.ledger);
    ASSERT_TRUE(store().save(small));
    for (int round = 0; round < 12; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            auto s = store();
            for (int i = 0;; ++i) s.save(i % 2 ? small : big);
        }
        ::usleep(static_cast<useconds_t>(2000 + round * 1500));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ShopLoadResult r = store().loadResult();
        ASSERT_FALSE(r.notice) << "round " << round << ": " << r.notice->body();
        ASSERT_TRUE(r.state.balance == small.balance || r.state.balance == big.balance);
    }
    // A temp file left behind by the kill is ignored and replaced by the next save.
    spit(dir / "shop.json.tmp", "{\"schemaVer");
    EXPECT_FALSE(store().loadResult().notice);
    ASSERT_TRUE(store().save(small));
    EXPECT_FALSE(fs::exists(dir / "shop.json.tmp"));
}

TEST(ShopNotices, SameNoticeIsNotStacked) {
    ShopNotices notices;
    EXPECT_TRUE(notices.raise({ShopNotice::Kind::clockBehind}));
    EXPECT_FALSE(notices.raise({ShopNotice::Kind::clockBehind}));
    EXPECT_TRUE(notices.raise({ShopNotice::Kind::clockJumpedForward}));
    EXPECT_EQ(notices.pending().size(), 2u);
    notices.dismiss(ShopNotice::Kind::clockBehind);
    EXPECT_TRUE(notices.raise({ShopNotice::Kind::clockBehind}));
    EXPECT_EQ(notices.pending().back().body(), "Check-ins and Golden Fish resume when your clock catches up.");
}

TEST(ShopStateCodec, RejectsImplausibleOrNegativeMoney) {
    FixedOffsetCalendar utc(0);
    const ShopStateCodec codec(utc);
    const struct {
        const char* json;
        DecodeError::Kind kind;
    } cases[] = {
        {R"({"schemaVersion":2,"balance":9223372036854775807,"ledger":[]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":2,"balance":1,"ledger":[{"date":"2026-10-01T09:00:00Z","amount":9223372036854775807,"reason":{"passive":{}}},{"date":"2026-10-01T09:00:00Z","amount":9223372036854775807,"reason":{"passive":{}}}]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":2,"balance":-5,"ledger":[]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":2,"balance":0,"ledger":[{"date":"2026-10-01T09:00:00Z","amount":-5,"reason":{"purchase":{"_0":"shiba"}}}]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":2,"balance":0,"ledger":{}})", DecodeError::Kind::broken},
        // A history whose running balance dips below zero on the way (a spend before the earning).
        {R"({"schemaVersion":2,"balance":5,"ledger":[{"date":"2026-10-01T09:00:00Z","amount":-5,"reason":{"purchase":{"_0":"shiba"}}},{"date":"2026-10-02T09:00:00Z","amount":10,"reason":{"passive":{}}}]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":2,"balance":5,"ledger":[{"date":"4200-01-01T00:00:00Z","amount":5,"reason":{"passive":{}}}]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":0,"balance":0,"ledger":[]})", DecodeError::Kind::broken},
        {R"({"schemaVersion":"2","balance":0,"ledger":[]})", DecodeError::Kind::unreadableHeader},
        {R"([])", DecodeError::Kind::unreadableHeader},
        {R"({"schemaVersion":3,"balance":0,"ledger":[]})", DecodeError::Kind::newerSchema},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        const auto decoded = codec.decode(c.json);
        ASSERT_TRUE(std::holds_alternative<DecodeError>(decoded));
        EXPECT_EQ(std::get<DecodeError>(decoded).kind, c.kind);
    }
}

}  // namespace
}  // namespace trotlet::shop
