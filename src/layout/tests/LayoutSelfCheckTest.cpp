#include <gtest/gtest.h>

#include "layout/LayoutSelfCheck.h"

namespace trotlet::layout {
namespace {

TEST(LayoutSelfCheck, EveryNamedCaseAndTheFuzzedLayoutsPass) {
    LayoutSelfCheck::Options options;
    const auto report = LayoutSelfCheck::run(options);
    for (const auto& failure : report.failures) ADD_FAILURE() << failure;
    EXPECT_TRUE(report.json.at("ok").get<bool>());
    EXPECT_EQ(report.json.at("fuzz").at("layouts"), 2000);
    for (const char* section : {"packing", "migration", "decoding", "persistence", "reset", "edits"})
        for (const auto& entry : report.json.at(section)) EXPECT_TRUE(entry.at("ok").get<bool>()) << entry.dump();
}

TEST(LayoutSelfCheck, ReportIsTheSameOnEveryRun) {
    LayoutSelfCheck::Options options;
    options.layouts = 200;
    EXPECT_EQ(LayoutSelfCheck::run(options).json.dump(), LayoutSelfCheck::run(options).json.dump());
}

}  // namespace
}  // namespace trotlet::layout
