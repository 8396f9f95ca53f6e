// A machine that misbehaves: files that fail or come up empty, processes that vanish while they
// are read, volumes whose file system never answers. Nothing may read as zero, and no sample may
// wait for a hung volume.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>

#include "metrics/MetricsJson.h"
#include "platform/linux/LinuxMetricsProvider.h"
#include "platform/linux/VolumeReader.h"

#include "TreeFixture.h"

using namespace trotlet;
using namespace trotlet::platform;
using metrics::MetricKinds;
using metrics::MetricsSnapshot;
using namespace std::chrono;

namespace {

enum class Fault {
    empty,    // the attribute exists but says nothing
    ioError,  // reading fails with EIO, as a driver does when its device stops answering
    gone,     // removed while its directory is still listed
};

void inflict(const CapturedTree& tree, const std::string& file, Fault fault) {
    const std::string path = tree.path(file);
    if (fault == Fault::empty) return tree.write(file, "");
    std::filesystem::remove(path);
    // Reading /proc/self/mem at offset 0 fails with EIO: nothing is mapped at address 0.
    if (fault == Fault::ioError) std::filesystem::create_symlink("/proc/self/mem", path);
}

MetricsSnapshot sampleTree(const std::string& root, MetricKinds kinds) {
    LinuxMetricsProvider provider({root, 0});
    provider.setFullProcessList(true);
    return provider.sample(kinds, system_clock::now());
}

bool hasSensor(const MetricsSnapshot& s, const std::string& name) {
    return std::any_of(s.thermal.sensors.begin(), s.thermal.sensors.end(),
                       [&](const auto& t) { return t.name == name; });
}

bool listsPid(const MetricsSnapshot& s, int pid) {
    return s.processes.all && std::any_of(s.processes.all->begin(), s.processes.all->end(),
                                          [&](const auto& r) { return r.pid == pid; });
}

struct AtExit {
    std::function<void()> run;
    ~AtExit() { run(); }
};

double millisecondsSince(steady_clock::time_point start) {
    return duration<double, std::milli>(steady_clock::now() - start).count();
}

}  // namespace

TEST(MisbehavingMachine, FailingOrEmptyFilesAreAbsentNeverZero) {
    struct Rule {
        const char* what;
        const char* tree;
        MetricKinds kinds;
        std::function<bool(const MetricsSnapshot&)> holds;
    };
    const Rule coreStandsIn{
        "the package is left out and a core stands in", "laptop", MetricKinds::sensors,
        [](auto& s) { return !hasSensor(s, "coretemp Package id 0") && s.thermal.cpuC == 60.0; }};
    const Rule noCpuTemperature{"no CPU temperature at all", "laptop", MetricKinds::sensors,
                                [](auto& s) { return !s.thermal.cpuC && !s.thermal.cpuMaxC; }};
    const Rule fanWithoutSpeed{
        "a fan without a speed, not a machine without fans", "laptop", MetricKinds::sensors,
        [](auto& s) { return s.thermal.fans.empty() && s.thermal.fanCount == 1; }};
    const Rule noCycles{"the battery without its cycle count", "laptop", MetricKinds::battery,
                        [](auto& s) { return s.battery.percent == 76 && !s.battery.cycles; }};
    const Rule levelFromEnergy{"the level from the energy counters", "laptop", MetricKinds::battery,
                               [](auto& s) { return s.battery.present && s.battery.percent > 0; }};
    const Rule noBattery{"no battery level rather than 0 %", "laptop", MetricKinds::battery,
                         [](auto& s) { return !s.battery.present && !s.battery.watts; }};
    const Rule noGpu{"no GPU load rather than 0 %", "amd-desktop", MetricKinds::gpu,
                     [](auto& s) { return !s.gpu; }};
    const Rule pidLeftOut{"the process left out", "laptop", MetricKinds::processes, [](auto& s) {
                              return !listsPid(s, 3301) && s.processes.totalCount == 5;
                          }};
    const char* package = "sys/class/hwmon/hwmon4/temp1_input";
    const char* fan = "sys/class/hwmon/hwmon3/fan1_input";
    const char* busy = "sys/class/drm/card0/device/gpu_busy_percent";
    const char* capacity = "sys/class/power_supply/BAT0/capacity";
    struct Case {
        std::vector<const char*> files;
        Fault fault;
        const Rule& rule;
    };
    const Case cases[] = {
        {{package}, Fault::ioError, coreStandsIn},
        {{package}, Fault::empty, coreStandsIn},
        {{package, "sys/class/hwmon/hwmon4/temp2_input", "sys/class/hwmon/hwmon4/temp3_input",
          "sys/class/hwmon/hwmon4/temp10_input"},
         Fault::ioError,
         noCpuTemperature},
        {{fan}, Fault::ioError, fanWithoutSpeed},
        {{fan}, Fault::empty, fanWithoutSpeed},
        {{"sys/class/power_supply/BAT0/cycle_count"}, Fault::ioError, noCycles},
        {{capacity}, Fault::empty, levelFromEnergy},
        {{capacity}, Fault::ioError, levelFromEnergy},
        {{capacity, "sys/class/power_supply/BAT0/energy_now"}, Fault::empty, noBattery},
        {{busy}, Fault::ioError, noGpu},
        {{busy}, Fault::empty, noGpu},
        {{"proc/3301/stat"}, Fault::ioError, pidLeftOut},
        {{"proc/3301/stat"}, Fault::empty, pidLeftOut},
        {{"proc/3301/stat"}, Fault::gone, pidLeftOut},  // gone between listing and reading
    };
    for (const Case& c : cases) {
        CapturedTree tree(c.rule.tree);
        for (const char* file : c.files) inflict(tree, file, c.fault);
        const MetricsSnapshot s = sampleTree(tree.root(), c.rule.kinds);
        EXPECT_TRUE(c.rule.holds(s)) << c.files.front() << " (fault " << int(c.fault)
                                     << "): expected " << c.rule.what << "\n"
                                     << metrics::encode(s).dump(1);
    }
}

