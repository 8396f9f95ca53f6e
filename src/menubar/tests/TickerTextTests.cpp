#include <string>

#include <gtest/gtest.h>

#include "menubar/TickerText.h"

namespace trotlet::menubar {
namespace {

using metrics::MetricsSnapshot;

MetricsSnapshot sample() {
    MetricsSnapshot s;
    s.cpu.total = 0.37;
    s.memory.total = 1000;
    s.memory.used = 640;
    s.memory.pressure = metrics::MemoryPressure::normal;
    s.gpu = metrics::GPUMetrics{};
    s.gpu->utilization = 0.125;
    s.thermal.cpuC = 72.4;
    s.network.downBps = 1.2 * 1024 * 1024;
    s.battery.present = true;
    s.battery.percent = 87;
    return s;
}

TEST(TickerText, EveryMetric) {
    const MetricsSnapshot s = sample();
    struct Case {
        MenuBarTextMetric metric;
        TemperatureUnit temp;
        NetworkUnit net;
        const char* expected;
    } cases[] = {
        {MenuBarTextMetric::none, TemperatureUnit::celsius, NetworkUnit::bytes, ""},
        {MenuBarTextMetric::cpu, TemperatureUnit::celsius, NetworkUnit::bytes, "37%"},
        {MenuBarTextMetric::memory, TemperatureUnit::celsius, NetworkUnit::bytes, "64%"},
        {MenuBarTextMetric::gpu, TemperatureUnit::celsius, NetworkUnit::bytes, "13%"},
        {MenuBarTextMetric::cpuTemperature, TemperatureUnit::celsius, NetworkUnit::bytes, "72°C"},
        {MenuBarTextMetric::cpuTemperature, TemperatureUnit::fahrenheit, NetworkUnit::bytes,
         "162°F"},
        {MenuBarTextMetric::network, TemperatureUnit::celsius, NetworkUnit::bytes, "↓1.2 MB/s"},
        {MenuBarTextMetric::network, TemperatureUnit::celsius, NetworkUnit::bits, "↓10 Mbps"},
        {MenuBarTextMetric::battery, TemperatureUnit::celsius, NetworkUnit::bytes, "87%"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(tickerText(c.metric, s, c.temp, c.net), c.expected)
            << settings::MenuBarTextMetricNames[static_cast<size_t>(c.metric)];
}

TEST(TickerText, NothingWhenTheReadingIsMissing) {
    MetricsSnapshot s = sample();
    s.memory.pressure = metrics::MemoryPressure::unknown;
    s.gpu.reset();
    s.thermal = {};
    s.battery = {};
    const auto c = TemperatureUnit::celsius;
    const auto b = NetworkUnit::bytes;
    EXPECT_EQ(tickerText(MenuBarTextMetric::memory, s, c, b), "");
    EXPECT_EQ(tickerText(MenuBarTextMetric::gpu, s, c, b), "");
    EXPECT_EQ(tickerText(MenuBarTextMetric::cpuTemperature, s, c, b), "");
    EXPECT_EQ(tickerText(MenuBarTextMetric::battery, s, c, b), "");
    EXPECT_EQ(tickerText(MenuBarTextMetric::cpu, s, c, b), "37%");
}

// The formatter's own boundaries are checked in its tests; here, what the ticker adds to them.
TEST(TickerText, ArrowBeforeTheRateAndNoMemoryTotalIsZero) {
    MetricsSnapshot s = sample();
    s.network.downBps = 1'023'999;
    EXPECT_EQ(tickerText(MenuBarTextMetric::network, s, TemperatureUnit::celsius,
                         NetworkUnit::bytes),
              "↓1000 KB/s");
    s.memory.total = 0;
    EXPECT_EQ(tickerText(MenuBarTextMetric::memory, s, TemperatureUnit::celsius,
                         NetworkUnit::bytes),
              "0%");
}

// A fake tray font: every character 7.3 points wide, the arrow 9.
double fakeWidth(std::string_view text) {
    double w = 0;
    for (size_t i = 0; i < text.size();) {
        if (text.substr(i, 3) == "↓") {
            w += 9;
            i += 3;
        } else if (text.substr(i, 2) == "°") {
            w += 4;
            i += 2;
        } else {
            w += 7.3;
            ++i;
        }
    }
    return w;
}

TEST(TickerWidth, SampleWidthsAreMeasuredOnceAndRoundedUp) {
    int calls = 0;
    TickerWidth width([&](std::string_view text) {
        ++calls;
        return fakeWidth(text);
    });
    EXPECT_DOUBLE_EQ(width.sampleWidth(MenuBarTextMetric::none), 0);
    EXPECT_DOUBLE_EQ(width.sampleWidth(MenuBarTextMetric::cpu), 30);             // 29.2 up
    EXPECT_DOUBLE_EQ(width.sampleWidth(MenuBarTextMetric::cpuTemperature), 34);  // 33.2 up
    // "↓8.8 MB/s": 9 + 8 x 7.3 = 67.4, wider than "↓888 KB/s" (the same length here).
    EXPECT_DOUBLE_EQ(width.sampleWidth(MenuBarTextMetric::network), 68);
    const int measured = calls;
    width.sampleWidth(MenuBarTextMetric::cpu);
    width.sampleWidth(MenuBarTextMetric::network);
    EXPECT_EQ(calls, measured);
}

TEST(TickerWidth, ReservedWidthGrowsOnlyPastTheSamples) {
    TickerWidth width(fakeWidth);
    EXPECT_DOUBLE_EQ(width.reservedWidth(MenuBarTextMetric::none, "anything"), 0);
    EXPECT_DOUBLE_EQ(width.reservedWidth(MenuBarTextMetric::cpu, "7%"), 30);
    EXPECT_DOUBLE_EQ(width.reservedWidth(MenuBarTextMetric::cpu, ""), 30);
    EXPECT_DOUBLE_EQ(width.reservedWidth(MenuBarTextMetric::cpu, "1234%"), 37);  // 36.5 up
    EXPECT_DOUBLE_EQ(width.reservedWidth(MenuBarTextMetric::network, "↓1000 KB/s"), 75);
}

}  // namespace
}  // namespace trotlet::menubar
