#include <clocale>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "menubar/Format.h"

using trotlet::menubar::Format;
using trotlet::menubar::NetworkUnit;
using trotlet::menubar::TemperatureUnit;

namespace {

TEST(Format, FixedUsesThePatternForEachDecimalCount) {
    struct Case {
        int decimals;
        double x;
        const char* expected;
    } cases[] = {
        {0, 2.5, "2"},       {0, 3.5, "4"},       {1, 0.05, "0.1"},  {2, 1.005, "1.00"},
        {3, 3.14159, "3.142"}, {5, 1.0 / 3, "0.33333"}, {-2, 7.6, "8"}, {1, -0.04, "0.0"},
        {1, -1.25, "-1.2"},  {0, 1e20, "100000000000000000000"}, {7, 0.5, "0.5000000"},
    };
    for (const auto& c : cases) EXPECT_EQ(Format::fixed(c.decimals, c.x), c.expected) << c.x;
}

TEST(Format, PercentRoundsToWholeAndFloorsAtZero) {
    struct Case {
        double fraction;
        const char* expected;
    } cases[] = {
        {0.456, "46%"}, {0.004, "0%"}, {0.005, "1%"}, {0.995, "100%"}, {1.0, "100%"},
        {1.234, "123%"}, {-0.3, "0%"}, {0.0, "0%"}, {0.37, "37%"},
    };
    for (const auto& c : cases) EXPECT_EQ(Format::percent(c.fraction), c.expected) << c.fraction;
    auto parts = Format::percentParts(0.456);
    EXPECT_EQ(parts.value, "46");
    EXPECT_EQ(parts.unit, "%");
    EXPECT_EQ(parts.joined(), "46 %");
    EXPECT_DOUBLE_EQ(parts.number, 46);
}

TEST(Format, TemperatureRoundsInTheChosenUnit) {
    struct Case {
        double celsius;
        TemperatureUnit unit;
        const char* value;
        const char* unitText;
    } cases[] = {
        {99.6, TemperatureUnit::celsius, "100", "°C"},
        {37, TemperatureUnit::fahrenheit, "99", "°F"},  // 98.6
        {100, TemperatureUnit::fahrenheit, "212", "°F"},
        {72.4, TemperatureUnit::celsius, "72", "°C"},
        {-0.4, TemperatureUnit::celsius, "0", "°C"},
        {-40, TemperatureUnit::fahrenheit, "-40", "°F"},
    };
    for (const auto& c : cases) {
        auto parts = Format::temperatureParts(c.celsius, c.unit);
        EXPECT_EQ(parts.value, c.value) << c.celsius;
        EXPECT_EQ(parts.unit, c.unitText) << c.celsius;
    }
}

TEST(Format, ByteRatesStepAtThousandButDivideBy1024) {
    struct Case {
        double bps;
        const char* joined;
    } cases[] = {
        {-5, "0 KB/s"},
        {0, "0 KB/s"},
        {1023, "0 KB/s"},
        {1024, "1.0 KB/s"},
        {10 * 1024 - 60, "9.9 KB/s"},
        {10 * 1024, "10 KB/s"},
        {980 * 1024, "980 KB/s"},
        {1'023'999, "1000 KB/s"},  // 999.999 KB/s stays in KB/s
        {1'024'000, "1.0 MB/s"},   // 1000 KB/s switches, 0.98 MB/s shows as 1.0
        {8.8 * 1024 * 1024, "8.8 MB/s"},
        {12 * 1024 * 1024, "12 MB/s"},
        {1000.0 * 1024 * 1024, "1.0 GB/s"},
        {5e15, "4656613 GB/s"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Format::rateParts(c.bps, false).joined(), c.joined) << c.bps;
}

TEST(Format, BitRatesAreDecimal) {
    struct Case {
        double bps;
        const char* joined;
    } cases[] = {
        {-1, "0 Kbps"},        {100, "0 Kbps"},         {125, "1.0 Kbps"},
        {1200, "9.6 Kbps"},    {1250, "10 Kbps"},       {124'999, "1000 Kbps"},
        {125'000, "1.0 Mbps"}, {1'200'000, "9.6 Mbps"}, {125'000'000, "1.0 Gbps"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Format::rateParts(c.bps, NetworkUnit::bits).joined(), c.joined) << c.bps;
}

TEST(Format, BytesPickUnitAndDecimalsByMagnitude) {
    struct Case {
        double n;
        const char* expected;
    } cases[] = {
        {0, "0 B"},
        {512, "512 B"},
        {999, "999 B"},
        {1000, "0.98 KB"},
        {1024, "1.00 KB"},
        {10 * 1024, "10.0 KB"},
        {100 * 1024, "100 KB"},
        {1.46 * 1024 * 1024 * 1024, "1.46 GB"},
        {23.4 * 1024 * 1024 * 1024, "23.4 GB"},
        {118.0 * 1024 * 1024 * 1024, "118 GB"},
        {2.0 * 1024 * 1024 * 1024 * 1024 * 1024, "2.00 PB"},
        {5000.0 * 1024 * 1024 * 1024 * 1024 * 1024, "5000 PB"},  // no unit past PB
    };
    for (const auto& c : cases) EXPECT_EQ(Format::bytes(c.n), c.expected) << c.n;
}

TEST(Format, DurationTruncatesMinutesAndHours) {
    struct Case {
        double seconds;
        const char* expected;
    } cases[] = {
        {-30, "0m"},         {0, "0m"},           {59.9, "0m"},        {45 * 60, "45m"},
        {3599, "59m"},       {3600, "1h 0m"},     {2 * 3600 + 5 * 60 + 59, "2h 5m"},
        {86399, "23h 59m"},  {86400, "1d 0h"},    {27 * 3600, "1d 3h"},
        {10 * 86400 + 7199, "10d 1h"},
    };
    for (const auto& c : cases) EXPECT_EQ(Format::duration(c.seconds), c.expected) << c.seconds;
}

// Qt calls setlocale(LC_ALL, "") at start, so a German user's process formats with a comma
// unless Format stays out of the C library's locale.
TEST(Format, IgnoresTheProcessLocale) {
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) GTEST_SKIP() << "de_DE.UTF-8 is not installed";
    EXPECT_EQ(Format::fixed(2, 1.5), "1.50");
    EXPECT_EQ(Format::rateParts(8.8 * 1024 * 1024, false).joined(), "8.8 MB/s");
    EXPECT_EQ(Format::bytes(1.46 * 1024 * 1024 * 1024), "1.46 GB");
    EXPECT_EQ(Format::percent(0.456), "46%");
    EXPECT_EQ(Format::duration(7500), "2h 5m");
    std::setlocale(LC_ALL, previous.c_str());
}

}  // namespace

namespace {

TEST(Format, FixedHandlesExtremes) {
    EXPECT_EQ(Format::fixed(0, 1.7976931348623157e308).size(), 309u);
    EXPECT_EQ(Format::fixed(400, 1.0).size(), 402u);
    EXPECT_EQ(Format::fixed(1, std::numeric_limits<double>::infinity()), "inf");
}

}  // namespace
