// Readers of /sys and network files against captured trees, and their parsers on odd input.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/linux/BatteryReader.h"
#include "platform/linux/GpuReader.h"
#include "platform/linux/NetworkReader.h"
#include "platform/linux/ProcessReader.h"
#include "platform/linux/SensorReader.h"
#include "platform/linux/UserNames.h"
#include "platform/linux/VolumeReader.h"
#include "TreeFixture.h"

using namespace trotlet;
using namespace trotlet::platform;
using metrics::InterfaceKind;
using metrics::SensorGroup;

TEST(BatteryReader, LaptopOnBattery) {
    CapturedTree tree("laptop");
    BatteryReader reader(tree.root());
    metrics::BatteryMetrics b;
    b.lowPowerMode = true;  // set by the application layer; the reader keeps it
    reader.read(b);
    ASSERT_TRUE(b.present);
    EXPECT_EQ(b.percent, 76);
    EXPECT_FALSE(b.charging);
    EXPECT_FALSE(b.pluggedIn);
    EXPECT_FALSE(b.fullyCharged);
    EXPECT_NEAR(*b.watts, -7.912, 1e-9);
    EXPECT_NEAR(*b.systemWatts, 7.912, 1e-9);
    EXPECT_EQ(b.timeRemainingMin, 300) << "39.596 Wh at 7.912 W";
    EXPECT_DOUBLE_EQ(*b.healthPct, 91.4);
    EXPECT_EQ(b.cycles, 214);
    EXPECT_FALSE(b.condition);
    EXPECT_FALSE(b.temperatureC);
    EXPECT_FALSE(b.adapterName) << "the adapter is unplugged";
    EXPECT_TRUE(b.lowPowerMode);

    // The kept files see new values; plugging in the adapter shows up on the next read.
    tree.write("sys/class/power_supply/BAT0/capacity", "75");
    tree.write("sys/class/power_supply/BAT0/status", "Charging");
    tree.write("sys/class/power_supply/AC/online", "1");
    reader.read(b);
    EXPECT_EQ(b.percent, 75);
    EXPECT_TRUE(b.charging);
    EXPECT_TRUE(b.pluggedIn);
    EXPECT_EQ(b.adapterName, "AC");
    EXPECT_FALSE(b.systemWatts);
}

TEST(BatteryReader, NoSystemBatteryMeansAbsent) {
    for (const char* name : {"amd-desktop", "vm"}) {
        CapturedTree tree(name);
        BatteryReader reader(tree.root());
        metrics::BatteryMetrics b;
        reader.read(b);
        EXPECT_FALSE(b.present) << name;
        EXPECT_FALSE(b.watts) << name;
        EXPECT_FALSE(b.timeRemainingMin) << name;
    }
}

TEST(BatteryCombine, ChargingChargeBasedUsbPdAndUnreadable) {
    PowerSupplyReading bat;
    bat.name = "BAT1";
    bat.type = "Battery";
    bat.status = "Charging";
    bat.energyNowWh = 30;
    bat.energyFullWh = 60;
    bat.energyDesignWh = 60;
    bat.powerW = 20;
    PowerSupplyReading usb;
    usb.name = "ucsi-source-psy-USBC000:001";
    usb.type = "USB";
    usb.online = true;
    usb.adapterMaxW = 65.0;
    metrics::BatteryMetrics b;
    combinePowerSupplies({bat, usb}, b);
    ASSERT_TRUE(b.present);
    EXPECT_EQ(b.percent, 50) << "from energy when capacity is missing";
    EXPECT_TRUE(b.charging);
    EXPECT_TRUE(b.pluggedIn);
    EXPECT_EQ(b.watts, 20.0);
    EXPECT_FALSE(b.systemWatts);
    EXPECT_EQ(b.timeRemainingMin, 90) << "30 Wh to go at 20 W";
    EXPECT_EQ(b.healthPct, 100.0);
    EXPECT_EQ(b.adapterWatts, 65);
    EXPECT_EQ(b.adapterName, "ucsi-source-psy-USBC000:001");

    // Full on the charger, kernel times preferred over our own estimate.
    bat.status = "Full";
    bat.capacityPct = 100;
    bat.powerW = 0.0;
    combinePowerSupplies({bat, usb}, b);
    EXPECT_TRUE(b.fullyCharged);
    EXPECT_FALSE(b.charging);
    EXPECT_FALSE(b.timeRemainingMin);

    // A battery that tells neither capacity nor energy: no invented level.
    PowerSupplyReading mute;
    mute.type = "Battery";
    mute.status = "Discharging";
    combinePowerSupplies({mute}, b);
    EXPECT_FALSE(b.present);
}

