#include "shop/files/ShopPersistenceVerifier.h"

#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/linux/AtomicFile.h"
#include "shop/EconomyEngine.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopStateCodec.h"
#include "shop/files/FileShopPersistence.h"

namespace trotlet::shop {

namespace {

namespace fs = std::filesystem;

constexpr Timestamp verifyTime = 1790845200.0;  // 2026-10-01T09:00:00Z

std::string slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void spit(const fs::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

int64_t ledgerSum(const ShopState& s) {
    int64_t sum = 0;
    for (const auto& row : s.ledger) sum += row.amount;
    return sum;
}

// One case: a fresh folder, a store on a fixed clock, and a list of failed expectations.
struct Case {
    fs::path dir;
    Timestamp now = verifyTime;
    FixedOffsetCalendar calendar{0};
    std::vector<std::string> failures;

    fs::path file() const { return dir / "shop.json"; }
    fs::path backup() const { return dir / "shop.backup.json"; }
    FileShopPersistence store() { return FileShopPersistence(file().string(), calendar, [this] { return now; }, 11); }
    void expect(bool condition, const std::string& what) {
        if (!condition) failures.push_back(what);
    }
    size_t keptCopies(std::string_view prefix) const {
        size_t n = 0;
        for (const auto& entry : fs::directory_iterator(dir))
            n += entry.path().filename().string().rfind(prefix, 0) == 0;
        return n;
    }
    void expectNotice(const ShopLoadResult& r, ShopNotice::Kind kind) {
        expect(r.notice && r.notice->kind == kind,
               "expected the " + std::string(ShopNotice{kind}.kindName()) + " notice, got " +
                   (r.notice ? std::string(r.notice->kindName()) : std::string("none")));
    }
};

const std::string brokenMoney = R"({"schemaVersion":2,"balance":"lots","ledger":[]})";
const std::string notJson = R"({"balance": 12, "ledger": [ {"amount": oops)";
const std::string newer = R"({"schemaVersion":99,"balance":5000,"ledger":[]})";
const std::string version1 =
    R"({"schemaVersion":1,"balance":900,"ledger":[)"
    R"({"date":"2026-09-01T08:00:00Z","amount":250,"reason":{"passive":{}},"balanceAfter":250},)"
    R"({"date":"2026-09-02T08:00:00Z","amount":50,"reason":{"checkIn":{"streakDay":9}},"balanceAfter":300}],)"
    R"("owned":["cat","shiba"],"equipped":"shiba","streak":{"current":9,"best":9,"lastCheckInDay":"2026-09-02"}})";
const std::string lenient =
    R"({"schemaVersion":2,"balance":15,"ledger":[{"date":"2026-10-01T09:00:00Z","amount":15,)"
    R"("reason":{"goldenFish":{}},"balanceAfter":15}],"today":"garbage","streak":{"current":"x","best":3}})";
const std::string handEdited =
    R"({"schemaVersion":2,"balance":5000,"ledger":[{"date":"2026-10-01T09:00:00Z","amount":600,"reason":{"passive":{}}},)"
    R"({"date":"2026-10-01T09:00:00Z","amount":300,"reason":{"goldenFish":{}}}]})";

using CaseBody = std::function<void(Case&)>;

const std::vector<std::pair<std::string, CaseBody>>& cases() {
    static const std::vector<std::pair<std::string, CaseBody>> all = {
        {"round trip", [](Case& c) {
             const ShopState state = buildShopDemo(ShopDemo::midGame, c.now);
             c.expect(bool(c.store().save(state)), "save failed");
             const ShopLoadResult r = c.store().loadResult();
             c.expect(!r.notice, "unexpected notice");
             c.expect(ShopStateCodec::encode(r.state) == ShopStateCodec::encode(state), "state changed on the way");
         }},
        {"purchase survives a reload", [](Case& c) {
             ManualClock clock(c.now);
             auto store = c.store();
             EconomyEngine engine(store.loadResult().state, clock, c.calendar, 5);
             engine.setChangeCallback([&] { store.save(engine.state()); });
             engine.grantDebugFish(250, "verify");
             c.expect(engine.buy("shiba").kind == PurchaseResult::Kind::bought, "purchase refused");
             const ShopLoadResult r = c.store().loadResult();
             c.expect(r.state.owned == std::vector<std::string>{"cat", "shiba"} && r.state.balance == 0,
                      "the purchase was not on disk");
         }},
        {"ledger over 500 rows folds and adds up", [](Case& c) {
             ManualClock clock(c.now);
             EconomyEngine engine(ShopState::fresh(c.now, 1), clock, c.calendar, 2);
             for (int i = 0; i < 700; ++i) engine.wallet().record(i % 7 + 1, LedgerReason::goldenFish(), false);
             c.store().save(engine.state());
             const ShopLoadResult r = c.store().loadResult();
             c.expect(r.state.ledger.size() == 500, "ledger not folded to 500 rows");
             c.expect(ledgerSum(r.state) == r.state.balance && r.state.balance == engine.wallet().balance(),
                      "balance != sum(ledger) after reload");
         }},
        {"backup at most once a day", [](Case& c) {
             ShopState state = buildShopDemo(ShopDemo::midGame, c.now);
             auto store = c.store();
             store.save(state);
             c.expect(!fs::exists(c.backup()), "backup written within the first day");
             c.now += 86400;
             store.save(state);
             c.expect(slurp(c.backup()) == slurp(c.file()), "no backup after a day");
             state.ledger.push_back({"v", c.now, 5, LedgerReason::goldenFish(), 0, 1});
             state.balance += 5;
             recomputeRunningBalances(state.ledger);
             c.now += 3600;
             store.save(state);
             c.expect(slurp(c.backup()) != slurp(c.file()), "backup rewritten within a day");
         }},
        {"corrupt file, backup restored", [](Case& c) {
             const ShopState good = buildShopDemo(ShopDemo::rich, c.now);
             spit(c.backup(), ShopStateCodec::encode(good));
             spit(c.file(), brokenMoney);
             const ShopLoadResult r = c.store().loadResult();
             c.expectNotice(r, ShopNotice::Kind::restoredFromBackup);
             c.expect(r.state.balance == good.balance, "restored balance differs from the backup");
             c.expect(c.keptCopies("shop.corrupt-") == 1, "broken file not kept aside");
             c.expect(slurp(c.file()) == ShopStateCodec::encode(good), "restored state not written back");
         }},
        {"missing file, backup restored and never replaced by a fresh shop", [](Case& c) {
             const ShopState good = buildShopDemo(ShopDemo::rich, c.now);
             spit(c.backup(), ShopStateCodec::encode(good));
             const ShopLoadResult r = c.store().loadResult();
             c.expectNotice(r, ShopNotice::Kind::restoredFromBackup);
             c.expect(r.state.balance == good.balance, "restored balance differs from the backup");
             spit(c.file(), ShopStateCodec::encode(ShopState::fresh(c.now, 3)));
             c.store().loadResult();
             c.expect(c.keptCopies("shop.backup.2") == 1, "the good backup was not kept aside");
         }},
        {"corrupt file, no backup", [](Case& c) {
             spit(c.file(), notJson);
             const ShopLoadResult r = c.store().loadResult();
             c.expectNotice(r, ShopNotice::Kind::resetAfterCorruption);
             c.expect(r.notice && r.notice->body().find("shop.corrupt-") != std::string::npos, "notice doesn't name the kept file");
             c.expect(c.keptCopies("shop.corrupt-") == 1 && !fs::exists(c.file()), "broken file not moved aside");
         }},
        {"newer schema kept aside", [](Case& c) {
             spit(c.file(), newer);
             const ShopLoadResult r = c.store().loadResult();
             c.expectNotice(r, ShopNotice::Kind::newerSchema);
             c.expect(c.keptCopies("shop.v99-") == 1, "newer file not kept as shop.v99-<stamp>.json");
             c.expect(r.state.balance == 0 && r.savingAllowed, "did not start fresh");
         }},
        {"version 1 migrates", [](Case& c) {
             spit(c.file(), version1);
             const ShopLoadResult r = c.store().loadResult();
             c.expect(!r.notice, "unexpected notice");
             c.expect(r.state.schemaVersion == 2 && r.state.balance == 900, "not version 2 with 900 Fish");
             c.expect(r.state.ledger.size() == 3 && r.state.ledger[0].reason == LedgerReason::carryover() &&
                          r.state.ledger[0].amount == 600 && r.state.ledger[0].date == r.state.ledger[1].date,
                      "no carryover row of 600 dated like the first row");
         }},
        {"lenient extras", [](Case& c) {
             spit(c.file(), lenient);
             const ShopLoadResult r = c.store().loadResult();
             c.expect(!r.notice && r.state.balance == 15 && r.state.ledger.size() == 1, "money not kept");
             c.expect(r.state.today == DailyCounters{} && r.state.streak.current == 0, "bad extras not defaulted");
         }},
        {"hand-edited balance corrected", [](Case& c) {
             spit(c.file(), handEdited);
             const ShopLoadResult r = c.store().loadResult();
             c.expectNotice(r, ShopNotice::Kind::balanceCorrected);
             c.expect(r.state.balance == 900 && r.notice && r.notice->correction == -4100, "not corrected to 900");
         }},
        {"unreadable file never overwritten", [](Case& c) {
             fs::create_directory(c.file());
             spit(c.file() / "keep", "keep");
             auto store = c.store();
             const ShopLoadResult r = store.loadResult();
             c.expectNotice(r, ShopNotice::Kind::unreadableFile);
             c.expect(!r.savingAllowed && !store.save(r.state), "saving still allowed");
             c.expect(slurp(c.file() / "keep") == "keep", "unreadable file touched");
         }},
        {"failed write keeps the old file", [](Case& c) {
             const ShopState state = buildShopDemo(ShopDemo::newUser, c.now);
             auto store = c.store();
             store.save(state);
             const std::string before = slurp(c.file());
             fs::create_directory(c.dir / "shop.json.tmp");
             const ShopSaveResult failed = store.save(buildShopDemo(ShopDemo::rich, c.now));
             c.expect(!failed && !failed.error.empty(), "the failed write was not reported");
             c.expect(slurp(c.file()) == before, "old file changed");
         }},
        {"leftover temp file ignored", [](Case& c) {
             const ShopState state = buildShopDemo(ShopDemo::streak29, c.now);
             c.store().save(state);
             spit(c.dir / "shop.json.tmp", "{\"schemaVer");
             const ShopLoadResult r = c.store().loadResult();
             c.expect(!r.notice && r.state.balance == state.balance, "temp file disturbed the load");
         }},
        {"truncated at every byte offset", [](Case& c) {
             const ShopState good = buildShopDemo(ShopDemo::newUser, c.now);
             const std::string bytes = ShopStateCodec::encode(good);
             for (size_t cut = 0; cut < bytes.size(); ++cut) {
                 spit(c.file(), std::string_view(bytes).substr(0, cut));
                 spit(c.backup(), bytes);
                 const ShopLoadResult r = c.store().loadResult();
                 if (r.state.balance < good.balance || ledgerSum(r.state) != r.state.balance) {
                     c.expect(false, "lost Fish when cut at byte " + std::to_string(cut));
                     return;
                 }
                 for (const auto& entry : fs::directory_iterator(c.dir))
                     if (entry.path().filename().string().rfind("shop.corrupt-", 0) == 0) fs::remove(entry.path());
             }
         }},
    };
    return all;
}

}  // namespace

PersistenceVerification verifyShopPersistence(const std::string& parent) {
    PersistenceVerification result;
    std::string pattern = parent + "/trotlet-verify-shop-XXXXXX";
    if (!::mkdtemp(pattern.data())) {
        result.passed = false;
        result.json["error"] = "cannot create a temporary folder in " + parent;
        return result;
    }
    const fs::path root = pattern;
    result.json["directory"] = root.string();
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    int index = 0;
    for (const auto& [name, body] : cases()) {
        Case c;
        c.dir = root / ("case-" + std::to_string(++index));
        fs::create_directory(c.dir);
        try {
            body(c);
        } catch (const std::exception& e) {
            c.failures.push_back(std::string("exception: ") + e.what());
        }
        nlohmann::ordered_json entry = nlohmann::ordered_json::object();
        entry["name"] = name;
        entry["passed"] = c.failures.empty();
        if (!c.failures.empty()) entry["failures"] = c.failures;
        result.passed = result.passed && c.failures.empty();
        list.push_back(std::move(entry));
    }
    std::error_code ignored;
    fs::remove_all(root, ignored);
    result.json["cases"] = std::move(list);
    result.json["passed"] = result.passed;
    return result;
}

}  // namespace trotlet::shop
