// The dump, benchmark and timeline harnesses as the command line runs them.
#include <gtest/gtest.h>

#include <cstdlib>

#include "metrics/MetricsJson.h"
#include "metrics/qt/MetricsDump.h"
#include "metrics/qt/MetricsTimeline.h"

using namespace trotlet;
using namespace trotlet::metrics;

namespace {

struct Run {
    int status;
    Json json;
};

Run runDump(const cli::LaunchOptions& options) {
    testing::internal::CaptureStdout();
    const int status = MetricsDump::run(options);
    std::fflush(stdout);
    const std::string out = testing::internal::GetCapturedStdout();
    return {status, Json::parse(out, nullptr, false)};
}

std::vector<std::string> keys(const Json& j) {
    std::vector<std::string> out;
    for (auto it = j.begin(); it != j.end(); ++it) out.push_back(it.key());
    return out;
}

const std::vector<std::string> kTwelve = {"provider", "timestamp", "sampleMs",  "cpu",
                                          "memory",   "disks",     "network",   "battery",
                                          "thermal",  "gpu",       "processes", "system"};

}  // namespace

TEST(MetricsDump, FixtureAndMockPrintTheSpecifiedObject) {
    cli::LaunchOptions options;
    options.fixture = MetricsFixture::hot;
    auto run = runDump(options);
    ASSERT_EQ(run.status, 0);
    ASSERT_FALSE(run.json.is_discarded());
    EXPECT_EQ(keys(run.json), kTwelve);
    EXPECT_EQ(run.json["provider"], "fixture:hot");
    EXPECT_EQ(run.json["thermal"]["state"], "critical");
    // The groups decode back into a sample.
    Json sample = run.json;
    for (const char* k : {"provider", "sampleMs"}) sample.erase(k);
    EXPECT_TRUE(decode<MetricsSnapshot>(sample).value);

    options = {};
    options.mock = true;
    ::setenv("TROTLET_MOCK_OVERRIDES", "cpu=0.42,battery=none", 1);
    run = runDump(options);
    ::unsetenv("TROTLET_MOCK_OVERRIDES");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.json["provider"], "mock");
    EXPECT_EQ(run.json["cpu"]["total"], 0.42);
    EXPECT_EQ(run.json["battery"], Json::parse(R"({"lowPowerMode":false})"));
}

TEST(MetricsDump, MascotBlockComesAfterSystem) {
    MetricsDump::setMascotEncoder([](const MetricsSnapshot& s, const cli::LaunchOptions&) {
        Json m = Json::object();
        m["id"] = "test";
        m["load"] = s.cpu.total;
        return std::optional<Json>(m);
    });
    cli::LaunchOptions options;
    options.fixture = MetricsFixture::idle;
    const auto run = runDump(options);
    MetricsDump::setMascotEncoder(nullptr);
    auto expected = kTwelve;
    expected.push_back("mascot");
    EXPECT_EQ(keys(run.json), expected);
    EXPECT_EQ(run.json["mascot"]["load"], run.json["cpu"]["total"]);
}

TEST(MetricsDump, RealSampleOfThisMachine) {
    const auto run = runDump({});
    ASSERT_EQ(run.status, 0);
    const Json& j = run.json;
    EXPECT_EQ(j["provider"], "real");
    EXPECT_GT(j["memory"]["total"].get<std::uint64_t>(), 0u);
    EXPECT_FALSE(j["cpu"]["perCore"].empty());
    EXPECT_GT(j["processes"]["totalCount"].get<int>(), 1);
    EXPECT_FALSE(j["system"]["osVersion"].get<std::string>().empty());
    bool root = false;
    for (const auto& v : j["disks"]["volumes"]) root = root || v["isRoot"].get<bool>();
    EXPECT_TRUE(root);
    // Whatever this machine lacks is left out, never zero.
    if (!j["battery"].contains("percent")) {
        EXPECT_EQ(j["battery"].size(), 1u);
    }
    if (j["thermal"]["sensors"].empty()) {
        EXPECT_FALSE(j["thermal"].contains("cpuC"));
    }
    EXPECT_LT(j["sampleMs"].get<double>(), 200) << "the baseline wait is not counted";
}

TEST(MetricsBench, PrintsEveryKindAndTheBaseline) {
    cli::LaunchOptions options;
    options.fixture = MetricsFixture::normal;
    options.benchIterations = 3;
    testing::internal::CaptureStdout();
    ASSERT_EQ(MetricsBench::run(options), 0);
    const Json j = Json::parse(testing::internal::GetCapturedStdout());
    EXPECT_EQ(j["iterations"], 3);
    ASSERT_EQ(j["kinds"].size(), 11u);
    EXPECT_EQ(j["kinds"][0]["kind"], "cpu");
    EXPECT_EQ(j["kinds"][10]["kind"], "all");
    for (const auto& k : j["kinds"]) {
        EXPECT_LE(k["minUs"].get<double>(), k["medianUs"].get<double>());
        EXPECT_LE(k["medianUs"].get<double>(), k["maxUs"].get<double>());
    }
    EXPECT_GT(j["processCount"].get<int>(), 0);
    EXPECT_TRUE(j.contains("procScanBaseline"));
}

TEST(MetricsTimeline, EveryScenarioPassesAndUnknownFails) {
    testing::internal::CaptureStdout();
    const int status = MetricsTimeline::run("all", {});
    const Json j = Json::parse(testing::internal::GetCapturedStdout(), nullptr, false);
    EXPECT_EQ(status, 0) << j.dump(2);
    EXPECT_EQ(j["passed"], true);
    EXPECT_GE(j["checks"].size(), 20u);
    testing::internal::CaptureStderr();
    EXPECT_EQ(MetricsTimeline::run("nonsense", {}), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("unknown metrics timeline"),
              std::string::npos);
}
