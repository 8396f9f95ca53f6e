#include <gtest/gtest.h>

#include "shop/EconomySimulator.h"

namespace trotlet::shop {
namespace {

const nlohmann::ordered_json& profileNamed(const nlohmann::ordered_json& report, const std::string& name) {
    for (const auto& p : report["profiles"])
        if (p["profile"] == name) return p;
    static const nlohmann::ordered_json none;
    return none;
}

TEST(EconomySimulator, NinetyDaysOfEveryProfilePassAllChecks) {
    SimulationOptions options;
    options.days = 90;
    options.profile = "all";
    const SimulationReport report = simulateEconomy(options);
    const auto& json = report.json;
    ASSERT_TRUE(report.passed) << json["checks"].dump(2);
    ASSERT_EQ(json["checks"].size(), 3u);
    EXPECT_EQ(json["checks"][2]["name"], "tampering doesn't pay");
    EXPECT_EQ(json["rules"]["passiveDailyCap"], 48);
    EXPECT_DOUBLE_EQ(json["rules"]["manekiMultiplier"].get<double>(), 1.1);
    EXPECT_DOUBLE_EQ(json["rules"]["goldenFishSwimSeconds"].get<double>(), 4.2);

    const auto& engaged = profileNamed(json, "engaged");
    ASSERT_EQ(engaged["daily"].size(), 90u);
    // A full working day reaches the passive cap and the day's three Golden Fish.
    for (const auto& day : engaged["daily"]) {
        // 53 once the lucky cat, bought along the way, is equipped for a whole day.
        if (day["passiveFish"] != 53 || day["equipped"] != "maneki") {
            EXPECT_EQ(day["passiveFish"], 48) << day.dump();
        }
        EXPECT_EQ(day["goldenFish"], 3) << day.dump();
        EXPECT_GT(day["checkIn"].get<int64_t>(), 0) << day.dump();
    }
    EXPECT_EQ(engaged["summary"]["bestStreak"], 90);
    EXPECT_NE(std::find(engaged["summary"]["owned"].begin(), engaged["summary"]["owned"].end(), "goldenCat"),
              engaged["summary"]["owned"].end());

    const auto& maneki = profileNamed(json, "maneki");
    EXPECT_EQ(maneki["summary"]["equipped"], "maneki");
    int capped53 = 0;
    for (const auto& day : maneki["daily"]) capped53 += day["passiveFish"] == 53;
    EXPECT_GT(capped53, 30);

    const auto& tamper = profileNamed(json, "tamper");
    int wrongClockDays = 0;
    for (const auto& day : tamper["daily"]) wrongClockDays += day["clock"] != "ok";
    EXPECT_GT(wrongClockDays, 5) << "the tamper profile must actually tamper";
    EXPECT_LE(json["checks"][2]["detail"]["tamperEarned"].get<int64_t>(),
              json["checks"][2]["detail"]["honestEarned"].get<int64_t>());

    const auto& casual = profileNamed(json, "casual");
    EXPECT_LT(casual["summary"]["earned"].get<int64_t>(), engaged["summary"]["earned"].get<int64_t>());
}

TEST(EconomySimulator, SameSeedSameRunDifferentSeedDifferentRun) {
    SimulationOptions options;
    options.days = 10;
    options.profile = "casual";
    const auto a = simulateEconomy(options).json.dump();
    EXPECT_EQ(simulateEconomy(options).json.dump(), a);
    options.seed = 8;
    EXPECT_NE(simulateEconomy(options).json.dump(), a);
}

TEST(EconomySimulator, ArgumentsAreCheckedWordByWord) {
    const struct {
        std::vector<std::string> words;
        bool ok;
    } cases[] = {
        {{}, true},
        {{"90", "all", "7", "none"}, true},
        {{"0"}, false},
        {{"ninety"}, false},
        {{"30", "lazy"}, false},
        {{"30", "engaged", "-1"}, false},
        {{"30", "engaged", "7", "priciest"}, false},
        {{"30", "engaged", "7", "none", "extra"}, false},
    };
    for (const auto& c : cases) {
        const auto parsed = SimulationOptions::parse(c.words);
        EXPECT_EQ(std::holds_alternative<SimulationOptions>(parsed), c.ok) << ::testing::PrintToString(c.words);
    }
    const auto parsed = std::get<SimulationOptions>(SimulationOptions::parse({"90", "all", "7", "none"}));
    EXPECT_EQ(parsed.days, 90);
    EXPECT_FALSE(parsed.buyCheapest);
}

}  // namespace
}  // namespace trotlet::shop
