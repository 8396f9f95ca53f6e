#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

#include <nlohmann/json.hpp>

#include "layout/qt/LayoutDebugCLI.h"

namespace trotlet::layout {
namespace {

TEST(LayoutDebugCLI, LeavesOtherArgumentsAlone) {
    EXPECT_FALSE(LayoutDebugCLI::run({"trotlet"}));
    EXPECT_FALSE(LayoutDebugCLI::run({"trotlet", "--mock", "--dump-metrics"}));
    // The executable path is never taken for the flag.
    EXPECT_FALSE(LayoutDebugCLI::run({"--dump-layout"}));
}

// Runs the built program as a user would and reads its report.
TEST(LayoutDebugCLI, DumpLayoutPrintsAPassingReportAndExitsZero) {
    const std::string command = std::string("'") + TROTLET_BINARY + "' --dump-layout 2>/dev/null";
    FILE* pipe = ::popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string out;
    char buffer[4096];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
    const int status = ::pclose(pipe);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);

    const auto report = nlohmann::json::parse(out, nullptr, false);
    ASSERT_FALSE(report.is_discarded()) << out.substr(0, 200);
    EXPECT_TRUE(report.at("ok").get<bool>());
    EXPECT_EQ(report.at("grid").at("columns"), 6);
    EXPECT_EQ(report.at("registry").size(), 9u);
    EXPECT_EQ(report.at("fuzz").at("layouts"), 2000);
    EXPECT_TRUE(report.at("failures").empty());
    EXPECT_EQ(report.at("persistence").at(0).at("settings"), "settings file in a scratch directory");
    std::vector<std::string> names;
    for (const auto& entry : report.at("migration")) names.push_back(entry.at("name"));
    for (const auto& entry : report.at("decoding")) names.push_back(entry.at("name"));
    for (const char* wanted :
         {"v0 fixed grid, nothing hidden", "v0 fixed grid, hiddenCards [gpu, battery, bogus]",
          "v1 with an unknown id, a duplicate and an unsupported size",
          "future schema v9 (ignored, default shown)", "missing hidden field defaults to visible"})
        EXPECT_NE(std::find(names.begin(), names.end(), wanted), names.end()) << wanted;
}

}  // namespace
}  // namespace trotlet::layout
