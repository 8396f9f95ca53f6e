#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"
#include "layout/OverviewLayoutResolver.h"

namespace trotlet::layout {
namespace {

const OverviewCardRegistry& registry() { return OverviewCardRegistry::standard(); }
OverviewLayout defaults() { return OverviewLayoutResolver::defaultLayout(registry()); }

TEST(OverviewCardRegistry, HoldsTheCardsInReadingOrderWithWeatherHidden) {
    std::vector<std::string> ids;
    for (const auto& kind : registry().all()) {
        ids.push_back(kind.id);
        EXPECT_EQ(kind.defaultVisible, kind.id != "weather") << kind.id;
        EXPECT_TRUE(kind.supports(kind.defaultSize)) << kind.id;
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"cpu", "memory", "network", "gpu", "heat", "battery",
                                             "disk", "pawreport", "weather"}));
    EXPECT_EQ(registry().kind("heat")->id, "heat");
    EXPECT_EQ(registry().kind("radio"), nullptr);
}

TEST(OverviewCardRegistry, SpanOverridesWinOverTheStandardSpan) {
    const auto* weather = registry().kind("weather");
    EXPECT_EQ(weather->span(CardSize::wide), (GridSpan{6, 4}));
    EXPECT_EQ(weather->span(CardSize::medium), (GridSpan{3, 6}));
    EXPECT_EQ(registry().kind("cpu")->span(CardSize::large), (GridSpan{6, 8}));
}

TEST(CardSize, RawNamesMapBothWaysAndNothingElseIsASize) {
    for (const auto size : {CardSize::small, CardSize::medium, CardSize::wide, CardSize::large})
        EXPECT_EQ(cardSize(name(size)), size);
    EXPECT_FALSE(cardSize("huge"));
    EXPECT_FALSE(cardSize("Small"));
    EXPECT_FALSE(cardSize(""));
}

TEST(OverviewLayout, DefaultLayoutDescribesEveryKindAtItsDefaultSize) {
    EXPECT_EQ(describe(defaults()),
              "cpu:medium memory:medium network:wide gpu:small heat:small battery:small "
              "disk:medium pawreport:medium weather:wide(hidden)");
    EXPECT_EQ(defaults().hiddenIDs(), std::vector<std::string>{"weather"});
    EXPECT_EQ(defaults().version, 1);
}

struct Rejected {
    const char* name;
    std::string text;
};

// Empty text, text that is not JSON or not UTF-8, an array and a document without a usable card
// are among the layout self-check's cases (LayoutSelfCheckTest), as are the lenient decoding of a
// first version and the migration of the old hidden-card list.
class RejectedDocuments : public testing::TestWithParam<Rejected> {};

TEST_P(RejectedDocuments, GiveNone) { EXPECT_FALSE(OverviewLayout::decode(GetParam().text)); }

