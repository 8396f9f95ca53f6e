// Readers of /proc files against captured trees of a laptop, an AMD desktop and a bare VM.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "metrics/MetricsJson.h"
#include "platform/linux/CpuReader.h"
#include "platform/linux/DiskReader.h"
#include "platform/linux/LinuxMetricsProvider.h"
#include "platform/linux/MemoryReader.h"
#include "platform/linux/ProcessReader.h"
#include "platform/linux/SystemReader.h"
#include "TreeFixture.h"

using namespace trotlet;
using namespace trotlet::platform;

TEST(CpuReader, LaptopLoadsFromTickDeltasWithHybridSplit) {
    CapturedTree tree("laptop");
    CpuReader reader(tree.root());
    metrics::CPUMetrics cpu;
    EXPECT_FALSE(reader.read(cpu)) << "the first reading has nothing to compare with";
    EXPECT_EQ(cpu.total, 0);
    tree.advance();
    ASSERT_TRUE(reader.read(cpu));
    // All CPUs: user +7000, system +2400, idle +4000, iowait +600 ticks.
    EXPECT_NEAR(cpu.total, 9400.0 / 14000, 1e-12);
    EXPECT_NEAR(cpu.user, 7000.0 / 14000, 1e-12);
    EXPECT_NEAR(cpu.system, 2400.0 / 14000, 1e-12);
    ASSERT_EQ(cpu.perCore.size(), 12u);
    EXPECT_NEAR(cpu.perCore[0], 1100.0 / 1200, 1e-12);
    EXPECT_EQ(cpu.perCore[9], 0.0) << "a core that only idled";
    EXPECT_NEAR(cpu.perCore[11], 800.0 / 1800, 1e-12);
    EXPECT_EQ(cpu.loadAvg, (std::vector<double>{0.52, 0.61, 0.70}));
    EXPECT_EQ(cpu.threadCount, 1432);
    EXPECT_EQ(cpu.performanceCores().size(), 4u);
    ASSERT_EQ(cpu.efficiencyCores().size(), 8u);
    EXPECT_EQ(cpu.efficiencyCores().front().index, 4);
}

TEST(CpuReader, CountersGoingBackwardsGiveNoLoad) {
    CapturedTree tree("vm");
    CpuReader reader(tree.root());
    metrics::CPUMetrics cpu;
    reader.read(cpu);
    tree.advance();  // the counters reset (a restored snapshot)
    EXPECT_FALSE(reader.read(cpu));
    EXPECT_EQ(cpu.total, 0);
    EXPECT_TRUE(cpu.perCore.empty());
    EXPECT_TRUE(cpu.efficiencyCores().empty());
    EXPECT_EQ(cpu.performanceCores().size(), 0u);
}

TEST(CpuReader, MissingProcStatIsNoReading) {
    CapturedTree tree("vm");
    std::filesystem::remove(tree.path("proc/stat"));
    std::filesystem::remove(tree.path("proc/loadavg"));
    CpuReader reader(tree.root());
    metrics::CPUMetrics cpu;
    EXPECT_FALSE(reader.read(cpu));
    EXPECT_FALSE(reader.read(cpu));
    EXPECT_TRUE(cpu.loadAvg.empty());
    EXPECT_FALSE(cpu.threadCount);
}

TEST(MemoryReader, LaptopMappingAgreesWithFree) {
    CapturedTree tree("laptop");
    MemoryReader reader(tree.root());
    metrics::MemoryMetrics m;
    ASSERT_TRUE(reader.read(m));
    const std::uint64_t k = 1024;
    EXPECT_EQ(m.total, 16093452 * k);
    EXPECT_EQ(m.used, (16093452 - 9876544) * k);  // free's "used": total - available
    EXPECT_EQ(m.cached, (412300 + 5600120 + 500000) * k);
    EXPECT_EQ(m.free, 3211040 * k);
    EXPECT_EQ(m.wired, (300000 + 24000 + 60000 + 120000) * k);
    EXPECT_EQ(m.compressed, 2621440u) << "zram's mem_used_total";
    EXPECT_EQ(m.app + m.wired + m.compressed, m.used);
    EXPECT_EQ(m.swapTotal, 8388604 * k);
    EXPECT_EQ(m.swapUsed, (8388604 - 8126460) * k);
    EXPECT_EQ(m.freePercent, 61);
    EXPECT_EQ(m.pressure, metrics::MemoryPressure::warning) << "some avg10 12.5 % >= 10 %";
}

