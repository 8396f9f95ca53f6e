#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "layout/LayoutOps.h"
#include "layout/OverviewLayoutResolver.h"

namespace trotlet::layout {
namespace {

using Order = std::vector<std::string>;

const OverviewCardRegistry& registry() { return OverviewCardRegistry::standard(); }
OverviewLayout defaults() { return OverviewLayoutResolver::defaultLayout(registry()); }
const Availability all = everythingAvailable();

GridRect gridOf(const PointRect& r) {
    return {static_cast<int>(r.x / 60), static_cast<int>(r.y / 28),
            {static_cast<int>((r.width + 8) / 60), static_cast<int>((r.height + 8) / 28)}};
}

TEST(GridMetrics, PointsFromCells) {
    EXPECT_EQ(GridMetrics::points({0, 0, {2, 4}}), (PointRect{0, 0, 112, 104}));
    EXPECT_EQ(GridMetrics::points({3, 6, {3, 6}}), (PointRect{180, 168, 172, 160}));
    EXPECT_EQ(GridMetrics::width(6), 352);
}

TEST(LayoutOps, ApplyingReordersVisibleCardsAndKeepsHiddenOnesInTheirSlots) {
    OverviewLayout layout;
    layout.cards = {{"a", CardSize::small, false}, {"h", CardSize::wide, true},
                    {"b", CardSize::medium, false}, {"c", CardSize::small, false}};
    const auto applied = LayoutOps::applying({"c", "a", "b", "c", "zzz"}, layout);
    EXPECT_EQ(describe(applied), "c:small h:wide(hidden) a:small b:medium");
    // Cards the order leaves out stay where they are.
    EXPECT_EQ(describe(LayoutOps::applying({"c", "a"}, layout)), "c:small h:wide(hidden) b:medium a:small");
}

TEST(LayoutOps, MovingClampsTheIndexAndIgnoresUnknownIds) {
    const Order order{"a", "b", "c", "d"};
    EXPECT_EQ(LayoutOps::moving("c", 0, order), (Order{"c", "a", "b", "d"}));
    EXPECT_EQ(LayoutOps::moving("a", 2, order), (Order{"b", "c", "a", "d"}));
    EXPECT_EQ(LayoutOps::moving("a", 99, order), (Order{"b", "c", "d", "a"}));
    EXPECT_EQ(LayoutOps::moving("d", -5, order), (Order{"d", "a", "b", "c"}));
    EXPECT_EQ(LayoutOps::moving("x", 0, order), order);
}

TEST(LayoutOps, NeighbourPrefersCardsInLineWithTheMovingOne) {
    // Default layout: heat sits under network, between gpu and battery.
    const Frames frames = LayoutOps::frames(defaults(), all, registry());
    EXPECT_EQ(LayoutOps::neighbour("heat", MoveDirection::up, frames), "network");
    EXPECT_EQ(LayoutOps::neighbour("heat", MoveDirection::left, frames), "gpu");
    EXPECT_EQ(LayoutOps::neighbour("heat", MoveDirection::right, frames), "battery");
    EXPECT_EQ(LayoutOps::neighbour("gpu", MoveDirection::down, frames), "disk");
    EXPECT_EQ(LayoutOps::neighbour("cpu", MoveDirection::up, frames), std::nullopt);
    EXPECT_EQ(LayoutOps::neighbour("memory", MoveDirection::right, frames), std::nullopt);
    EXPECT_EQ(LayoutOps::neighbour("weather", MoveDirection::up, frames), std::nullopt);  // hidden
}

TEST(LayoutOps, OptionUpMovesHeatIntoTheRowAbove) {
    const auto before = LayoutOps::frames(defaults(), all, registry()).at("heat");
    const auto order = LayoutOps::keyboardMove("heat", MoveDirection::up, defaults(), all, registry());
    ASSERT_TRUE(order);
    EXPECT_EQ(*order, (Order{"cpu", "memory", "heat", "gpu", "network", "battery", "disk", "pawreport"}));
    const auto after = LayoutOps::frames(LayoutOps::applying(*order, defaults()), all, registry()).at("heat");
    EXPECT_EQ(gridOf(before).row, 9);
    EXPECT_EQ(gridOf(after).row, 6);
}

TEST(LayoutOps, OptionLeftThenRightReturnsTheLayout) {
    for (const std::string id : {"battery", "heat", "memory", "pawreport"}) {
        const auto left = LayoutOps::keyboardMove(id, MoveDirection::left, defaults(), all, registry());
        ASSERT_TRUE(left) << id;
        const auto moved = LayoutOps::applying(*left, defaults());
        const auto right = LayoutOps::keyboardMove(id, MoveDirection::right, moved, all, registry());
        ASSERT_TRUE(right) << id;
        EXPECT_EQ(LayoutOps::applying(*right, moved), defaults()) << id;
    }
}

TEST(LayoutOps, HiddenAndUnavailableCardsTakeNoPartInOptionMoves) {
    const auto noBattery = [](std::string_view id) { return id != "battery"; };
    const auto hidden = LayoutOps::settingHidden("memory", true, defaults());
    for (const auto& [layout, available, absent] :
         {std::tuple{hidden, all, std::string("memory")}, std::tuple{defaults(), Availability(noBattery), std::string("battery")}}) {
        const Frames frames = LayoutOps::frames(layout, available, registry());
        EXPECT_FALSE(frames.count(absent));
        EXPECT_FALSE(LayoutOps::keyboardMove(absent, MoveDirection::left, layout, available, registry()));
        int moves = 0;
        for (const auto& [id, frame] : frames)
            for (const auto d : {MoveDirection::left, MoveDirection::right, MoveDirection::up, MoveDirection::down}) {
                EXPECT_NE(LayoutOps::neighbour(id, d, frames), absent);
                const auto order = LayoutOps::keyboardMove(id, d, layout, available, registry());
                if (!order) continue;
                ++moves;
                const auto moved = LayoutOps::applying(*order, layout);
                // The absent card keeps its slot and its flag.
                EXPECT_EQ(moved.cards[absent == "memory" ? 1 : 5], *layout.card(absent));
            }
        EXPECT_GT(moves, 10);
    }
    // With memory gone, gpu packs into its place beside cpu and becomes cpu's neighbour.
    const Frames frames = LayoutOps::frames(hidden, all, registry());
    EXPECT_EQ(gridOf(frames.at("gpu")).col, 4);
    EXPECT_EQ(LayoutOps::neighbour("cpu", MoveDirection::right, frames), "gpu");
}

TEST(LayoutOps, TopRowCannotMoveUpAndSizesNeverChange) {
    for (const std::string id : {"cpu", "memory"})
        EXPECT_FALSE(LayoutOps::keyboardMove(id, MoveDirection::up, defaults(), all, registry())) << id;
    for (const auto& card : defaults().cards)
        for (const auto d : {MoveDirection::left, MoveDirection::right, MoveDirection::up, MoveDirection::down})
            if (const auto order = LayoutOps::keyboardMove(card.id, d, defaults(), all, registry())) {
                const auto moved = LayoutOps::applying(*order, defaults());
                for (const auto& c : moved.cards) EXPECT_EQ(c.size, defaults().card(c.id)->size);
            }
}

TEST(LayoutOps, TallCardRisesPastAShortOneAbove) {
    // network wide over cpu large: trading places lifts cpu by three rows, which counts as up
    // even though its centre stays below its old top edge.
    OverviewLayout layout = defaults();
    layout = LayoutOps::settingSize("cpu", CardSize::large, layout);
    layout = LayoutOps::applying({"network", "cpu", "memory", "gpu", "heat", "battery", "disk", "pawreport"}, layout);
    const auto up = LayoutOps::keyboardMove("cpu", MoveDirection::up, layout, all, registry());
    ASSERT_TRUE(up);
    EXPECT_EQ(up->front(), "cpu");
}

TEST(LayoutOps, ReadingStepSwapsWithTheAdjacentVisibleCard) {
    const auto layout = LayoutOps::settingHidden("heat", true, defaults());
    EXPECT_EQ(*LayoutOps::readingStep("battery", -1, layout, all, registry()),
              (Order{"cpu", "memory", "network", "battery", "gpu", "disk", "pawreport"}));
    EXPECT_FALSE(LayoutOps::readingStep("cpu", -1, layout, all, registry()));
    EXPECT_FALSE(LayoutOps::readingStep("pawreport", 1, layout, all, registry()));
    EXPECT_FALSE(LayoutOps::readingStep("heat", 1, layout, all, registry()));
}

struct Snap {
    const char* name;
    std::string id;
    double width, height;
    CardSize current;
    double hysteresis;
    CardSize expected;
};

class Snapping : public testing::TestWithParam<Snap> {};

TEST_P(Snapping, PicksTheNearestSupportedSize) {
    const auto& s = GetParam();
    EXPECT_EQ(LayoutOps::snappedSize(s.id, s.width, s.height, s.current, s.hysteresis, registry()), s.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Resize, Snapping,
    testing::Values(
        // 112 × 104 dragged by +68, +56 measures 180 × 160: medium is 172 × 160.
        Snap{"plus68_plus56_is_medium", "heat", 180, 160, CardSize::small, 12, CardSize::medium},
        Snap{"pick_up_keeps_small", "heat", 112, 104, CardSize::small, 0, CardSize::small},
        Snap{"pick_up_keeps_medium", "heat", 172, 160, CardSize::medium, 0, CardSize::medium},
        // Slightly nearer medium (6.5 points) than small: the hysteresis keeps small...
        Snap{"hysteresis_holds", "heat", 144, 134, CardSize::small, 12, CardSize::small},
        // ...which without hysteresis would switch.
        Snap{"no_hysteresis_switches", "heat", 144, 134, CardSize::small, 0, CardSize::medium},
        // Halfway: an exact tie goes to the earlier size in the kind's list.
        Snap{"tie_goes_to_earlier_size", "heat", 142, 132, CardSize::large, 0, CardSize::small},
        // 60 points too narrow for medium, 56 too short for small: unweighted medium would
        // win, but vertical misfit weighs 1.3 times (72.8), so small does.
        Snap{"vertical_weight", "heat", 172, 104, CardSize::large, 0, CardSize::small},
        Snap{"unsupported_sizes_never_win", "gpu", 352, 216, CardSize::small, 0, CardSize::medium},
        Snap{"unknown_id_keeps_current", "radio", 352, 216, CardSize::small, 0, CardSize::small},
        Snap{"override_span_counts", "weather", 352, 104, CardSize::medium, 0, CardSize::wide}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LayoutOps, GripPickUpNeverChangesAnySize) {
    for (const auto& kind : registry().all())
        for (const auto size : kind.sizes) {
            const auto span = kind.span(size);
            EXPECT_EQ(LayoutOps::snappedSize(kind.id, GridMetrics::width(span.cols), GridMetrics::height(span.rows),
                                             size, 0, registry()),
                      size)
                << kind.id << " " << name(size);
        }
}

TEST(LayoutOps, SettingSizeAndHiddenTouchOnlyThatCard) {
    const auto resized = LayoutOps::settingSize("gpu", CardSize::medium, defaults());
    EXPECT_EQ(resized.card("gpu")->size, CardSize::medium);
    const auto hidden = LayoutOps::settingHidden("gpu", true, resized);
    EXPECT_EQ(hidden.hiddenIDs(), (Order{"gpu", "weather"}));
    EXPECT_EQ(LayoutOps::settingHidden("gpu", false, LayoutOps::settingSize("gpu", CardSize::small, hidden)),
              defaults());
    EXPECT_EQ(LayoutOps::settingHidden("radio", true, defaults()), defaults());
}

}  // namespace
}  // namespace trotlet::layout