TEST(BatteryReader, ChargeCountersBecomeEnergy) {
    CapturedTree tree("vm");
    const std::string dir = "sys/class/power_supply/BAT0/";
    for (auto [file, value] : std::initializer_list<std::pair<const char*, const char*>>{
             {"type", "Battery"}, {"status", "Discharging"}, {"voltage_min_design", "11100000"},
             {"voltage_now", "11400000"}, {"charge_full_design", "4000000"}, {"charge_full", "3600000"},
             {"charge_now", "1800000"}, {"current_now", "1000000"}, {"temp", "305"}, {"health", "Good"}})
        tree.write(dir + file, value);
    BatteryReader reader(tree.root());
    metrics::BatteryMetrics b;
    reader.read(b);
    ASSERT_TRUE(b.present);
    EXPECT_EQ(b.percent, 50);
    EXPECT_DOUBLE_EQ(*b.healthPct, 90.0);
    EXPECT_NEAR(*b.watts, -11.4, 1e-9) << "1 A at 11.4 V";
    EXPECT_EQ(b.temperatureC, 30.5);
    EXPECT_EQ(b.condition, "Good");
    EXPECT_FALSE(b.pluggedIn);
}

TEST(SensorReader, LaptopCoretempFanAndNeighbours) {
    CapturedTree tree("laptop");
    SensorReader reader(tree.root());
    metrics::ThermalMetrics t;
    reader.read(t);
    EXPECT_EQ(t.cpuC, 62.0) << "the package reading";
    EXPECT_EQ(t.cpuMaxC, 66.0) << "the hottest core";
    EXPECT_FALSE(t.gpuC);
    EXPECT_EQ(t.source, "hwmon");
    EXPECT_EQ(t.fanCount, 1);
    ASSERT_EQ(t.fans.size(), 1u);
    EXPECT_EQ(t.fans[0].rpm, 2900);
    EXPECT_FALSE(t.fans[0].maxRpm);
    EXPECT_EQ(t.state, metrics::ThermalState::nominal);
    auto find = [&](const std::string& name) {
        return std::find_if(t.sensors.begin(), t.sensors.end(), [&](const auto& s) { return s.name == name; });
    };
    ASSERT_NE(find("nvme Composite"), t.sensors.end());
    EXPECT_EQ(find("nvme Composite")->group, SensorGroup::storage);
    EXPECT_EQ(find("nvme Composite")->celsius, 38.85);
    EXPECT_EQ(find("acpitz temp1")->group, SensorGroup::board);
    EXPECT_EQ(find("coretemp Core 16")->celsius, 59.0) << "temp10 sorts after temp3";
    EXPECT_EQ(t.hottestC(), 66.0);

    // Heat: the hottest core nears the 100 °C crit.
    tree.write("sys/class/hwmon/hwmon4/temp3_input", "95000");
    reader.read(t);
    EXPECT_EQ(t.state, metrics::ThermalState::serious);
    tree.write("sys/class/hwmon/hwmon4/temp3_input", "99000");
    reader.read(t);
    EXPECT_EQ(t.state, metrics::ThermalState::critical);
    tree.write("sys/class/hwmon/hwmon4/temp3_input", "96000");
    reader.read(t);
    EXPECT_EQ(t.state, metrics::ThermalState::critical) << "left only 3 °C below the enter level";
    tree.write("sys/class/hwmon/hwmon4/temp3_input", "garbage");
    tree.write("sys/class/hwmon/hwmon4/temp1_input", "-273150");
    reader.read(t);
    EXPECT_EQ(t.cpuC, 60.0) << "bad readings are skipped; Core 0 stands in";
}

