#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "layout/BentoPacker.h"

namespace trotlet::layout {
void PrintTo(const GridRect& r, std::ostream* os) {
    *os << "{col " << r.col << " row " << r.row << " " << r.span.cols << "x" << r.span.rows << "}";
}

namespace {

using Item = BentoPacker::Item;
constexpr GridSpan small{2, 4};
constexpr GridSpan medium{3, 6};
constexpr GridSpan wide{6, 3};
constexpr GridSpan large{6, 8};

// Appending rather than `"c" + to_string(i)` keeps GCC 12's -Wrestrict false positive away.
std::string cardID(size_t i) {
    std::string id = "c";
    id += std::to_string(i);
    return id;
}

std::vector<Item> named(const std::vector<GridSpan>& spans) {
    std::vector<Item> items;
    for (size_t i = 0; i < spans.size(); ++i) items.push_back({cardID(i), spans[i]});
    return items;
}

struct Placement {
    const char* name;
    std::vector<GridSpan> spans;
    std::vector<GridRect> expected;  // in item order
};

class PackerPlacements : public testing::TestWithParam<Placement> {};

TEST_P(PackerPlacements, PlacesEachCardWhereTheLaneRuleSays) {
    const auto& p = GetParam();
    const auto result = BentoPacker::pack(named(p.spans), 6);
    ASSERT_EQ(result.reading.size(), p.expected.size());
    for (size_t i = 0; i < p.expected.size(); ++i)
        EXPECT_EQ(result.frame(cardID(i)), p.expected[i]) << p.name << " card " << i;
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, PackerPlacements,
    testing::Values(
        Placement{"eight smalls",
                  {small, small, small, small, small, small, small, small},
                  {{0, 0, small}, {2, 0, small}, {4, 0, small}, {0, 4, small}, {2, 4, small},
                   {4, 4, small}, {0, 8, small}, {2, 8, small}}},
        // Column 3 is not a lane start for a two-column card, so the small goes to column 4.
        Placement{"medium then small", {medium, small}, {{0, 0, medium}, {4, 0, small}}},
        Placement{"wide after small", {small, wide}, {{0, 0, small}, {0, 4, wide}}},
        Placement{"two mediums side by side", {medium, medium}, {{0, 0, medium}, {3, 0, medium}}},
        // The small sits beside the medium's lower part once its top lane is full.
        Placement{"medium, two smalls",
                  {medium, small, small},
                  {{0, 0, medium}, {4, 0, small}, {4, 4, small}}},
        Placement{"large then medium", {large, medium}, {{0, 0, large}, {0, 8, medium}}},
        // A later card fills a hole above an earlier one when it fits on its lane.
        Placement{"hole filled later",
                  {small, wide, small},
                  {{0, 0, small}, {0, 4, wide}, {2, 0, small}}},
        Placement{"oversized span is clamped to the columns",
                  {GridSpan{9, 2}, GridSpan{0, 0}},
                  {{0, 0, {6, 2}}, {0, 2, {1, 1}}}}),
    [](const auto& info) {
        std::string n = info.param.name;
        for (auto& ch : n)
            if (!isalnum(static_cast<unsigned char>(ch))) ch = '_';
        return n;
    });

TEST(BentoPacker, DuplicateIdIsPlacedOnceAndFirstWins) {
    const auto result = BentoPacker::pack({{"a", medium}, {"b", small}, {"a", wide}}, 6);
    EXPECT_EQ(result.reading, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(result.rects.size(), 2u);
    EXPECT_EQ(result.frame("a"), (GridRect{0, 0, medium}));
    EXPECT_FALSE(result.frame("zzz"));
}

TEST(BentoPacker, SameItemsGiveTheSameResult) {
    const auto items = named({medium, small, wide, small, small, large, medium, small});
    EXPECT_EQ(BentoPacker::pack(items, 6), BentoPacker::pack(items, 6));
}

TEST(BentoPacker, ReadingFollowsItemOrderNotIdOrder) {
    const auto result = BentoPacker::pack({{"zeta", small}, {"alpha", small}}, 6);
    EXPECT_EQ(result.reading, (std::vector<std::string>{"zeta", "alpha"}));
    EXPECT_EQ(result.frame("zeta")->col, 0);
}

TEST(BentoPacker, LaneStepFallsBackToSingleColumnsWhenWidthDoesNotDivide) {
    EXPECT_EQ(BentoPacker::laneStep(2, 6), 2);
    EXPECT_EQ(BentoPacker::laneStep(3, 6), 3);
    EXPECT_EQ(BentoPacker::laneStep(4, 6), 1);
    // Five columns: a two-wide card may start at any column.
    const auto result = BentoPacker::pack({{"m", {3, 2}}, {"s", {2, 2}}}, 5);
    EXPECT_EQ(result.frame("s"), (GridRect{3, 0, {2, 2}}));
}

TEST(BentoPacker, HolesCoverEveryFreeCellOnceAndOnlyInsidePackedRows) {
    // medium, small: column 3 stays free for all six rows, columns 4-5 for rows 4-5. The
    // one-column run at the top grows down first, so the lower block is two columns wide.
    const auto result = BentoPacker::pack({{"m", medium}, {"s", small}}, 6);
    EXPECT_EQ(result.rows(), 6);
    EXPECT_EQ(result.holes, (std::vector<GridRect>{{3, 0, {1, 6}}, {4, 4, {2, 2}}}));
}

TEST(BentoPacker, GapsOfAFullGridAreEmptyAndOfAnEmptyGridAreOneBlock) {
    EXPECT_TRUE(BentoPacker::pack({{"a", medium}, {"b", medium}}, 6).holes.empty());
    EXPECT_EQ(BentoPacker::gaps({}, 6, 3), (std::vector<GridRect>{{0, 0, {6, 3}}}));
    EXPECT_TRUE(BentoPacker::gaps({}, 6, 0).empty());
}

TEST(BentoPacker, GapsMergeRunsDownwardOnlyWhileTheWholeRunIsFree) {
    // Row 0: cols 2-5 free; row 1: cols 2-3 free, 4-5 taken.
    const std::vector<GridRect> taken{{0, 0, {2, 2}}, {4, 1, {2, 1}}};
    EXPECT_EQ(BentoPacker::gaps(taken, 6, 2),
              (std::vector<GridRect>{{2, 0, {4, 1}}, {2, 1, {2, 1}}}));
}

TEST(Occupancy, OutsideColumnsIsTakenBelowGrownRowsIsFree) {
    Occupancy occupancy(6);
    occupancy.mark({0, 0, {2, 2}});
    EXPECT_EQ(occupancy.rows(), 2);
    EXPECT_TRUE(occupancy.taken(1, 1));
    EXPECT_FALSE(occupancy.taken(2, 1));
    EXPECT_TRUE(occupancy.taken(6, 0));
    EXPECT_FALSE(occupancy.taken(0, 50));
    EXPECT_FALSE(occupancy.isFree({5, 0, {2, 1}}));
    EXPECT_TRUE(occupancy.isFree({0, 2, {6, 9}}));
}

}  // namespace
}  // namespace trotlet::layout