TEST(MemoryReader, OldKernelWithoutAvailableOrPressure) {
    CapturedTree tree("vm");
    MemoryReader reader(tree.root());
    metrics::MemoryMetrics m;
    ASSERT_TRUE(reader.read(m));
    EXPECT_EQ(m.used, (2048000 - 512000 - 64000 - 384000) * 1024ull);
    EXPECT_FALSE(m.freePercent) << "no MemAvailable: not guessed";
    EXPECT_EQ(m.pressure, metrics::MemoryPressure::unknown) << "no PSI";
    EXPECT_EQ(m.swapTotal, 0u);

    CapturedTree amd("amd-desktop");
    MemoryReader amdReader(amd.root());
    ASSERT_TRUE(amdReader.read(m));
    EXPECT_EQ(m.compressed, 65536 * 1024ull) << "zswap pool";
    EXPECT_EQ(m.pressure, metrics::MemoryPressure::normal);
}

TEST(MemoryReader, UnreadableMeminfoFailsAndBadLinesAreSkipped) {
    CapturedTree tree("vm");
    tree.write("proc/meminfo", "MemTotal: lots kB\nMemFree: 10 kB\n");
    MemoryReader reader(tree.root());
    metrics::MemoryMetrics m;
    EXPECT_FALSE(reader.read(m)) << "without a total there is no memory group";
    tree.write("proc/meminfo", "MemTotal: 99999999999999999999 kB\n");
    EXPECT_FALSE(reader.read(m)) << "an overflowing total is not a reading";
    std::filesystem::remove(tree.path("proc/meminfo"));
    EXPECT_FALSE(reader.read(m));
}

TEST(DiskIOReader, WholeDisksOnlyAndRatesFromSectors) {
    CapturedTree tree("laptop");
    DiskIOReader reader(tree.root());
    metrics::DiskMetrics d;
    EXPECT_FALSE(reader.read(d, 100.0));
    // nvme0n1 and sda: not the partitions, loop0, dm-0 (over nvme) or zram0.
    EXPECT_EQ(d.totalReadBytes, (8000000ull + 400000) * 512);
    EXPECT_EQ(d.totalWrittenBytes, (16000000ull + 8000) * 512);
    EXPECT_FALSE(d.readBps);
    tree.advance();
    ASSERT_TRUE(reader.read(d, 102.0));
    EXPECT_DOUBLE_EQ(*d.readBps, 20000.0 * 512 / 2);
    EXPECT_DOUBLE_EQ(*d.writeBps, 40000.0 * 512 / 2);
}

TEST(DiskIOReader, CounterThatWentBackwardsAddsNothing) {
    CapturedTree tree("amd-desktop");
    DiskIOReader reader(tree.root());
    metrics::DiskMetrics d;
    reader.read(d, 10.0);
    tree.advance();
    ASSERT_TRUE(reader.read(d, 11.0));
    EXPECT_EQ(*d.readBps, 0.0) << "the reset disk's read counter gives no delta, never a huge one";
    EXPECT_EQ(d.totalReadBytes, 900000ull * 512) << "md0 is layered and not counted";
}

TEST(ProcStatParser, NamesWithSpacesAndParenthesesAndBadLines) {
    ProcStat s;
    ASSERT_TRUE(parseProcStat("4400 (a) b (c) S 1 4400 4400 0 -1 4194304 100 0 0 0 100 50 0 0 20 0 2 0 900000 "
                              "20000000 2000 18446744073709551615 1 1",
                              s));
    EXPECT_EQ(s.comm, "a) b (c");
    EXPECT_EQ(s.state, 'S');
    EXPECT_EQ(s.utime, 100u);
    EXPECT_EQ(s.stime, 50u);
    EXPECT_EQ(s.threads, 2);
    EXPECT_EQ(s.startTime, 900000u);
    EXPECT_EQ(s.rssPages, 2000);
    ASSERT_TRUE(parseProcStat("7 (x) R 1 1 1 0 -1 0 0 0 0 0 18446744073709551615 0 0 0 20 0 1 0 1 1 1", s));
    EXPECT_EQ(s.utime, 18446744073709551615u) << "huge counters parse";
    for (const char* bad : {"", "12 no parentheses here", "5 (x) S 1 2", "5 (x) S 1 1 1 0 -1 0 0 0 0 0 "
                            "99999999999999999999 0 0 0 20 0 1 0 1 1 1", ") weird (", "9 (y) SS 1 1 1 0 -1 0 0 0 0 0 1 1 0 0 20 0 1 0 1 1 1"})
        EXPECT_FALSE(parseProcStat(bad, s)) << bad;
}

