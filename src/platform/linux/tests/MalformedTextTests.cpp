// Values the kernel never prints, found by fuzzing: each is read as absent or bounded, never
// passed on as a number the app would show or convert.
#include <gtest/gtest.h>

#include "platform/linux/BatteryReader.h"
#include "platform/linux/CpuReader.h"
#include "platform/linux/MemoryReader.h"
#include "platform/linux/NetworkReader.h"
#include "platform/linux/SystemReader.h"
#include "platform/linux/TextScan.h"
#include "platform/linux/VolumeReader.h"

using namespace trotlet::platform;

TEST(MalformedText, NonFiniteAndOutOfRangeNumbersAreAbsent) {
    for (const char* text : {"nan", "inf", "-inf", "infinity", "1e400"})
        EXPECT_FALSE(TextScan::parseDouble(text)) << text;
    EXPECT_EQ(TextScan::parseDouble("45000"), 45000.0);

    EXPECT_FALSE(parseBootTime("cpu 1 2 3 4\nbtime 99999999999\n")) << "the year 5138";
    EXPECT_FALSE(parseBootTime("btime -5\n"));
    EXPECT_EQ(parseBootTime("btime 1700000000\n"), 1700000000);
    EXPECT_FALSE(parseLoadAvg("1.00 -.3 0.5 1/91 3\n"));
    EXPECT_FALSE(parseLoadAvg("0 5 0 1/-1\n")->schedulingEntities);
    EXPECT_FALSE(parsePressure("some avg10=0.5 avg60=0\nfull avg10=-1 avg60=0\n").fullAvg10);
    EXPECT_FALSE(parsePressure("some avg10=250.00 avg60=0\n").someAvg10);

    const auto w = parseWireless("wlan0: 0000 18446744073709000000. -50. -90.\n", "wlan0");
    ASSERT_TRUE(w);
    EXPECT_EQ(w->qualityPercent, 100);
    EXPECT_EQ(w->rssiDbm, -50);
}

TEST(MalformedText, BatteryReadingsBeyondWhatABatteryReportsAreAbsent) {
    PowerSupplyReading battery;
    battery.type = "Battery";
    battery.status = "Discharging";
    battery.capacityPct = 1e300;
    battery.cycles = 31218744073709551616.0;
    battery.timeToEmptySec = 1e300;
    trotlet::metrics::BatteryMetrics out;
    combinePowerSupplies({battery}, out);
    ASSERT_TRUE(out.present);
    EXPECT_EQ(out.percent, 100);
    EXPECT_FALSE(out.cycles);
    EXPECT_FALSE(out.timeRemainingMin);
}

TEST(MalformedText, SpaceBeyond64BitsIsNoReading) {
    EXPECT_FALSE(spaceFromBlocks(1ull << 62, 1, 4096)) << "a FUSE file system's claim";
    EXPECT_FALSE(spaceFromBlocks(1, UINT64_MAX, 1));
    const auto space = spaceFromBlocks(1000, 250, 4096);
    ASSERT_TRUE(space);
    EXPECT_EQ(space->totalBytes, 4096000);
    EXPECT_EQ(space->availableBytes, 1024000);
}
