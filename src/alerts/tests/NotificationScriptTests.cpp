#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "alerts/NotificationScript.h"

namespace trotlet::alerts {
namespace {

TEST(NotificationScript, TheBuiltInScriptHoldsAndPostsEveryKind) {
    const auto replay = NotificationScript::replay(NotificationScript::scenarios(),
                                                   NotificationScript::preferences(),
                                                   NotificationScript::startTime());
    ASSERT_FALSE(replay.failure) << *replay.failure;
    EXPECT_GT(replay.checks, 80);

    std::set<std::string> posted;
    std::set<std::string> reasons;
    for (const auto& scenario : replay.output["scenarios"]) {
        for (const auto& step : scenario["steps"]) {
            for (const auto& d : step["decisions"]) {
                if (d.contains("post")) posted.insert(d["post"]["kind"].get<std::string>());
                if (d.contains("suppressed"))
                    reasons.insert(d["suppressed"]["reason"].get<std::string>());
            }
        }
    }
    EXPECT_EQ(posted.size(), alertKindCount);
    EXPECT_EQ(reasons, (std::set<std::string>{"alert budget 4/h", "cooldown 1440 min",
                                              "cooldown 30 min", "fun budget 6/h", "panel open",
                                              "panel open (held, stays armed)"}));
}

TEST(NotificationScript, OutputStartsWithThePreferencesAndTimesEachStep) {
    const auto replay = NotificationScript::replay(NotificationScript::scenarios(),
                                                   NotificationScript::preferences(),
                                                   NotificationScript::startTime());
    const auto& out = replay.output;
    ASSERT_TRUE(out.is_object());
    EXPECT_EQ(out.begin().key(), "start");
    EXPECT_EQ(out["start"], "2026-01-05T09:00:00Z");
    EXPECT_EQ(out["preferences"]["highCPU"], true);
    EXPECT_EQ(out["preferences"]["batteryLowThreshold"], 15);
    const auto& first = out["scenarios"][0]["steps"][0];
    EXPECT_EQ(first["time"], "2026-01-05T09:00:00Z");
    EXPECT_EQ(first["input"]["sample"]["thermalState"], "serious");
    EXPECT_EQ(first["decisions"][0]["post"]["title"], "Miso is overheating");
    EXPECT_EQ(out["scenarios"][0]["steps"][2]["time"], "2026-01-05T09:10:00Z");
    EXPECT_TRUE(out["summary"]["failure"].is_null());
}

TEST(NotificationScript, AWrongExpectationFailsNamingTheFirstStepThatDiffered) {
    auto scenarios = NotificationScript::scenarios();
    scenarios[3].steps[1].expected = {"post batteryLow"};   // the hover must stay silent
    scenarios[5].steps[0].expected = {"post highCPU"};      // a later, second failure
    const auto replay = NotificationScript::replay(scenarios, NotificationScript::preferences(),
                                                   NotificationScript::startTime());
    ASSERT_TRUE(replay.failure);
    EXPECT_EQ(*replay.failure, "\"" + scenarios[3].name +
                                   "\" step 2 (16 %): expected post batteryLow, got (nothing)");
}

TEST(NotificationScript, AMissingTextIsAFailureToo) {
    auto scenarios = NotificationScript::scenarios();
    scenarios[5].steps[3].expectedText = "make is the busiest.";
    const auto replay = NotificationScript::replay(scenarios, NotificationScript::preferences(),
                                                   NotificationScript::startTime());
    ASSERT_TRUE(replay.failure);
    EXPECT_NE(replay.failure->find("expected a post saying \"make is the busiest.\""),
              std::string::npos)
        << *replay.failure;
}

TEST(NotificationScript, DifferentPreferencesChangeTheOutcome) {
    // With the defaults, high CPU is off: its scenario no longer posts, and the replay says so.
    const auto replay = NotificationScript::replay(NotificationScript::scenarios(),
                                                   AlertRules::Preferences{},
                                                   NotificationScript::startTime());
    ASSERT_TRUE(replay.failure);
    EXPECT_NE(replay.failure->find("got (nothing)"), std::string::npos) << *replay.failure;
}

}  // namespace
}  // namespace trotlet::alerts

namespace trotlet::alerts {
namespace {

// As a user runs it: the built program, its stdout and its exit status.
TEST(NotificationSimulation, TheProgramRunsTheSimulationFromTheCommandLine) {
    if (::access(TROTLET_BINARY, X_OK) != 0) GTEST_SKIP() << "trotlet is not built";
    FILE* pipe = ::popen(TROTLET_BINARY " --simulate-notifications 2>/dev/null", "r");
    ASSERT_NE(pipe, nullptr);
    std::string out;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
    const int status = ::pclose(pipe);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    const auto json = nlohmann::ordered_json::parse(out, nullptr, false);
    ASSERT_FALSE(json.is_discarded()) << out.substr(0, 300);
    EXPECT_EQ(json["preferences"]["highCPUHoldSeconds"], 120.0);
    EXPECT_EQ(json["summary"]["scenarios"], NotificationScript::scenarios().size());
    EXPECT_TRUE(json["summary"]["failure"].is_null());
    EXPECT_EQ(json["summary"]["checks"],
              NotificationScript::replay(NotificationScript::scenarios(),
                                         NotificationScript::preferences(),
                                         NotificationScript::startTime())
                  .checks);
}

}  // namespace
}  // namespace trotlet::alerts