INSTANTIATE_TEST_SUITE_P(
    Lenient, RejectedDocuments,
    testing::Values(
        Rejected{"truncated", R"({"version":1,"cards":[{"id":"cpu","size":"small"})"},
        Rejected{"future_schema", R"({"version":9,"cards":[{"id":"cpu","size":"large"}]})"},
        Rejected{"version_two", R"({"version":2,"cards":[{"id":"cpu","size":"large"}]})"},
        Rejected{"negative_version", R"({"version":-1,"cards":[{"id":"cpu","size":"large"}]})"},
        Rejected{"fractional_version", R"({"version":1.5,"cards":[{"id":"cpu","size":"large"}]})"},
        Rejected{"missing_version", R"({"cards":[{"id":"cpu","size":"large"}]})"},
        Rejected{"cards_not_array", R"({"version":1,"cards":{"id":"cpu","size":"large"}})"},
        Rejected{"no_cards", R"({"version":1,"cards":[]})"},
        Rejected{"only_bad_cards",
                 R"({"version":1,"cards":[{"id":"","size":"small"},{"size":"wide"},{"id":"cpu"},)"
                 R"({"id":"gpu","size":"huge"},{"id":7,"size":"small"},"cpu"]})"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(OverviewLayout, BadCardsAreDroppedOneByOneAndHiddenDefaultsToVisible) {
    const auto layout = OverviewLayout::decode(
        R"({"version":0,"cards":[{"id":"gpu","size":"huge"},{"id":"disk","size":"small"},)"
        R"({"id":"heat","size":"medium","hidden":true},{"id":"cpu","size":"wide","hidden":"yes"},)"
        R"({"id":"net"},{"id":"memory","size":"large","hidden":false,"extra":[1,2]}]})");
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->version, 0);
    EXPECT_EQ(describe(*layout), "disk:small heat:medium(hidden) cpu:wide memory:large");
}

TEST(OverviewLayout, JsonRoundTripGivesTheSameLayout) {
    OverviewLayout layout = defaults();
    layout.cards[2].hidden = true;
    layout.cards[0].size = CardSize::large;
    std::swap(layout.cards[3], layout.cards[7]);
    const std::string text = layout.json();
    EXPECT_EQ(text.substr(0, 40), R"({"version":1,"cards":[{"id":"cpu","size")");
    EXPECT_EQ(OverviewLayout::decode(text), layout);
}

TEST(OverviewLayoutResolver, StoredDocumentWinsOverTheLegacyListAndUnsupportedSizesFallBack) {
    const auto stored = OverviewLayout::decode(
        R"({"version":1,"cards":[{"id":"weather","size":"small"},{"id":"gpu","size":"large","hidden":false},)"
        R"({"id":"pawreport","size":"small","hidden":true}]})");
    const auto layout = OverviewLayoutResolver::resolve(stored, {"gpu", "cpu"}, registry());
    // weather: small unsupported → wide, and shown since the document says so; gpu large → small.
    EXPECT_EQ(describe(layout),
              "weather:wide gpu:small pawreport:medium(hidden) cpu:medium memory:medium "
              "network:wide heat:small battery:small disk:medium");
}

TEST(OverviewLayoutResolver, NewKindsJoinAnOlderDocumentInRegistryOrderAtTheirDefaults) {
    OverviewCardRegistry grown({{"a", "A", "", "", "", {CardSize::small}, CardSize::small, {}, true, ""},
                                {"b", "B", "", "", "", {CardSize::wide}, CardSize::wide, {}, false, ""},
                                {"c", "C", "", "", "", {CardSize::medium}, CardSize::medium, {}, true, ""}});
    const auto stored = OverviewLayout::decode(R"({"version":1,"cards":[{"id":"c","size":"medium","hidden":true}]})");
    EXPECT_EQ(describe(OverviewLayoutResolver::resolve(stored, {}, grown)), "c:medium(hidden) a:small b:wide(hidden)");
}

TEST(OverviewLayoutResolver, ItemsSkipHiddenUnavailableAndUnknownCards) {
    OverviewLayout layout = defaults();
    layout.cards[1].hidden = true;                              // memory
    layout.cards.push_back({"radio", CardSize::small, false});  // unknown to the registry
    const auto items = OverviewLayoutResolver::items(
        layout, [](std::string_view id) { return id != "battery"; }, registry());
    std::vector<std::string> ids;
    for (const auto& item : items) ids.push_back(item.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"cpu", "network", "gpu", "heat", "disk", "pawreport"}));
    EXPECT_EQ(items[1].span, (GridSpan{6, 3}));
}

struct ResetCase {
    const char* name;
    bool stored;
    std::vector<std::string> legacy;
    bool canReset;
};

class ResetRules : public testing::TestWithParam<ResetCase> {};

TEST_P(ResetRules, OfferResetOnlyWhenSomethingDiffers) {
    const auto& c = GetParam();
    const auto resolved = OverviewLayoutResolver::resolve(
        c.stored ? std::optional(defaults()) : std::nullopt, c.legacy, registry());
    EXPECT_EQ(OverviewLayoutResolver::canReset(c.stored, resolved, registry()), c.canReset);
}

INSTANTIATE_TEST_SUITE_P(
    Reset, ResetRules,
    testing::Values(ResetCase{"fresh", false, {}, false},
                    ResetCase{"legacy_gpu_battery", false, {"gpu", "battery"}, true},
                    ResetCase{"legacy_only_weather", false, {"weather"}, false},
                    ResetCase{"legacy_only_bogus", false, {"bogus"}, false},
                    // A stored document counts even when it equals the default.
                    ResetCase{"stored_default", true, {}, true}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace trotlet::layout
