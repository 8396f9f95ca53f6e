#include "platform/linux/LinuxMetricsProvider.h"

#include <dirent.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "platform/linux/BatteryReader.h"
#include "platform/linux/CpuReader.h"
#include "platform/linux/DiskReader.h"
#include "platform/linux/GpuReader.h"
#include "platform/linux/KeptFile.h"
#include "platform/linux/MemoryReader.h"
#include "platform/linux/NetworkReader.h"
#include "platform/linux/ProcessReader.h"
#include "platform/linux/SensorReader.h"
#include "platform/linux/SystemReader.h"
#include "platform/linux/VolumeReader.h"

namespace trotlet::platform {

using metrics::MetricKinds;

namespace {

double monotonicSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Kinds read once ahead of the first sample that asks for them: those whose readings are
// differences between two samples, and the volumes, whose first statvfs round then runs on its
// worker during the baseline wait.
constexpr MetricKinds kDeltaKinds = MetricKinds::cpu | MetricKinds::diskIO | MetricKinds::network |
                                    MetricKinds::gpu | MetricKinds::processes | MetricKinds::system |
                                    MetricKinds::volumes;

size_t descriptorBudget() {
    // Keeping every process's stat file open saves an open and a close per process per tick;
    // stay well inside the soft limit so the rest of the app never runs short.
    struct rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 128;
    const rlim_t soft = limit.rlim_cur == RLIM_INFINITY ? 4096 : limit.rlim_cur;
    return soft > 256 ? static_cast<size_t>(soft / 2) : 0;
}

}  // namespace

std::int64_t countProcesses(const std::string& root) {
    DIR* dir = ::opendir(underRoot(root, "/proc").c_str());
    if (!dir) return 0;
    std::int64_t count = 0;
    while (dirent* e = ::readdir(dir))
        if (e->d_name[0] >= '1' && e->d_name[0] <= '9') ++count;
    ::closedir(dir);
    return count;
}

LinuxMetricsProvider::LinuxMetricsProvider() : LinuxMetricsProvider(Options{}) {}
LinuxMetricsProvider::LinuxMetricsProvider(Options options) : options_(std::move(options)) {}
LinuxMetricsProvider::~LinuxMetricsProvider() = default;

void LinuxMetricsProvider::pass(MetricKinds kinds, double now, metrics::MetricsSnapshot& s) {
    const std::string& root = options_.root;
    static const long ticks = ::sysconf(_SC_CLK_TCK) > 0 ? ::sysconf(_SC_CLK_TCK) : 100;
    static const long page = ::sysconf(_SC_PAGESIZE) > 0 ? ::sysconf(_SC_PAGESIZE) : 4096;
    if (kinds.contains(MetricKinds::processes)) {
        if (!processes_) {
            ProcessReader::Options o;
            o.root = root;
            o.selfPid = static_cast<int>(::getpid());
            o.selfUid = ::getuid();
            o.ticksPerSecond = ticks;
            o.pageSize = page;
            o.keptDescriptors = descriptorBudget();
            processes_ = std::make_unique<ProcessReader>(o);
        }
        processes_->read(s.processes, now, fullProcessList_);
    }
    if (kinds.contains(MetricKinds::cpu)) {
        if (!cpu_) cpu_ = std::make_unique<CpuReader>(root);
        cpu_->read(s.cpu);
        s.cpu.processCount = kinds.contains(MetricKinds::processes) ? s.processes.totalCount
                                                                    : std::optional<std::int64_t>(countProcesses(root));
        if (s.cpu.processCount && *s.cpu.processCount == 0) s.cpu.processCount.reset();
    }
    if (kinds.contains(MetricKinds::memory)) {
        if (!memory_) memory_ = std::make_unique<MemoryReader>(root);
        memory_->read(s.memory);
    }
    if (kinds.contains(MetricKinds::diskIO)) {
        if (!diskIO_) diskIO_ = std::make_unique<DiskIOReader>(root);
        diskIO_->read(s.disks, now);
    }
    if (kinds.contains(MetricKinds::volumes)) {
        if (!volumes_) {
            // The baseline wait gives the first round of statvfs calls time to answer, so the
            // first read need not wait for it at all.
            const auto firstWait = options_.baselineSec > 0 ? std::chrono::milliseconds(0)
                                                            : VolumeReader::defaultFirstWait;
            volumes_ =
                std::make_unique<VolumeReader>(root, statvfsSpace, VolumeReader::defaultTimeout,
                                               VolumeReader::defaultRefreshInterval, firstWait);
        }
        volumes_->read(s.disks);
    }
    if (kinds.contains(MetricKinds::network)) {
        if (!network_) network_ = std::make_unique<NetworkReader>(root);
        network_->read(s.network, now);
    }
    if (kinds.contains(MetricKinds::battery)) {
        if (!battery_) battery_ = std::make_unique<BatteryReader>(root);
        s.battery.lowPowerMode = lowPowerMode_;
        battery_->read(s.battery);
    }
    if (kinds.contains(MetricKinds::sensors)) {
        if (!sensors_) sensors_ = std::make_unique<SensorReader>(root);
        sensors_->read(s.thermal);
    }
    if (kinds.contains(MetricKinds::gpu)) {
        if (!gpu_) gpu_ = std::make_unique<GpuReader>(root);
        s.gpu = gpu_->read(now);
    }
    if (kinds.contains(MetricKinds::system)) {
        if (!system_) system_ = std::make_unique<SystemReader>(root, ticks, page);
        system_->read(s.system, now);
    }
}

metrics::MetricsSnapshot LinuxMetricsProvider::sample(MetricKinds kinds, metrics::Timestamp now) {
    metrics::MetricsSnapshot s;
    lastWaitSec_ = 0;
    const MetricKinds unprimed(kinds.rawValue & kDeltaKinds.rawValue & ~primed_.rawValue);
    if (!unprimed.isEmpty()) {
        const double start = monotonicSeconds();
        metrics::MetricsSnapshot scratch;
        pass(unprimed, start, scratch);
        primed_ |= unprimed;
        if (options_.baselineSec > 0)
            std::this_thread::sleep_for(std::chrono::duration<double>(options_.baselineSec));
        lastWaitSec_ = monotonicSeconds() - start;
    }
    s.timestamp = now;
    pass(kinds, monotonicSeconds(), s);
    return s;
}

}  // namespace trotlet::platform
