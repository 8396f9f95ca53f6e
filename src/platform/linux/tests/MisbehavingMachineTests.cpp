// A machine that misbehaves: files that fail or come up empty, processes that vanish while they
// are read, volumes whose file system never answers. Nothing may read as zero, and no sample may
// wait for a hung volume.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <sstream>
#include <thread>

#include "metrics/MetricsJson.h"
#include "platform/linux/LinuxMetricsProvider.h"
#include "platform/linux/VolumeReader.h"

#include "TreeFixture.h"

#if TROTLET_HAVE_FUSE3
#include "HungFuseShare.h"
#endif

using namespace trotlet;
using namespace trotlet::platform;
using metrics::MetricKinds;
using metrics::MetricsSnapshot;
using namespace std::chrono;

extern char** environ;

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
        [share, nas = root + "/mnt/nas"](const std::string& path) -> SpaceAnswer {
            if (path == nas) {
                std::unique_lock lock(share->m);
                share->cv.wait(lock, [&] { return !share->shut; });
            }
            return {SpaceReading{100, share->freeBytes}};
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

// A real FUSE share whose statfs never answers, met through the whole provider. It is mounted
// in a private mount namespace of a child copy of this binary: no other program on the machine
// can come across it, and it goes with the child whatever happens to the test.
TEST(MisbehavingMachine, RealHungShareNeverHoldsUpASample) {
    const char* resultFile = std::getenv("TROTLET_HUNG_SHARE_RESULT");
    if (!resultFile) {
        const std::string result = std::filesystem::temp_directory_path() /
                                   ("trotlet-hung-share-" + std::to_string(::getpid()));
        ::setenv("TROTLET_HUNG_SHARE_RESULT", result.c_str(), 1);
        std::string self = "/proc/self/exe";
        std::string filter = "--gtest_filter=MisbehavingMachine.RealHungShareNeverHoldsUpASample";
        char* argv[] = {self.data(), filter.data(), nullptr};
        pid_t child = 0;
        const int spawned = ::posix_spawn(&child, self.c_str(), nullptr, nullptr, argv, environ);
        ::unsetenv("TROTLET_HUNG_SHARE_RESULT");
        ASSERT_EQ(spawned, 0);
        int status = 0;
        for (const auto start = steady_clock::now(); ::waitpid(child, &status, WNOHANG) == 0;) {
            if (steady_clock::now() - start > seconds(60)) ::kill(child, SIGKILL);  // and the share
            std::this_thread::sleep_for(milliseconds(20));
        }
        std::stringstream text;
        text << std::ifstream(result).rdbuf();
        std::filesystem::remove(result);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child test failed";
        if (text.str().rfind("skip: ", 0) == 0) GTEST_SKIP() << text.str().substr(6);
        std::cout << text.str();
        return;
    }
    std::ofstream result(resultFile);
    auto skip = [&](const std::string& why) { result << "skip: " << why << std::flush; };
#if !TROTLET_HAVE_FUSE3
    return skip("built without libfuse3");
#else
    // Root may make a mount namespace; anyone else needs a user namespace first.
    const uid_t uid = ::getuid();
    const gid_t gid = ::getgid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return skip(std::string("no private mount namespace: ") + std::strerror(errno));
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << uid << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << gid << " 1";
    }
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return skip(std::string("cannot make the mounts private: ") + std::strerror(errno));
    CapturedTree tree("vm");
    std::filesystem::create_directories(tree.path("mnt/share"));
    tree.write("proc/self/mountinfo",
               "1 0 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
               "2 1 0:60 / /mnt/share rw,nosuid,nodev - fuse.sshfs nas:/export rw\n");
    std::string error;
    auto fuse = HungFuseShare::mount(tree.path("mnt/share"), error);
    if (!fuse) return skip(error);

    // As the app samples: the first sample includes the provider's baseline wait.
    const LinuxMetricsProvider::Options options{tree.root()};
    LinuxMetricsProvider provider(options);
    MetricsSnapshot s;
    double first = -1, later = 0;
    auto sampleUntil = [&](const std::function<bool(const metrics::VolumeInfo*)>& done) {
        for (const auto start = steady_clock::now(); steady_clock::now() - start < seconds(5);) {
            const auto t = steady_clock::now();
            s = provider.sample(MetricKinds::volumes, system_clock::now());
            const double ms = millisecondsSince(t);
            if (first < 0)
                first = ms;
            else
                later = std::max(later, ms);
            const auto share = std::find_if(s.disks.volumes.begin(), s.disks.volumes.end(),
                                            [](auto& v) { return v.path == "/mnt/share"; });
            if (done(share == s.disks.volumes.end() ? nullptr : &*share)) return true;
            std::this_thread::sleep_for(milliseconds(100));
        }
        return false;
    };
    EXPECT_TRUE(sampleUntil([](auto share) { return share && !share->totalBytes; }))
        << "the share is listed as unavailable, not as empty";
    EXPECT_TRUE(s.disks.rootVolume() && s.disks.rootVolume()->totalBytes) << "the disk answers";
    fuse->release();
    EXPECT_TRUE(sampleUntil([](auto share) { return share && share->totalBytes == 4096 * 1000; }))
        << "asked again once the share answers";
    fuse->failWith(ENOTCONN);
    EXPECT_TRUE(sampleUntil([](auto share) { return share && !share->totalBytes; }))
        << "a share whose connection dropped is unavailable, neither empty nor gone";
    EXPECT_LT(first, options.baselineSec * 1000 + 200) << "the first sample waited for the share";
    EXPECT_LT(later, 200) << "a sample waited for the hung share";
    result << "[ figures  ] real hung FUSE share: first sample " << first << " ms (baseline "
           << options.baselineSec * 1000 << " ms), slowest later sample " << later << " ms\n"
           << std::flush;
#endif
}
