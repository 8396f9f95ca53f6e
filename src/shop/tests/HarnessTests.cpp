#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "shop/EconomyEngine.h"
#include "shop/ShopDebugOptions.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopPersistence.h"
#include "shop/ShopStateCodec.h"
#include "shop/files/ShopPersistenceFactory.h"
#include "shop/files/ShopPersistenceVerifier.h"
#include "shop/files/SystemEconomyClock.h"

namespace trotlet::shop {
namespace {

constexpr Timestamp evening = 1793469600.0;  // 2026-10-31T18:00:00Z

std::unique_ptr<EconomyEngine> engineOn(const ShopState& state, ManualClock& clock, const Calendar& calendar) {
    return std::make_unique<EconomyEngine>(state, clock, calendar, 1);
}

TEST(ShopDemoStates, EachStateIsWhatItsNameSays) {
    FixedOffsetCalendar utc(0);
    for (size_t i = 0; i < ShopDemoNames.size(); ++i) {
        const ShopState state = buildShopDemo(static_cast<ShopDemo>(i), evening);
        SCOPED_TRACE(ShopDemoNames[i]);
        int64_t sum = 0;
        for (const auto& row : state.ledger) sum += row.amount;
        EXPECT_EQ(sum, state.balance);
        EXPECT_TRUE(state.welcomeGiftGranted);
        EXPECT_LE(*state.lastSeen, evening);
        // Every demo survives the file format.
        const auto decoded = ShopStateCodec(utc).decode(ShopStateCodec::encode(state));
        ASSERT_TRUE(std::holds_alternative<DecodedState>(decoded));
        EXPECT_EQ(ShopStateCodec::encode(std::get<DecodedState>(decoded).state), ShopStateCodec::encode(state));
    }
    EXPECT_EQ(buildShopDemo(ShopDemo::newUser, evening).balance, 150);

    // streak29: today's check-in is day 30 and brings the secret mascot.
    ManualClock clock(evening);
    auto engine = engineOn(buildShopDemo(ShopDemo::streak29, evening), clock, utc);
    EXPECT_EQ(engine->streak().current, 29);
    const CheckInOutcome out = engine->checkInOutcome();
    EXPECT_EQ(out.day, 30);
    EXPECT_EQ(out.unlocked, std::vector<std::string>{"goldenCat"});

    const ShopState saver = buildShopDemo(ShopDemo::saverUsed, evening);
    EXPECT_EQ(saver.streak.savedDays.size(), 1u);
    EXPECT_EQ(saver.streak.current, 8);

    const ShopState complete = buildShopDemo(ShopDemo::complete, evening);
    EXPECT_EQ(complete.owned.size(), Catalog::all().size());
    EXPECT_EQ(complete.unlockedAchievements.size(), 14u);
    EXPECT_EQ(complete.equipped, "goldenCat");

    EXPECT_GE(buildShopDemo(ShopDemo::rich, evening).balance, 10000);
    const ShopState mid = buildShopDemo(ShopDemo::midGame, evening);
    EXPECT_EQ(mid.owned, (std::vector<std::string>{"cat", "shiba", "bunny"}));
}

TEST(ShopPersistenceVerifier, EveryCasePasses) {
    const PersistenceVerification result = verifyShopPersistence(::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp");
    EXPECT_TRUE(result.passed) << result.json.dump(2);
    EXPECT_GE(result.json["cases"].size(), 14u);
    struct stat st {};
    EXPECT_NE(::stat(result.json["directory"].get<std::string>().c_str(), &st), 0) << "temporary folder removed";
}

TEST(ShopDebugOptions, FlagsAndTheirValues) {
    using V = std::variant<ShopDebugOptions, std::string>;
    const auto parse = [](std::vector<std::string> args) {
        args.insert(args.begin(), "trotlet");
        return ShopDebugOptions::parse(args);
    };
    const V ok = parse({"--mock", "--grant-fish", "500", "--shop-demo", "rich", "--shop-file", "/tmp/x.json"});
    ASSERT_TRUE(std::holds_alternative<ShopDebugOptions>(ok));
    const auto& options = std::get<ShopDebugOptions>(ok);
    EXPECT_EQ(options.grantFish, 500);
    EXPECT_EQ(options.demo, ShopDemo::rich);
    EXPECT_EQ(options.shopFile, "/tmp/x.json");
    EXPECT_FALSE(std::get<ShopDebugOptions>(parse({"--mock"})).any());

    const struct {
        std::vector<std::string> args;
        const char* message;
    } bad[] = {
        {{"--grant-fish"}, "--grant-fish needs a whole number of Fish (not 0)"},
        {{"--grant-fish", "lots"}, "--grant-fish needs a whole number of Fish (not 0)"},
        {{"--grant-fish", "--mock"}, "--grant-fish needs a whole number of Fish (not 0)"},
        {{"--shop-demo", "Rich"}, "--shop-demo needs one of: newUser, midGame, streak29, saverUsed, rich, complete"},
        {{"--shop-file"}, "--shop-file needs a path"},
    };
    for (const auto& c : bad) {
        const V parsed = parse(c.args);
        ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << c.message;
        EXPECT_EQ(std::get<std::string>(parsed), c.message);
    }
}

TEST(ShopPersistenceFactory, DemoAndInMemorySessionsNeverNameAFile) {
    FixedOffsetCalendar utc(0);
    ShopDebugOptions debug;
    debug.demo = ShopDemo::streak29;
    const auto demo = makeShopPersistence(debug, false, utc, [] { return evening; }, 1);
    EXPECT_FALSE(demo->fileDirectory());
    EXPECT_EQ(demo->loadResult().state.streak.current, 29);
    EXPECT_FALSE(makeShopPersistence({}, true, utc, [] { return evening; }, 1)->fileDirectory());
    ShopDebugOptions file;
    file.shopFile = "/tmp/trotlet-elsewhere/mine.json";
    EXPECT_EQ(makeShopPersistence(file, false, utc, [] { return evening; }, 1)->fileDirectory(), "/tmp/trotlet-elsewhere");
}

TEST(SystemEconomyClock, ReadsTheMachinesClocks) {
    const SystemEconomyClock clock;
    const ClockReading a = clock.read();
    const ClockReading b = clock.read();
    EXPECT_GT(a.wall, 1.7e9);
    EXPECT_GE(b.monotonicNanos, a.monotonicNanos);
    EXPECT_EQ(a.bootId, b.bootId);
    EXPECT_FALSE(a.bootId.empty());
    const long offset = LocalTimeCalendar().utcOffsetSeconds(a.wall);
    EXPECT_LE(std::abs(offset), 14 * 3600);
    if (const char* tz = std::getenv("TZ"); tz && std::string(tz) == "UTC") {
        EXPECT_EQ(offset, 0);
    }
}

// The harness flags from outside, as a user runs them.
struct CommandResult {
    int status = -1;
    std::string out;
};

CommandResult runTrotlet(const std::string& arguments) {
    CommandResult result;
    FILE* pipe = ::popen((std::string(TROTLET_BINARY) + " " + arguments + " 2>/dev/null").c_str(), "r");
    if (!pipe) return result;
    std::array<char, 65536> buffer{};
    size_t n = 0;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) result.out.append(buffer.data(), n);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

struct ShopCli : ::testing::Test {
    void SetUp() override {
        struct stat st {};
        if (::stat(TROTLET_BINARY, &st) != 0) GTEST_SKIP() << "trotlet is not built";
    }
};

TEST_F(ShopCli, HarnessesPrintJsonAndExitWithTheirStatus) {
    const CommandResult simulation = runTrotlet("--simulate-economy 90 all");
    EXPECT_EQ(simulation.status, 0);
    const auto report = nlohmann::json::parse(simulation.out, nullptr, false);
    ASSERT_TRUE(report.is_object());
    EXPECT_EQ(report["passed"], true);
    EXPECT_EQ(report["rules"]["welcomeGift"], 100);

    for (const auto name : ShopDemoNames) {
        const CommandResult dump = runTrotlet("--dump-shop " + std::string(name));
        EXPECT_EQ(dump.status, 0) << name;
        EXPECT_EQ(nlohmann::json::parse(dump.out, nullptr, false)["schemaVersion"], 2) << name;
    }
    EXPECT_EQ(runTrotlet("--dump-shop lots").status, 2);
    EXPECT_EQ(runTrotlet("--simulate-economy 30 lazy").status, 2);
    EXPECT_EQ(runTrotlet("--verify-shop-persistence").status, 0);
}

}  // namespace
}  // namespace trotlet::shop