TEST(SensorReader, AmdDesktopAndBareVm) {
    CapturedTree amd("amd-desktop");
    SensorReader reader(amd.root());
    metrics::ThermalMetrics t;
    reader.read(t);
    EXPECT_EQ(t.cpuC, 49.5) << "Tctl over the CCD reading";
    EXPECT_EQ(t.gpuC, 44.0) << "amdgpu edge";
    EXPECT_EQ(t.fanCount, 2);
    ASSERT_EQ(t.fans.size(), 2u);
    EXPECT_EQ(t.fans[0].rpm, 0) << "a stopped GPU fan is a reading";
    EXPECT_EQ(t.fans[1].minRpm, 200);
    EXPECT_EQ(t.fans[1].maxRpm, 2000);
    for (const auto& s : t.sensors) EXPECT_GT(s.celsius, -40) << s.name;

    CapturedTree vm("vm");
    SensorReader bare(vm.root());
    metrics::ThermalMetrics none;
    bare.read(none);
    EXPECT_TRUE(none.sensors.empty());
    EXPECT_FALSE(none.cpuC);
    EXPECT_FALSE(none.hottestC());
    EXPECT_FALSE(none.fanCount);
    EXPECT_FALSE(none.source);
}

TEST(SensorReader, ThermalZonesStandInWithoutHwmon) {
    CapturedTree tree("vm");
    tree.write("sys/class/thermal/thermal_zone0/type", "x86_pkg_temp");
    tree.write("sys/class/thermal/thermal_zone0/temp", "71000");
    tree.write("sys/class/thermal/thermal_zone0/trip_point_0_type", "passive");
    tree.write("sys/class/thermal/thermal_zone0/trip_point_0_temp", "90000");
    tree.write("sys/class/thermal/thermal_zone0/trip_point_1_type", "critical");
    tree.write("sys/class/thermal/thermal_zone0/trip_point_1_temp", "80000");
    tree.write("sys/class/thermal/thermal_zone1/type", "acpitz");
    tree.write("sys/class/thermal/thermal_zone1/temp", "40000");
    SensorReader reader(tree.root());
    metrics::ThermalMetrics t;
    reader.read(t);
    EXPECT_EQ(t.source, "thermal_zone");
    EXPECT_EQ(t.cpuC, 71.0);
    EXPECT_EQ(t.sensors.size(), 2u);
    EXPECT_EQ(t.state, metrics::ThermalState::serious) << "9 °C under its 80 °C critical trip";
    EXPECT_FALSE(t.fanCount) << "no hwmon: fans unknown, not zero";
}

TEST(GpuReader, AmdFromSysfsOthersAbsent) {
    CapturedTree amd("amd-desktop");
    GpuReader reader(amd.root());
    auto g = reader.read(1.0);
    ASSERT_TRUE(g);
    EXPECT_EQ(g->name, "AMD Radeon RX 6600/6600 XT/6600M");
    EXPECT_DOUBLE_EQ(g->utilization, 0.37);
    EXPECT_EQ(g->memoryUsedBytes, 1610612736u);
    amd.write("sys/class/drm/card0/device/gpu_busy_percent", "101");
    EXPECT_FALSE(reader.read(2.0)) << "out of range is no reading";

    CapturedTree laptop("laptop");
    GpuReader intel(laptop.root());
    EXPECT_FALSE(intel.read(1.0)) << "no readable DRM clients";
    CapturedTree vm("vm");
    EXPECT_FALSE(GpuReader(vm.root()).read(1.0));
}

