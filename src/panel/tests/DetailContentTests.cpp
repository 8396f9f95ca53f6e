#include <gtest/gtest.h>

#include <functional>

#include "metrics/FixtureProvider.h"
#include "panel/CardTexts.h"
#include "panel/DetailContent.h"
#include "panel/DetailTexts.h"

namespace trotlet::panel {
namespace {

using metrics::MetricsFixture;
using Kind = DetailBlock::Kind;

constexpr std::int64_t kNow = 1790857800;  // 2026-10-01 12:30 UTC

metrics::MetricsSnapshot fixture(MetricsFixture f) {
    return metrics::fixtureSnapshot(f, metrics::Timestamp(std::chrono::seconds(kNow)));
}

DetailInputs inputsFor(const metrics::MetricsSnapshot& sample) {
    DetailInputs in;
    in.card.sample = &sample;
    in.now = kNow;
    return in;
}

std::vector<std::string> titles(const DetailContent& c) {
    std::vector<std::string> out;
    for (const auto& b : c.blocks) out.push_back(b.title);
    return out;
}

const DetailRow* row(const DetailContent& c, const std::string& block, const std::string& label) {
    for (const auto& b : c.blocks)
        if (b.title == block)
            for (const auto& r : b.rows)
                if (r.label == label) return &r;
    return nullptr;
}

// Every detail over every fixture: a stand-in replaces the headline and never sits beside one;
// every row says something; every bar stays inside its track.
TEST(DetailContent, EveryDetailOverEveryFixtureKeepsItsPromises) {
    for (std::size_t f = 0; f < metrics::MetricsFixtureNames.size(); ++f) {
        const auto sample = fixture(MetricsFixture(f));
        for (std::size_t d = 0; d < MetricDetailNames.size(); ++d) {
            SCOPED_TRACE(std::string(metrics::MetricsFixtureNames[f]) + " " +
                         std::string(MetricDetailNames[d]));
            const auto c = describeDetail(MetricDetail(d), inputsFor(sample));
            EXPECT_FALSE(c.title.empty());
            EXPECT_FALSE(c.accessibleValue.empty());
            EXPECT_EQ(c.standIn.has_value(), c.value.empty());
            for (const auto& b : c.blocks) {
                for (const auto& r : b.rows) EXPECT_FALSE(r.label.empty() || r.value.empty());
                for (const auto& bar : b.bars) {
                    EXPECT_GE(bar.fraction, 0);
                    EXPECT_LE(bar.fraction, 1);
                }
                if (b.kind == Kind::chart) {
                    EXPECT_TRUE(b.chart);
                }
            }
        }
    }
}

TEST(DetailContent, EachKindShowsItsBlocksOrItsStandIn) {
    using F = MetricsFixture;
    using D = MetricDetail;
    using S = metrics::MetricsSnapshot;
    struct Case {
        const char* name;
        struct {
            MetricsFixture fixture;
            MetricDetail detail;
            std::function<void(S&)> change;
        } in;
        struct {
            std::optional<std::string> standIn;
            std::vector<std::string> blocks;
        } want;
    };
    const auto no = std::nullopt;
    const std::vector<Case> cases = {
        {"cpu",
         {F::normal, D::cpu},
         {no, {"Load", "Cores · 8", "Activity", "Top processes by CPU"}}},
        {"hybrid cpu",
         {F::normal, D::cpu,
          [](S& s) {
              s.cpu.efficiencyCoreIndices = {4, 5, 6, 7};
          }},
         {no,
          {"Load", "Performance cores · 4", "Efficiency cores · 4", "Activity",
           "Top processes by CPU"}}},
        {"memory",
         {F::normal, D::memory},
         {no, {"Used", "Pressure", "Breakdown", "Top processes by memory"}}},
        {"laptop network",
         {F::normal, D::network},
         {no, {"Download", "Upload", "Connection", "Wi-Fi", "Since startup", "Public address"}}},
        {"desktop network",
         {F::desktop, D::network},
         {no, {"Download", "Upload", "Connection", "Since startup", "Public address"}}},
        {"disk", {F::normal, D::disk}, {no, {"Read", "Write", "Volumes", "Since startup"}}},
        {"no disks", {F::normal, D::disk, [](S& s) { s.disks = {}; }}, {noDisksText(), {}}},
        {"battery", {F::normal, D::battery}, {no, {"Charge", "Battery"}}},
        {"desktop battery", {F::desktop, D::battery}, {noBatteryText(), {}}},
        {"heat",
         {F::normal, D::heat},
         {no, {"CPU temperature", "System", "CPU", "Storage", "Board", "Fans"}}},
        {"no sensors, no fans",
         {F::normal, D::heat, [](S& s) { s.thermal = {.fanCount = 0}; }},
         {noTemperatureSensorsText(), {"Fans"}}},
        {"no gpu", {F::normal, D::gpu, [](S& s) { s.gpu.reset(); }}, {noGpuStatisticsText(), {}}},
        {"gpu", {F::desktop, D::gpu}, {no, {"Utilisation", "GPU"}}},
        {"no place", {F::normal, D::weather}, {noWeatherPlaceText(), {}}},
        {"paw report without a report", {F::normal, D::pawreport}, {"Nothing to report yet", {}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto sample = fixture(c.in.fixture);
        if (c.in.change) c.in.change(sample);
        const auto content = describeDetail(c.in.detail, inputsFor(sample));
        EXPECT_EQ(content.standIn, c.want.standIn);
        EXPECT_EQ(titles(content), c.want.blocks);
    }
}

TEST(DetailContent, AbsentReadingsReadAsNotAvailableNeverAsZero) {
    auto sample = fixture(MetricsFixture::normal);
    sample.battery.cycles.reset();
    sample.network.wifi = metrics::WifiDetails{};
    sample.network.wifi->frequencyMHz = 5180;
    auto c = describeDetail(MetricDetail::battery, inputsFor(sample));
    ASSERT_TRUE(row(c, "Battery", "Cycles"));
    EXPECT_TRUE(row(c, "Battery", "Cycles")->missing);
    EXPECT_EQ(row(c, "Battery", "Cycles")->value, notAvailableText());
    EXPECT_EQ(row(c, "Battery", "Power draw")->value, "7.9 W out");

    c = describeDetail(MetricDetail::network, inputsFor(sample));
    EXPECT_TRUE(row(c, "Wi-Fi", "Network")->missing);
    EXPECT_EQ(row(c, "Wi-Fi", "Band")->value, "5 GHz");
    EXPECT_TRUE(row(c, "Wi-Fi", "Signal")->missing);

    // Fans without a reported range are compared with each other, and say so.
    const auto desktop = fixture(MetricsFixture::desktop);
    c = describeDetail(MetricDetail::heat, inputsFor(desktop));
    const auto* fans = c.block(Kind::bars, "Fans");
    ASSERT_TRUE(fans);
    ASSERT_EQ(fans->bars.size(), 2u);
    EXPECT_EQ(fans->bars[1].value, "1,150 rpm");
    EXPECT_EQ(fans->bars[1].note, "No range reported");
    EXPECT_LT(fans->bars[1].fraction, 1.0);
}

TEST(DetailContent, VolumesCarryTheirFlags) {
    auto sample = fixture(MetricsFixture::normal);
    sample.disks.volumes.push_back(
        {"STICK", "/media/alice/STICK", 32'000'000'000, 1'000'000'000, false, true, false, true});
    sample.disks.volumes.push_back({"nas", "/mnt/nas", std::nullopt, std::nullopt});
    const auto c = describeDetail(MetricDetail::disk, inputsFor(sample));
    const auto* volumes = c.block(Kind::bars, "Volumes");
    ASSERT_TRUE(volumes);
    ASSERT_EQ(volumes->bars.size(), 4u);
    EXPECT_EQ(volumes->bars[0].tags, (std::vector<std::string>{"System", "Internal"}));
    EXPECT_EQ(volumes->bars[2].tags,
              (std::vector<std::string>{"External", "Removable", "Read-only"}));
    EXPECT_EQ(volumes->bars[2].level, Level::critical) << "1 GB free";
    const DetailBar& hung = volumes->bars[3];
    EXPECT_EQ(hung.value, "Unavailable") << "a share whose space is unknown, not an empty one";
    EXPECT_EQ(hung.note, "Not responding · /mnt/nas");
    EXPECT_EQ(hung.fraction, 0);
}

TEST(DetailContent, ThePublicAddressIsOnlyEverShownAfterAsking) {
    const auto sample = fixture(MetricsFixture::normal);
    auto in = inputsFor(sample);
    in.publicAddress.service = "echo.example";
    auto block = *describeDetail(MetricDetail::network, in).block(Kind::publicAddress);
    EXPECT_TRUE(block.rows.empty());
    EXPECT_NE(block.note.find("echo.example once"), std::string::npos);

    in.publicAddress.status = PublicAddressState::Status::found;
    in.publicAddress.address = "203.0.113.7";
    in.publicAddress.fetchedAt = kNow - 300;
    block = *describeDetail(MetricDetail::network, in).block(Kind::publicAddress);
    EXPECT_EQ(block.rows.at(0).value, "203.0.113.7");
    EXPECT_EQ(block.note, "Looked up 5 min ago");

    in.publicAddress.status = PublicAddressState::Status::failed;
    in.publicAddress.error = "The address service did not answer.";
    block = *describeDetail(MetricDetail::network, in).block(Kind::publicAddress);
    EXPECT_EQ(block.note, "The address service did not answer.");
    EXPECT_EQ(block.level, Level::hot);
}

weather::WeatherReport forecast() {
    weather::WeatherReport r;
    r.location.name = "Berlin";
    r.fetchedAt = kNow - 600;
    r.utcOffsetSeconds = 7200;
    r.current = {kNow - 300, 14.2, 12.9, 71, 2, true, 13, 250, 0, 40};
    for (int h = -2; h < 30; ++h)
        r.hourly.push_back({kNow + h * 3600, 14.0 + h * 0.1, 13, 70, h > 3 ? 61 : 2, true,
                            h > 3 ? 60.0 : 5.0, 40, 12, 240});
    const std::int64_t placeMidnight = (kNow + 7200) / 86400 * 86400;
    for (int d = -1; d < 8; ++d)
        r.daily.push_back({placeMidnight + d * 86400, 3, 17.0 + d, 9.0 - d % 2,
                           placeMidnight + d * 86400 - 7200 + 7 * 3600 + 12 * 60,
                           placeMidnight + d * 86400 - 7200 + 18 * 3600 + 45 * 60, 30});
    return r;
}

TEST(DetailContent, WeatherShowsTheStoredForecastAndItsTrouble) {
    auto in = inputsFor(fixture(MetricsFixture::normal));
    in.weather.placeChosen = true;
    EXPECT_EQ(describeDetail(MetricDetail::weather, in).standIn, noForecastYetText());
    in.weather.error = weather::WeatherError::offline();
    EXPECT_EQ(describeDetail(MetricDetail::weather, in).standIn, "You're offline");

    in.weather.report = forecast();
    auto c = describeDetail(MetricDetail::weather, in);
    ASSERT_FALSE(c.standIn);
    EXPECT_EQ(c.value + c.unit, "14°C");
    EXPECT_EQ(c.caption, "Partly cloudy · Berlin");
    EXPECT_EQ(row(c, "Now", "Wind")->value, "13 km/h W");
    const auto* hours = c.block(Kind::hours);
    ASSERT_TRUE(hours);
    ASSERT_EQ(hours->hours.size(), 8u);
    EXPECT_EQ(hours->hours[0].time, "Now");
    EXPECT_EQ(hours->hours[1].time, "15:30") << "the place's clock, two hours ahead of UTC";
    EXPECT_EQ(hours->hours[1].precipitation, "") << "a 5 % chance is not worth a number";
    EXPECT_EQ(hours->hours[5].precipitation, "60%");
    const auto* days = c.block(Kind::days);
    ASSERT_TRUE(days);
    ASSERT_EQ(days->days.size(), 7u) << "yesterday is gone, a week is shown";
    EXPECT_EQ(days->days[0].name, "Today");
    EXPECT_EQ(days->days[1].name, "Fri");
    EXPECT_EQ(row(c, "Sun", "Sunrise")->value, "07:12");
    EXPECT_EQ(row(c, "Sun", "Sunset")->value, "18:45");
    const auto& note = c.blocks.back();
    EXPECT_EQ(note.level, Level::busy) << "the failed refresh is said beside the old forecast";
    EXPECT_EQ(note.note, "You're offline. Showing the forecast from 10 min ago.");

    in.weather.error.reset();
    in.now += 3 * 86400;  // long past the forecast's horizon
    EXPECT_EQ(describeDetail(MetricDetail::weather, in).standIn, noForecastYetText());
}

TEST(PublicAddress, AcceptsOnlyAnAddress) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"203.0.113.7\n", "203.0.113.7"},
        {"  2001:db8::1 ", "2001:db8::1"},
        {R"({"ip":"198.51.100.2"})", "198.51.100.2"},
        {R"({"ip":"<script>"})", std::nullopt},
        {"<html>Log in to the hotel Wi-Fi</html>", std::nullopt},
        {"999.1.1.1", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [body, expected] : cases)
        EXPECT_EQ(parsePublicAddress(body), expected) << body;
}

TEST(DetailContent, WifiBands) {
    EXPECT_EQ(wifiBand(2412), "2.4 GHz");
    EXPECT_EQ(wifiBand(5180), "5 GHz");
    EXPECT_EQ(wifiBand(5955), "6 GHz");
    EXPECT_EQ(wifiBand(60000), "");
}

}  // namespace
}  // namespace trotlet::panel
