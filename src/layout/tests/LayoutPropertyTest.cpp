#include <gtest/gtest.h>

#include <functional>

#include "layout/BentoPacker.h"
#include "layout/LayoutFitCheck.h"
#include "layout/LayoutFuzz.h"
#include "layout/OverviewLayoutResolver.h"

namespace trotlet::layout {
namespace {

const OverviewCardRegistry& registry() { return OverviewCardRegistry::standard(); }

class FuzzSeeds : public testing::TestWithParam<uint32_t> {};

// Random layouts on random machines, each followed by random edit sequences stored and read
// back; every packing, ⌥ move and edit result must keep the rules.
TEST_P(FuzzSeeds, RandomLayoutsAndEditSequencesKeepEveryRule) {
    LayoutFuzz fuzz(GetParam(), registry());
    const auto totals = fuzz.run(300, 8);
    for (const auto& failure : totals.failures)
        ADD_FAILURE() << failure.message << " x" << failure.count << ": " << failure.details.front();
    EXPECT_EQ(totals.layouts, 300);
    EXPECT_EQ(totals.edits, 2400);
    EXPECT_GT(totals.keyboardMoves, totals.blockedMoves);
}

INSTANTIATE_TEST_SUITE_P(Seeds, FuzzSeeds, testing::Values(1u, 2u, 77u, 4242u, 20260704u));

TEST(LayoutFuzz, SameSeedSameDocuments) {
    LayoutFuzz a(9, registry()), b(9, registry());
    for (int i = 0; i < 50; ++i) EXPECT_EQ(a.randomDocument(), b.randomDocument());
}

// The checker itself must catch each kind of fault; doctored results stand in for a broken packer.
struct Doctored : testing::Test {
    OverviewLayout layout = OverviewLayoutResolver::defaultLayout(registry());
    std::vector<BentoPacker::Item> items = OverviewLayoutResolver::items(layout, everythingAvailable(), registry());
    BentoPacker::Result result = BentoPacker::pack(items, 6);
};

TEST_F(Doctored, HonestResultIsCleanAndEachDoctoringIsFound) {
    EXPECT_TRUE(LayoutFitCheck::check(result, items, layout, registry()).clean());
    using Findings = LayoutFitCheck::Findings;
    const struct {
        const char* name;
        std::function<void(BentoPacker::Result&)> doctor;
        std::function<bool(const Findings&)> found;
    } cases[] = {
        {"overlap", [](auto& r) { r.rects["memory"].col = 2; },
         [](const Findings& f) { return !f.overlapOrOverflow.empty(); }},
        {"overflow", [](auto& r) { r.rects["battery"].col = 5; },
         [](const Findings& f) { return !f.overlapOrOverflow.empty(); }},
        {"wrong span", [](auto& r) { r.rects["gpu"].span = {2, 3}; },
         [](const Findings& f) { return !f.wrongSpan.empty(); }},
    };
    for (const auto& c : cases) {
        auto doctored = result;
        c.doctor(doctored);
        EXPECT_TRUE(c.found(LayoutFitCheck::check(doctored, items, layout, registry()))) << c.name;
    }
}

TEST_F(Doctored, CardBelowAHoleItFitsIsFound) {
    // Move pawreport down a band, leaving its own slot empty above it.
    result.rects["pawreport"].row = 19;
    result.holes = BentoPacker::gaps({}, 6, 0);
    const auto findings = LayoutFitCheck::check(result, items, layout, registry());
    ASSERT_FALSE(findings.holeAbove.empty());
    EXPECT_EQ(findings.holeAbove.front(), "pawreport fits a hole at col 3 row 13 above its slot (col 3 row 19)");
}

TEST_F(Doctored, OffLaneStartIsFound) {
    // A small card at column 3, as a packer stepping by one column would leave it.
    const std::vector<BentoPacker::Item> two{{"a", {3, 6}}, {"b", {2, 4}}};
    OverviewLayout none;
    auto packed = BentoPacker::pack(two, 6);
    packed.rects["b"].col = 3;
    packed.holes = BentoPacker::gaps({packed.rects["a"], packed.rects["b"]}, 6, 6);
    const auto findings = LayoutFitCheck::check(packed, two, none, registry());
    ASSERT_EQ(findings.offLane.size(), 1u);
    EXPECT_EQ(findings.offLane.front(), "b starts at col 3, off its 2-column lane");
    EXPECT_TRUE(findings.holeAbove.empty());
}

TEST_F(Doctored, HolesThatMissAFreeCellAreFound) {
    const std::vector<BentoPacker::Item> two{{"a", {3, 6}}, {"b", {2, 4}}};
    OverviewLayout none;
    auto packed = BentoPacker::pack(two, 6);
    ASSERT_FALSE(packed.holes.empty());
    packed.holes.pop_back();
    EXPECT_FALSE(LayoutFitCheck::check(packed, two, none, registry()).badHoles.empty());
}

}  // namespace
}  // namespace trotlet::layout
