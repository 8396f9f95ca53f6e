#include <gtest/gtest.h>

#include "layout/OverviewCardRegistry.h"
#include "metrics/FixtureProvider.h"
#include "panel/CardContent.h"
#include "panel/CardTexts.h"

namespace trotlet::panel {
namespace {

using layout::CardSize;
using metrics::MetricsFixture;

metrics::Timestamp at() { return metrics::Timestamp(std::chrono::seconds(1790857800)); }

CardInputs inputsFor(const metrics::MetricsSnapshot& sample) {
    CardInputs in;
    in.sample = &sample;
    in.perCore = true;
    return in;
}

// Every card, at every size it supports, for every fixture: what the machine cannot give is a
// stand-in and nothing else, and what a size cannot show is cut.
TEST(CardContent, EveryCardAtEverySizeKeepsItsPromises) {
    for (std::size_t f = 0; f < metrics::MetricsFixtureNames.size(); ++f) {
        const auto sample = metrics::fixtureSnapshot(MetricsFixture(f), at());
        for (const auto& kind : layout::OverviewCardRegistry::standard().all())
            for (const auto size : kind.sizes) {
                SCOPED_TRACE(std::string(metrics::MetricsFixtureNames[f]) + " " + kind.id + " " +
                             std::string(layout::name(size)));
                const auto c = describeCard(kind.id, size, inputsFor(sample));
                const auto rules = rulesFor(size);
                EXPECT_EQ(c.title, kind.title);
                EXPECT_LE(c.facts.size(), rules.facts);
                if (!rules.chart) {
                    EXPECT_FALSE(c.chart);
                }
                if (!rules.bars) {
                    EXPECT_TRUE(c.bars.empty());
                }
                EXPECT_FALSE(c.accessibleValue.empty());
                if (c.standIn) {
                    EXPECT_TRUE(c.value.empty());
                    EXPECT_TRUE(c.facts.empty());
                    EXPECT_FALSE(c.chart);
                    EXPECT_EQ(c.accessibleValue, *c.standIn);
                } else {
                    EXPECT_FALSE(c.value.empty());
                }
            }
    }
}

// Samples that don't add up (decoded from a file, not read from a machine) still fill a gauge
// no further than its track, at every size.
TEST(CardContent, GaugesStayInTheirTrackWhenReadingsDontAddUp) {
    using Sample = metrics::MetricsSnapshot;
    const struct {
        const char* card;
        void (*change)(Sample&);
        double fill;
    } cases[] = {
        {"memory", [](Sample& s) { s.memory.used = s.memory.total * 2; }, 1},
        {"battery", [](Sample& s) { s.battery.percent = 150; }, 1},
        {"battery", [](Sample& s) { s.battery.percent = -5; }, 0},
        {"disk",
         [](Sample& s) {
             for (auto& v : s.disks.volumes) v.availableBytes = *v.totalBytes * 3;
         },
         0},
    };
    for (const auto& k : cases) {
        auto sample = metrics::fixtureSnapshot(MetricsFixture::normal, at());
        k.change(sample);
        for (const auto size : layout::OverviewCardRegistry::standard().kind(k.card)->sizes) {
            SCOPED_TRACE(std::string(k.card) + " " + std::string(layout::name(size)));
            const auto c = describeCard(k.card, size, inputsFor(sample));
            ASSERT_TRUE(c.gauge);
            EXPECT_EQ(*c.gauge, k.fill);
        }
    }
}

struct StandInCase {
    const char* name;
    std::function<void(metrics::MetricsSnapshot&)> change;
    const char* card;
    std::string expected;
};

TEST(CardContent, MissingReadingsShowTheirStandIns) {
    const std::vector<StandInCase> cases = {
        {"desktop without battery", [](auto& s) { s.battery = {}; }, "battery",
         "This computer has no battery."},
        {"no GPU statistics", [](auto& s) { s.gpu.reset(); }, "gpu",
         "GPU statistics aren't available on this computer."},
        {"no sensors", [](auto& s) { s.thermal = {}; }, "heat",
         "Temperature sensors aren't available on this computer."},
        {"no place chosen", [](auto&) {}, "weather",
         "Choose a place in Settings to see the weather."},
        {"system disk not answering",
         [](auto& s) {
             s.disks.readBps.reset();
             s.disks.volumes[0].totalBytes.reset();
             s.disks.volumes[0].availableBytes.reset();
         },
         "disk", "Disk space isn't available."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto sample = metrics::fixtureSnapshot(MetricsFixture::normal, at());
        c.change(sample);
        const auto content = describeCard(c.card, CardSize::medium, inputsFor(sample));
        ASSERT_TRUE(content.standIn);
        EXPECT_EQ(*content.standIn, c.expected);
    }
}

TEST(CardContent, FansSayWhetherTheyAreMissingOrUnreadable) {
    auto sample = metrics::fixtureSnapshot(MetricsFixture::normal, at());
    auto fans = [&] {
        const auto c = describeCard("heat", CardSize::medium, inputsFor(sample));
        return c.facts.empty() ? std::string() : c.facts.front().value;
    };
    sample.thermal.fans.clear();
    sample.thermal.fanCount = 0;
    EXPECT_EQ(fans(), "This computer has no fans.");
    sample.thermal.fanCount.reset();
    EXPECT_EQ(fans(), "Fan speeds aren't available.");
    sample.thermal.fans = {{0, 2140, std::nullopt, std::nullopt},
                           {1, 980, std::nullopt, std::nullopt}};
    EXPECT_EQ(fans(), "2140 rpm");
}

TEST(CardContent, PanicFillsTheSmallCpuCardInTheCriticalColour) {
    const auto sample = metrics::fixtureSnapshot(MetricsFixture::panic, at());
    const auto c = describeCard("cpu", CardSize::small, inputsFor(sample));
    EXPECT_EQ(c.level, Level::critical);
    EXPECT_EQ(c.unit, "%");
    EXPECT_EQ(c.caption.rfind("Load ", 0), 0u) << c.caption;
    EXPECT_EQ(c.accessibleName, "CPU");
    EXPECT_EQ(c.accessibleValue.rfind(c.value + " percent, ", 0), 0u) << c.accessibleValue;
}

TEST(CardContent, PerCoreBarsOnlyOnTheLargeCardAndOnlyWhenAsked) {
    const auto sample = metrics::fixtureSnapshot(MetricsFixture::busy, at());
    auto in = inputsFor(sample);
    EXPECT_EQ(describeCard("cpu", CardSize::large, in).bars.size(), sample.cpu.perCore.size());
    EXPECT_TRUE(describeCard("cpu", CardSize::wide, in).bars.empty());
    in.perCore = false;
    EXPECT_TRUE(describeCard("cpu", CardSize::large, in).bars.empty());
}

TEST(CardContent, BeforeTheFirstSampleCardsWaitRatherThanShowZero) {
    CardInputs in;
    for (const char* id : {"cpu", "memory", "network", "disk"}) {
        const auto c = describeCard(id, CardSize::medium, in);
        ASSERT_TRUE(c.standIn) << id;
        EXPECT_EQ(*c.standIn, waitingForReadingsText());
    }
    // A sample that did not carry the kind is no reading for it either.
    const auto sample = metrics::fixtureSnapshot(MetricsFixture::normal, at());
    in.sample = &sample;
    in.kinds = metrics::MetricKinds::cpu;
    EXPECT_TRUE(describeCard("memory", CardSize::medium, in).standIn);
    EXPECT_FALSE(describeCard("cpu", CardSize::medium, in).standIn);
}

TEST(CardContent, UnitsFollowTheSettings) {
    const auto sample = metrics::fixtureSnapshot(MetricsFixture::hot, at());
    auto in = inputsFor(sample);
    in.temperatureUnit = menubar::TemperatureUnit::fahrenheit;
    EXPECT_EQ(describeCard("heat", CardSize::small, in).unit, "°F");
    in.networkUnit = menubar::NetworkUnit::bits;
    const auto unit = describeCard("network", CardSize::small, in).unit;
    EXPECT_NE(unit.find("bps"), std::string::npos) << unit;
}

}  // namespace
}  // namespace trotlet::panel