TEST(GpuReader, IntelBusyTimeFromFdinfo) {
    CapturedTree tree("laptop");
    const std::string fdinfo = "drm-driver:\ti915\ndrm-client-id:\t41\ndrm-engine-render:\t%llu ns\n";
    auto info = [&](unsigned long long ns) {
        char buf[160];
        std::snprintf(buf, sizeof buf, fdinfo.c_str(), ns);
        return std::string(buf);
    };
    tree.write("proc/3301/fdinfo/5", info(1'000'000'000));
    tree.write("proc/3301/fdinfo/6", info(1'000'000'000));  // the same client through a dup'd fd
    tree.write("proc/3301/fdinfo/7", "pos:\t0\nflags:\t02\n");
    GpuReader reader(tree.root());
    EXPECT_FALSE(reader.read(10.0)) << "busy time needs two readings";
    tree.write("proc/3301/fdinfo/5", info(1'500'000'000));
    tree.write("proc/3301/fdinfo/6", info(1'500'000'000));
    auto g = reader.read(12.0);
    ASSERT_TRUE(g);
    EXPECT_DOUBLE_EQ(g->utilization, 0.25) << "0.5 s busy in 2 s, counted once";
}

TEST(NetworkReader, LaptopWifiWithVpn) {
    CapturedTree tree("laptop");
    NetworkReader reader(tree.root());
    metrics::NetworkMetrics n;
    EXPECT_FALSE(reader.read(n, 20.0));
    EXPECT_EQ(n.interface, "wlp0s20f3");
    EXPECT_EQ(n.interfaceKind, InterfaceKind::wifi);
    EXPECT_EQ(n.router, "192.168.1.1");
    EXPECT_EQ(n.localIP, "192.168.1.23");
    EXPECT_TRUE(n.online);
    EXPECT_EQ(n.vpnInterface, "wg0");
    ASSERT_TRUE(n.wifi);
    EXPECT_EQ(n.wifi->rssiDbm, -56);
    EXPECT_FALSE(n.wifi->noiseDbm) << "-256 is the driver's no-reading value";
    EXPECT_EQ(n.wifi->qualityPercent, 77);
    EXPECT_FALSE(n.wifi->ssid);
    EXPECT_EQ(n.totalDownBytes, 9000000000ull) << "physical interfaces only";
    tree.advance();
    ASSERT_TRUE(reader.read(n, 22.0));
    EXPECT_DOUBLE_EQ(n.downBps, 1e6) << "wg0, docker0 and lo left out";
    EXPECT_DOUBLE_EQ(n.upBps, 250000);
}

TEST(NetworkReader, WrappedCounterAndIpv6OnlyVm) {
    CapturedTree amd("amd-desktop");
    NetworkReader reader(amd.root());
    metrics::NetworkMetrics n;
    reader.read(n, 1.0);
    amd.advance();
    ASSERT_TRUE(reader.read(n, 2.0));
    EXPECT_EQ(n.downBps, 0.0) << "the wrapped receive counter adds nothing";
    EXPECT_EQ(n.upBps, 4000.0);
    EXPECT_EQ(n.interfaceKind, InterfaceKind::wired);
    EXPECT_FALSE(n.wifi);
    EXPECT_FALSE(n.vpnInterface);

    CapturedTree vm("vm");
    NetworkReader v6(vm.root());
    v6.read(n = {}, 1.0);
    EXPECT_EQ(n.interface, "eth0");
    EXPECT_EQ(n.router, "fe80::1");
    EXPECT_FALSE(n.localIP);
    EXPECT_TRUE(n.online);
    EXPECT_EQ(n.totalDownBytes, 5000u);
}

TEST(NetworkReader, NoDefaultRouteIsOffline) {
    CapturedTree tree("laptop");
    tree.write("proc/net/route", "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n");
    NetworkReader reader(tree.root());
    metrics::NetworkMetrics n;
    reader.read(n, 1.0);
    EXPECT_FALSE(n.online);
    EXPECT_FALSE(n.interface);
    EXPECT_FALSE(n.router);
    EXPECT_FALSE(n.interfaceKind);

    CapturedTree down("laptop");
    down.write("sys/class/net/wlp0s20f3/carrier", "0");
    NetworkReader noCarrier(down.root());
    noCarrier.read(n, 1.0);
    EXPECT_EQ(n.interface, "wlp0s20f3");
    EXPECT_FALSE(n.online) << "a default route without carrier";
}

TEST(NetworkParsers, RoutesTrieWirelessAndAddresses) {
    const auto routes = parseRoutes("Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\n"
                                    "eth0\t00000000\t0100A8C0\t0003\t0\t0\t600\t00000000\n"
                                    "wlan0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\n"
                                    "bad\tZZZ\n"
                                    "down0\t00000000\t0102A8C0\t0002\t0\t0\t1\t00000000\n");
    ASSERT_EQ(routes.size(), 3u);
    auto d = defaultRoute(routes);
    ASSERT_TRUE(d);
    EXPECT_EQ(d->interface, "wlan0") << "lowest metric among routes that are up";
    EXPECT_EQ(routeAddressText(d->gateway), "192.168.1.1");
    EXPECT_EQ(parseLocalAddresses("|-- 10.1.2.3\n   /32 host LOCAL\n|-- 10.1.2.3\n /32 host LOCAL\n|-- 300.1.1.1\n /32 host LOCAL\n"),
              (std::vector<std::uint32_t>{0x0A010203}));
    EXPECT_FALSE(parseWireless("wlan0: 0000 54. -56. -256", "wlan1"));
    auto w = parseWireless("wlan0: 0000 0. 0. 0.", "wlan0");
    ASSERT_TRUE(w);
    EXPECT_FALSE(w->qualityPercent);
    EXPECT_FALSE(w->rssiDbm);
    auto v6 = parseIpv6DefaultRoute("00000000000000000000000000000000 00 00000000000000000000000000000000 00 "
                                    "20010db8000000000000000000000001 00000064 00000001 00000000 00000003 eth0\n");
    ASSERT_TRUE(v6);
    EXPECT_EQ(v6->gateway, "2001:db8::1");
}

TEST(UserNames, PasswdParsingAndRefresh) {
    const auto names = UserNames::parse("root:x:0:0::/root:/bin/sh\n#c\nbroken\nbob:x:nan:1::/:/bin/sh\n"
                                        "alice:x:1000:1000::/home/alice:/bin/sh\nalias:x:1000:1000::/:/bin/sh\n:x:5:5::/:\n");
    EXPECT_EQ(names.size(), 2u);
    EXPECT_EQ(names.at(0), "root");
    EXPECT_EQ(names.at(1000), "alice") << "the first entry for a uid wins";

    CapturedTree tree("laptop");
    UserNames users(tree.root());
    EXPECT_EQ(users.nameOf(1000), "alice");
    EXPECT_FALSE(users.nameOf(1001));
    tree.write("etc/passwd", "carol:x:1001:1001::/home/carol:/bin/sh\n");
    users.refresh();
    EXPECT_EQ(users.nameOf(1001), "carol") << "a changed file is read again";
    std::filesystem::remove(tree.path("etc/passwd"));
    users.refresh();
    EXPECT_FALSE(users.nameOf(1001));
}

TEST(DisplayName, TruncatedCommUsesArgv0) {
    EXPECT_EQ(displayName("gnome-software-", std::string("/usr/bin/gnome-software-service\0--x\0", 36)), "gnome-software-service");
    EXPECT_EQ(displayName("bash", std::string("/bin/bash\0", 10)), "bash");
    EXPECT_EQ(displayName("kworker/0:1-eve", ""), "kworker/0:1-eve");
    EXPECT_EQ(displayName("systemd-journal", "something-else"), "systemd-journal") << "argv[0] that does not extend comm";
    EXPECT_EQ(displayName("postgres: walwr", "postgres: walwriter"), "postgres: walwr");
}

TEST(MountInfo, EscapesFiltersAndFlags) {
    const auto mounts = parseMountInfo(
        "30 26 8:1 / /media/alice/My\\040Stick ro,nosuid shared:50 master:3 - exfat /dev/sda1 rw\n"
        "garbage\n"
        "31 26 0:50 / /mnt/nas rw - nfs4 nas:/export rw\n");
    ASSERT_EQ(mounts.size(), 2u);
    EXPECT_EQ(mounts[0].mountPoint, "/media/alice/My Stick");
    EXPECT_TRUE(mounts[0].readOnly);
    EXPECT_EQ(mounts[0].fsType, "exfat") << "after several optional fields";
    EXPECT_TRUE(isUserVolume(mounts[0]));
    EXPECT_TRUE(isUserVolume(mounts[1]));
    EXPECT_FALSE(isUserVolume({"0:5", "/", "/dev", "devtmpfs", "devtmpfs", false}));
    EXPECT_FALSE(isUserVolume({"7:0", "/", "/snap/core22/1", "squashfs", "/dev/loop0", true}));
    EXPECT_TRUE(isUserVolume({"0:30", "/", "/", "overlay", "overlay", false})) << "the root, whatever it is";
}

TEST(VolumeReader, LaptopVolumesFromMountinfo) {
    CapturedTree tree("laptop");
    const std::string root = tree.root();
    // Generous waits: the first read lists what has answered, and a busy machine may be slow.
    VolumeReader reader(
        root,
        [&](const std::string& path) -> SpaceAnswer {
            if (path == root + "/boot/efi") return {SpaceReading{500'000'000, 400'000'000}};
            return {SpaceReading{1'000'000'000'000, 250'000'000'000}};
        },
        std::chrono::seconds(5), std::chrono::seconds(2), std::chrono::seconds(5));
    metrics::DiskMetrics d;
    reader.read(d);
    ASSERT_EQ(d.volumes.size(), 4u);
    EXPECT_EQ(d.volumes[0].path, "/");
    EXPECT_TRUE(d.volumes[0].isRoot);
    EXPECT_TRUE(d.volumes[0].isInternal);
    EXPECT_EQ(d.volumes[0].name, "Root");
    EXPECT_EQ(d.volumes[1].path, "/boot/efi");
    EXPECT_EQ(d.volumes[1].totalBytes, 500'000'000);
    EXPECT_EQ(d.volumes[2].path, "/media/alice/My Stick");
    EXPECT_TRUE(d.volumes[2].isRemovable) << "on a USB bus";
    EXPECT_FALSE(d.volumes[2].isInternal);
    EXPECT_EQ(d.volumes[2].name, "STICK") << "its filesystem label";
    EXPECT_EQ(d.volumes[3].path, "/mnt/nas");
    EXPECT_FALSE(d.volumes[3].isInternal) << "a network share";
    ASSERT_TRUE(d.rootVolume());
    EXPECT_EQ(d.rootVolume()->availableBytes, 250'000'000'000);
}

// A share whose server dropped the connection is shown as unavailable; a mount that isn't
// ours to read (another user's) is left out.
TEST(VolumeReader, FailingStorageIsUnavailableAndARefusalIsLeftOut) {
    for (int error : {EIO, ESTALE, ENOTCONN, EHOSTDOWN, ETIMEDOUT})
        EXPECT_TRUE(meansStorageUnavailable(error)) << std::strerror(error);
    for (int error : {EACCES, EPERM, ENOENT, EINVAL, 0})
        EXPECT_FALSE(meansStorageUnavailable(error)) << std::strerror(error);

    CapturedTree tree("laptop");
    const std::string root = tree.root();
    VolumeReader reader(
        root,
        [&](const std::string& path) -> SpaceAnswer {
            if (path == root + "/mnt/nas") return {std::nullopt, true};
            if (path == root + "/media/alice/My Stick") return {std::nullopt, false};
            return {SpaceReading{1'000'000'000, 250'000'000}};
        },
        std::chrono::seconds(5), std::chrono::seconds(2), std::chrono::seconds(5));
    metrics::DiskMetrics d;
    reader.read(d);
    std::vector<std::string> paths;
    for (const auto& v : d.volumes) paths.push_back(v.path);
    EXPECT_EQ(paths, (std::vector<std::string>{"/", "/boot/efi", "/mnt/nas"}));
    ASSERT_EQ(d.volumes.size(), 3u);
    EXPECT_FALSE(d.volumes[2].totalBytes || d.volumes[2].availableBytes) << "never 0 B free";
}

TEST(PciIds, NamesAndFdinfo) {
    const char* ids = "1002  Advanced Micro Devices, Inc. [AMD/ATI]\n\t73ff  Navi 23 [Radeon RX 6600/6600 XT/6600M]\n"
                      "\t\t1002 0e4d  Sub\n10de  NVIDIA Corporation\n\t2484  GA104 [GeForce RTX 3070]\n";
    EXPECT_EQ(pciName(ids, 0x10de, 0x2484), "NVIDIA GeForce RTX 3070");
    EXPECT_FALSE(pciName(ids, 0x10de, 0x73ff)) << "device ids belong to their vendor";
    EXPECT_FALSE(pciName("", 0x1002, 0x73ff));
    std::uint64_t client = 0;
    EXPECT_EQ(parseDrmFdinfo("drm-driver:\txe\ndrm-client-id:\t3\ndrm-engine-render:\t5 ns\n", "xe", client), 5u);
    EXPECT_EQ(client, 3u);
    EXPECT_FALSE(parseDrmFdinfo("drm-driver:\tamdgpu\ndrm-client-id:\t3\ndrm-engine-render:\t5 ns\n", "i915", client));
    EXPECT_FALSE(parseDrmFdinfo("drm-driver:\ti915\ndrm-client-id:\t3\ndrm-engine-render:\t5 us\n", "i915", client));
}