TEST(MisbehavingMachine, ProcessThatExitsBetweenSamplesIsDropped) {
    // A real child whose /proc entry the tree links to: the reader keeps its stat file open, the
    // child exits and is reaped, and the next read meets ESRCH while the tree still lists it.
    CapturedTree tree("laptop");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    const std::string dir = tree.path("proc/" + std::to_string(child));
    std::filesystem::create_directories(dir);
    std::filesystem::create_symlink("/proc/" + std::to_string(child) + "/stat", dir + "/stat");
    LinuxMetricsProvider provider({tree.root(), 0});
    provider.setFullProcessList(true);
    const auto before = provider.sample(MetricKinds::processes, system_clock::now());
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const auto after = provider.sample(MetricKinds::processes, system_clock::now());
    EXPECT_TRUE(listsPid(before, child));
    EXPECT_EQ(before.processes.totalCount, 7);
    EXPECT_FALSE(listsPid(after, child));
    EXPECT_EQ(after.processes.totalCount, 6);
}

TEST(MisbehavingMachine, HungVolumeNeverHoldsUpAReadAndIsRetried) {
    // /mnt/nas hangs in statvfs whenever the gate is shut, from the first read on and again after
    // it has answered. Every read is timed: none may wait for the time-out.
    CapturedTree tree("laptop");
    const std::string root = tree.root();
    struct Share {
        std::mutex m;
        std::condition_variable cv;
        bool shut = true;
        std::atomic<std::int64_t> freeBytes{50};
    };
    auto share = std::make_shared<Share>();  // workers stuck in a call may outlive the test
    const milliseconds timeout(500), bound(200);
    VolumeReader reader(
        root,
        [share, nas = root + "/mnt/nas"](const std::string& path) -> std::optional<SpaceReading> {
            if (path == nas) {
                std::unique_lock lock(share->m);
                share->cv.wait(lock, [&] { return !share->shut; });
            }
            return SpaceReading{100, share->freeBytes};
        },
        timeout, milliseconds(0));
    auto setShut = [&](bool shut) {
        {
            std::lock_guard lock(share->m);
            share->shut = shut;
        }
        share->cv.notify_all();
    };
    const AtExit openAtTheEnd{[&] { setShut(false); }};  // lets the stuck workers finish
    metrics::DiskMetrics d;
    double slowest = 0;
    auto timedRead = [&] {
        const auto start = steady_clock::now();
        reader.read(d);
        slowest = std::max(slowest, millisecondsSince(start));
    };
    auto nas = [&]() -> const metrics::VolumeInfo* {
        for (const auto& v : d.volumes)
            if (v.path == "/mnt/nas") return &v;
        return nullptr;
    };
    auto pollUntil = [&](const std::function<bool()>& done) {
        for (const auto start = steady_clock::now(); steady_clock::now() - start < seconds(10);) {
            timedRead();
            if (done()) return true;
            std::this_thread::sleep_for(milliseconds(20));
        }
        return false;
    };

    timedRead();
    EXPECT_FALSE(nas()) << "not yet known to hang";
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round == 0 ? "hung from the start" : "hung after answering");
        ASSERT_TRUE(pollUntil([&] { return nas() && !nas()->totalBytes; }))
            << "listed as unavailable once its call outlives the time-out";
        EXPECT_FALSE(nas()->availableBytes);
        share->freeBytes = 60 + round;
        EXPECT_TRUE(pollUntil([&] { return d.rootVolume()->availableBytes == 60 + round; }))
            << "the others stay fresh meanwhile";
        setShut(false);
        EXPECT_TRUE(pollUntil([&] { return nas() && nas()->availableBytes == 60 + round; }))
            << "asked again once its call returns";
        setShut(true);
    }
    EXPECT_LT(slowest, double(bound.count())) << "a read waited for the hung share";
    std::cout << "[ figures  ] slowest read with a hung share: " << slowest << " ms\n";
}