TEST(ProcessReader, LaptopTableWithDeltasNamesAndVanishedPids) {
    CapturedTree tree("laptop");
    ProcessReader::Options o;
    o.root = tree.root();
    o.selfPid = 4400;
    o.selfUid = ::getuid();
    o.ticksPerSecond = 100;
    o.pageSize = 4096;
    o.topCount = 3;
    ProcessReader reader(o);
    metrics::ProcessMetrics p;
    EXPECT_FALSE(reader.read(p, 50.0, false));
    EXPECT_EQ(p.totalCount, 6) << "1, 2, 3301, 4400, 5150, 6000; 6001 is malformed, self is not a PID";
    tree.advance();
    std::filesystem::remove_all(tree.path("proc/6000"));  // exited between the samples
    ASSERT_TRUE(reader.read(p, 52.0, true));
    EXPECT_EQ(p.totalCount, 5);
    ASSERT_EQ(p.topCPU.size(), 3u);
    EXPECT_EQ(p.topCPU[0].pid, 3301);
    EXPECT_DOUBLE_EQ(p.topCPU[0].cpuPercent, 400.0 / 2 / 100 * 100) << "400 ticks in 2 s at 100 Hz";
    EXPECT_EQ(p.topCPU[0].name, "Web Content");
    EXPECT_EQ(p.topCPU[0].memoryBytes, 151000ull * 4096);
    EXPECT_EQ(p.topCPU[0].threads, 31);
    EXPECT_EQ(p.topCPU[0].executablePath, "/usr/lib/firefox/firefox");
    EXPECT_EQ(p.topCPU[1].pid, 4400);
    EXPECT_EQ(p.topCPU[1].name, "a) b (c");
    EXPECT_DOUBLE_EQ(p.topCPU[1].cpuPercent, 25.0);
    EXPECT_FALSE(p.topCPU[1].canQuit) << "this process";
    ASSERT_EQ(p.topMemory.size(), 3u);
    EXPECT_EQ(p.topMemory[0].pid, 3301);
    EXPECT_EQ(p.topMemory[1].pid, 5150);
    EXPECT_EQ(p.topMemory[1].name, "gnome-software-service") << "comm cut at 15 characters, argv[0] completes it";
    ASSERT_TRUE(p.all);
    ASSERT_EQ(p.all->size(), 5u);
    const auto& kthreadd = (*p.all)[1];
    EXPECT_EQ(kthreadd.pid, 2);
    EXPECT_FALSE(kthreadd.canQuit) << "kernel thread";
    EXPECT_FALSE(kthreadd.executablePath);
    EXPECT_TRUE((*p.all)[0].canQuit == ((*p.all)[0].pid != o.selfPid)) << "own process";
    // Owners: the tree's files belong to whoever runs the test.
    const std::optional<std::string> owner = ::getuid() == 0 ? std::optional<std::string>("root")
                                            : ::getuid() == 1000 ? std::optional<std::string>("alice")
                                                                 : std::nullopt;
    EXPECT_EQ((*p.all)[0].user, owner);
    EXPECT_EQ((*p.all)[0].isPrivileged, ::getuid() == 0);
}

TEST(ProcessReader, ReusedPidStartsOver) {
    CapturedTree tree("laptop");
    ProcessReader::Options o;
    o.root = tree.root();
    ProcessReader reader(o);
    metrics::ProcessMetrics p;
    reader.read(p, 1.0, false);
    // PID 3301 now belongs to another program with a later start time and fewer ticks.
    tree.write("proc/3301/stat", "3301 (bash) S 1 3301 3301 0 -1 4194304 0 0 0 0 5 5 0 0 20 0 1 0 999999 1000 300 1 1 1");
    tree.write("proc/3301/cmdline", std::string("bash\0", 5));
    reader.read(p, 2.0, true);
    const auto it = std::find_if(p.all->begin(), p.all->end(), [](const auto& r) { return r.pid == 3301; });
    ASSERT_NE(it, p.all->end());
    EXPECT_EQ(it->name, "bash");
    EXPECT_EQ(it->cpuPercent, 0.0) << "no share from the old process's ticks";
}

TEST(ProcessReader, FewDescriptorsKeptStillReadsEverything) {
    CapturedTree tree("laptop");
    ProcessReader::Options o;
    o.root = tree.root();
    o.keptDescriptors = 1;
    ProcessReader reader(o);
    metrics::ProcessMetrics p;
    reader.read(p, 1.0, false);
    tree.advance();
    reader.read(p, 3.0, false);
    EXPECT_EQ(p.totalCount, 6);
    EXPECT_DOUBLE_EQ(p.topCPU[0].cpuPercent, 200.0);
}

