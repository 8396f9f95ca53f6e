#include <gtest/gtest.h>

#include "panel/Appearance.h"
#include "panel/CardGeometry.h"
#include "panel/HeaderContent.h"
#include "panel/PanelTabs.h"
#include "layout/LayoutOps.h"
#include "layout/OverviewLayoutResolver.h"
#include "panel/OverviewEditing.h"

namespace trotlet::panel {
namespace {

using settings::AppearancePreference;

TEST(Appearance, ThePreferenceThenThePortalThenThePaletteDecide) {
    struct Case {
        AppearancePreference preference;
        std::optional<PortalColorScheme> portal;
        bool paletteDark;
        ColorScheme expected;
    };
    const Case cases[] = {
        {AppearancePreference::light, 1u, true, ColorScheme::light},
        {AppearancePreference::dark, 2u, false, ColorScheme::dark},
        {AppearancePreference::system, 1u, false, ColorScheme::dark},
        {AppearancePreference::system, 2u, true, ColorScheme::light},
        // No preference, an unknown value or no portal at all: the palette the desktop gave.
        {AppearancePreference::system, 0u, true, ColorScheme::dark},
        {AppearancePreference::system, 0u, false, ColorScheme::light},
        {AppearancePreference::system, 7u, true, ColorScheme::dark},
        {AppearancePreference::system, std::nullopt, false, ColorScheme::light},
    };
    for (const auto& c : cases)
        EXPECT_EQ(resolveColorScheme(c.preference, c.portal, c.paletteDark), c.expected)
            << int(c.preference) << " " << (c.portal ? int(*c.portal) : -1) << " " << c.paletteDark;
}

TEST(PanelTabs, NumbersPickTabsAndStepsWrap) {
    EXPECT_EQ(tabForNumber(1), PanelTab::overview);
    EXPECT_EQ(tabForNumber(4), PanelTab::settings);
    EXPECT_FALSE(tabForNumber(0));
    EXPECT_FALSE(tabForNumber(5));
    EXPECT_EQ(steppedTab(PanelTab::settings, 1), PanelTab::overview);
    EXPECT_EQ(steppedTab(PanelTab::overview, -1), PanelTab::settings);
    EXPECT_EQ(detailForCard("heat"), MetricDetail::heat);
    EXPECT_FALSE(detailForCard("radio"));
}

TEST(HeaderContent, FishAreGroupedAndTheWeatherChipFollowsItsSetting) {
    EXPECT_EQ(groupedNumber(0), "0");
    EXPECT_EQ(groupedNumber(999), "999");
    EXPECT_EQ(groupedNumber(1250), "1,250");
    EXPECT_EQ(groupedNumber(-1234567), "-1,234,567");
    EXPECT_EQ(groupedNumber(INT64_MIN), "-9,223,372,036,854,775,808");
    WeatherSummary w;
    w.temperatureC = 14;
    w.symbol = "cloud.sun.fill";
    w.ageSeconds = 600;
    EXPECT_FALSE(headerChips(5, w, false, menubar::TemperatureUnit::celsius).weather);
    EXPECT_FALSE(headerChips(5, std::nullopt, true, menubar::TemperatureUnit::celsius).weather);
    const auto chip = headerChips(5, w, true, menubar::TemperatureUnit::fahrenheit).weather;
    ASSERT_TRUE(chip);
    EXPECT_EQ(chip->temperature, "57°F");
    EXPECT_EQ(chip->age, "10m");
}

bool inside(const Box& inner, const Box& b) {
    return b.isEmpty() ||
           (b.x >= inner.x - 1e-9 && b.y >= inner.y - 1e-9 && b.right() <= inner.right() + 1e-9 &&
            b.bottom() <= inner.bottom() + 1e-9);
}

bool overlap(const Box& a, const Box& b) {
    if (a.isEmpty() || b.isEmpty()) return false;
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

// The greeting in the header's width: the name goes first, then the city; a place in another
// zone is named, one in the same part of the day is not; without a forecast the phrase is the
// computer's own.
TEST(HeaderContent, TheGreetingDropsTheNameThenTheCityToFit) {
    // 2026-10-01 14:30 in Berlin (UTC+2); in Melbourne (UTC+10) it is 22:30, night.
    const weather::UnixTime now = 1790857800;
    const int berlin = 7200;
    weather::WeatherReport melbourne;
    melbourne.location.name = "Melbourne";
    melbourne.utcOffsetSeconds = 10 * 3600;
    melbourne.current.time = now;
    melbourne.current.code = 95;
    melbourne.current.isDay = false;
    weather::WeatherReport berlinRain = melbourne;
    berlinRain.location.name = "Berlin";
    berlinRain.utcOffsetSeconds = berlin;
    berlinRain.current.code = 63;
    berlinRain.current.isDay = true;
    const std::optional<std::string> henry = "Henry";
    struct Case {
        const weather::WeatherReport* report;
        std::optional<std::string> name;
        std::size_t width;  // characters that fit
        std::string expected;
    };
    const Case cases[] = {
        {&melbourne, henry, 40, "Stormy night in Melbourne, Henry"},
        {&melbourne, henry, 28, "Stormy night in Melbourne"},
        {&melbourne, henry, 20, "Stormy night, Henry"},
        {&melbourne, henry, 10, "Stormy night"},
        {&melbourne, std::nullopt, 40, "Stormy night in Melbourne"},
        {&berlinRain, henry, 40, "Rainy afternoon, Henry"},
        {nullptr, henry, 40, "Good afternoon, Henry"},
        {nullptr, std::nullopt, 40, "Good afternoon"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        const auto fits = [&](const std::string& text) { return text.size() <= c.width; };
        EXPECT_EQ(headerGreeting(c.report, now, berlin, c.name, fits), c.expected);
    }
}

// Whatever a card carries and however big the desktop's font, its parts stay inside the card
// and never sit on each other.
TEST(CardGeometry, PartsStayInsideAndApartForEverySizeAndFont) {
    const std::pair<layout::CardSize, Box> sizes[] = {
        {layout::CardSize::small, {0, 0, 112, 104}}, {layout::CardSize::medium, {0, 0, 172, 160}},
        {layout::CardSize::wide, {0, 0, 352, 76}},   {layout::CardSize::wide, {0, 0, 352, 104}},
        {layout::CardSize::large, {0, 0, 352, 216}},
    };
    for (const double scale : {1.0, 1.25, 1.5})
        for (const auto& [size, frame] : sizes)
            for (int mask = 0; mask < 16; ++mask) {
                CardParts parts{bool(mask & 1), bool(mask & 2), bool(mask & 4),
                                std::size_t(mask & 8 ? 6 : 2)};
                const CardLines lines{15 * scale, 30 * scale, 14 * scale};
                const auto g = layoutCard(size, frame.width, frame.height, parts, lines, 10);
                const double pad = size == layout::CardSize::wide ? 8 : 10;
                const Box inner{pad, pad, frame.width - 2 * pad, frame.height - 2 * pad};
                const Box boxes[] = {g.headline, g.gauge, g.chart, g.bars, g.facts};
                SCOPED_TRACE(std::string(layout::name(size)) + " mask " + std::to_string(mask) +
                             " scale " + std::to_string(scale));
                for (const auto& b : boxes) EXPECT_TRUE(inside(inner, b));
                for (std::size_t i = 0; i < std::size(boxes); ++i)
                    for (std::size_t j = i + 1; j < std::size(boxes); ++j)
                        EXPECT_FALSE(overlap(boxes[i], boxes[j])) << i << " " << j;
                EXPECT_LE(g.factRows * g.factColumns, std::max<std::size_t>(parts.facts, 1) + 1);
            }
}

}  // namespace
}  // namespace trotlet::panel

namespace trotlet::panel {
namespace {

TEST(OverviewEditing, TheTrayOffersHiddenCardsAndSizesStepWithinTheKind) {
    const auto& registry = layout::OverviewCardRegistry::standard();
    auto layout = layout::OverviewLayoutResolver::defaultLayout(registry);
    layout = layout::LayoutOps::settingHidden("gpu", true, layout);
    const auto tray = hiddenTray(layout, registry);
    ASSERT_EQ(tray.size(), 2u) << "gpu, and weather hidden by default";
    EXPECT_EQ(tray[0].id, "gpu");
    EXPECT_EQ(tray[0].caption, "GPU load");
    EXPECT_EQ(tray[0].accessibleName, "Add the GPU card");
    EXPECT_EQ(tray[1].id, "weather");

    const auto& gpu = *registry.kind("gpu");  // small, medium
    EXPECT_EQ(steppedSize(gpu, layout::CardSize::small, 1), layout::CardSize::medium);
    EXPECT_EQ(steppedSize(gpu, layout::CardSize::medium, 1), std::nullopt);
    EXPECT_EQ(steppedSize(gpu, layout::CardSize::small, -1), std::nullopt);
    EXPECT_EQ(steppedSize(gpu, layout::CardSize::wide, 1), std::nullopt) << "not a size it has";
    EXPECT_EQ(editDescription(gpu, layout::CardSize::small),
              "Small. Alt and an arrow key move it, plus and minus resize it, Delete hides it.");
}

}  // namespace
}  // namespace trotlet::panel