TEST(SystemReader, ModelChipOsAndBootFromEachTree) {
    struct Case { const char* tree; const char* model; std::optional<std::string> modelName; const char* chip; const char* os; };
    const Case cases[] = {
        {"laptop", "21CB0045GE", "LENOVO ThinkPad T14s Gen 3", "12th Gen Intel(R) Core(TM) i5-1230U",
         "Debian GNU/Linux 12 (bookworm)"},
        {"amd-desktop", "MS-7C56", "Micro-Star International Co., Ltd. MS-7C56", "AMD Ryzen 7 5800X 8-Core Processor",
         "Fedora Linux 39 (Workstation Edition)"},
        {"vm", "Standard PC (Q35 + ICH9, 2009)", "QEMU Standard PC (Q35 + ICH9, 2009)", "QEMU Virtual CPU version 2.5+",
         "Alpine Linux 3.19.0"},
    };
    for (const auto& c : cases) {
        CapturedTree tree(c.tree);
        SystemReader reader(tree.root(), 100, 4096);
        metrics::SystemInfo s;
        reader.read(s, 10.0);
        EXPECT_EQ(s.model, c.model) << c.tree;
        EXPECT_EQ(s.modelName, c.modelName) << c.tree;
        EXPECT_EQ(s.chip, c.chip) << c.tree;
        EXPECT_EQ(s.osVersion, c.os) << c.tree;
        EXPECT_FALSE(s.selfCpuPercent) << "needs two readings";
        ASSERT_TRUE(s.selfMemoryBytes);
    }
    CapturedTree laptop("laptop");
    SystemReader reader(laptop.root(), 100, 4096);
    metrics::SystemInfo s;
    reader.read(s, 10.0);
    EXPECT_DOUBLE_EQ(s.uptimeSec, 93412.55);
    EXPECT_EQ(s.bootDate, metrics::fromUnixSeconds(1795000000));
    EXPECT_EQ(s.selfMemoryBytes, 12000ull * 4096);
    laptop.write("proc/self/stat", "777 (trotlet) S 1 777 777 0 -1 4194304 100 0 0 0 80 10 0 0 20 0 4 0 990100 5 12000 1 1");
    reader.read(s, 12.0);
    EXPECT_DOUBLE_EQ(*s.selfCpuPercent, 25.0) << "50 ticks in 2 s at 100 Hz";
}

TEST(SystemReader, NothingReadableStillGivesAModelAndOs) {
    const auto empty = std::filesystem::temp_directory_path() / "trotlet-empty-root";
    std::filesystem::create_directories(empty);
    SystemReader reader(empty.string());
    metrics::SystemInfo s;
    reader.read(s, 1.0);
    EXPECT_EQ(s.model, "Linux computer");
    EXPECT_EQ(s.osVersion, "Linux");
    EXPECT_FALSE(s.chip);
    EXPECT_FALSE(s.bootDate);
    EXPECT_FALSE(s.selfMemoryBytes);
    EXPECT_EQ(s.uptimeSec, 0);
}

TEST(LinuxMetricsProvider, FillsOnlyTheKindsAskedFor) {
    CapturedTree tree("amd-desktop");
    LinuxMetricsProvider provider({tree.root(), 0.0});
    const auto now = metrics::fromUnixSeconds(1795000100);
    auto s = provider.sample(metrics::MetricKinds::memory | metrics::MetricKinds::gpu, now);
    EXPECT_EQ(s.timestamp, now);
    EXPECT_GT(s.memory.total, 0u);
    ASSERT_TRUE(s.gpu);
    EXPECT_EQ(s.gpu->name, "AMD Radeon RX 6600/6600 XT/6600M");
    EXPECT_TRUE(s.cpu.perCore.empty());
    EXPECT_TRUE(s.thermal.sensors.empty());
    EXPECT_FALSE(s.processes.totalCount);
    EXPECT_TRUE(s.system.osVersion.empty());

    s = provider.sample(metrics::MetricKinds::all, now);
    EXPECT_TRUE(s.cpu.perCore.empty()) << "no tick passed in the captured tree since the baseline";
    tree.advance();
    s = provider.sample(metrics::MetricKinds::all, now);
    EXPECT_EQ(s.cpu.perCore.size(), 4u);
    EXPECT_DOUBLE_EQ(s.cpu.total, 0.75) << "600 of 800 ticks busy";
    EXPECT_FALSE(s.battery.present) << "a desktop";
    EXPECT_EQ(s.thermal.cpuC, 49.5);
    EXPECT_EQ(s.cpu.processCount, s.processes.totalCount);
    // The whole sample encodes and decodes.
    const auto back = metrics::decode<metrics::MetricsSnapshot>(metrics::encode(s));
    ASSERT_TRUE(back.value) << back.error;
}
