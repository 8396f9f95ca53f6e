#include "platform/linux/ProcessReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextScan.h"

namespace trotlet::platform {

bool parseProcStat(std::string_view text, ProcStat& out) {
    const size_t open = text.find('(');
    const size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) return false;
    out.comm = text.substr(open + 1, close - open - 1);
    TextScan scan(text.substr(close + 1));
    // Fields after the name, numbered as in proc(5): 3 state, 4 ppid, ... 9 flags, 14 utime,
    // 15 stime, 20 num_threads, 22 starttime, 24 rss.
    const std::string_view state = scan.token();
    if (state.size() != 1) return false;
    out.state = state[0];
    std::string_view f[22];
    for (int i = 4; i <= 24; ++i) {
        f[i - 4] = scan.token();
        if (f[i - 4].empty()) return false;
    }
    auto flags = TextScan::parseU64(f[9 - 4]);
    auto utime = TextScan::parseU64(f[14 - 4]);
    auto stime = TextScan::parseU64(f[15 - 4]);
    auto threads = TextScan::parseI64(f[20 - 4]);
    auto start = TextScan::parseU64(f[22 - 4]);
    auto rss = TextScan::parseI64(f[24 - 4]);
    if (!flags || !utime || !stime || !threads || !start || !rss) return false;
    out.flags = *flags;
    out.utime = *utime;
    out.stime = *stime;
    out.threads = *threads;
    out.startTime = *start;
    out.rssPages = *rss;
    return true;
}

std::string displayName(std::string_view comm, std::string_view cmdline) {
    // The kernel keeps TASK_COMM_LEN - 1 = 15 characters of the name.
    if (comm.size() < 15 || cmdline.empty()) return std::string(comm);
    std::string_view argv0 = cmdline.substr(0, cmdline.find('\0'));
    // Some programs rewrite argv[0] into "name: detail"; the first word is the program.
    const size_t space = argv0.find(' ');
    if (space != std::string_view::npos) argv0 = argv0.substr(0, space);
    const size_t slash = argv0.rfind('/');
    if (slash != std::string_view::npos) argv0 = argv0.substr(slash + 1);
    if (argv0.size() > comm.size() && argv0.substr(0, comm.size()) == comm) return std::string(argv0);
    return std::string(comm);
}

namespace {

bool isPidName(const char* s, int& pid) {
    if (*s < '1' || *s > '9') return false;
    long v = 0;
    for (; *s; ++s) {
        if (*s < '0' || *s > '9') return false;
        v = v * 10 + (*s - '0');
        if (v > 0x7FFFFFFF) return false;
    }
    pid = static_cast<int>(v);
    return true;
}

ssize_t preadAll(int fd, char* buf, size_t size) {
    for (;;) {
        const ssize_t n = ::pread(fd, buf, size, 0);
        if (n < 0 && errno == EINTR) continue;
        return n;
    }
}

}  // namespace

ProcessReader::ProcessReader(Options options)
    : options_(std::move(options)), users_(options_.root) {
    const std::string proc = underRoot(options_.root, "/proc");
    procFd_ = ::open(proc.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (procFd_ >= 0) {
        const int dirFd = ::dup(procFd_);
        procDir_ = dirFd >= 0 ? ::fdopendir(dirFd) : nullptr;
    }
}

ProcessReader::~ProcessReader() {
    for (auto& [pid, e] : entries_)
        if (e.fd >= 0) ::close(e.fd);
    if (procDir_) ::closedir(static_cast<DIR*>(procDir_));
    if (procFd_ >= 0) ::close(procFd_);
}

void ProcessReader::describe(int pid, Entry& e, const ProcStat& stat) {
    char path[64];
    e.kernelThread = stat.isKernelThread();
    struct stat st {};
    std::snprintf(path, sizeof path, "%d", pid);
    if (::fstatat(procFd_, path, &st, 0) == 0) {
        e.uid = st.st_uid;
        e.haveUid = true;
    }
    std::string cmdline;
    if (!e.kernelThread) {
        std::snprintf(path, sizeof path, "%d/cmdline", pid);
        const int fd = ::openat(procFd_, path, O_RDONLY | O_CLOEXEC);
        if (fd >= 0) {
            char buf[512];
            const ssize_t n = ::read(fd, buf, sizeof buf);
            if (n > 0) cmdline.assign(buf, static_cast<size_t>(n));
            ::close(fd);
        }
        std::snprintf(path, sizeof path, "%d/exe", pid);
        char target[4096];
        const ssize_t n = ::readlinkat(procFd_, path, target, sizeof target - 1);
        if (n > 0) e.executable = std::string(target, static_cast<size_t>(n));
    }
    e.name = displayName(stat.comm, cmdline);
}

bool ProcessReader::readOne(int pid, Entry& e, bool fresh, double dt) {
    ssize_t n = -1;
    if (e.fd >= 0) {
        n = preadAll(e.fd, buffer_, sizeof buffer_ - 1);
        if (n <= 0) return false;  // the process has gone (ESRCH) since the last sample
    } else {
        char path[32];
        std::snprintf(path, sizeof path, "%d/stat", pid);
        const int fd = ::openat(procFd_, path, O_RDONLY | O_CLOEXEC);
        if (fd < 0) return false;  // gone between the directory scan and now
        n = preadAll(fd, buffer_, sizeof buffer_ - 1);
        if (openDescriptors_ < options_.keptDescriptors && n > 0) {
            e.fd = fd;
            ++openDescriptors_;
        } else {
            ::close(fd);
        }
        if (n <= 0) return false;
    }
    ProcStat stat;
    if (!parseProcStat(std::string_view(buffer_, static_cast<size_t>(n)), stat)) return false;
    if (!fresh && stat.startTime != e.startTime) {
        // Same PID, another process: start over.
        fresh = true;
        e.haveTicks = false;
        e.executable.reset();
        e.haveUid = false;
    }
    if (fresh) {
        e.startTime = stat.startTime;
        describe(pid, e, stat);
    }
    const std::uint64_t ticks = stat.utime + stat.stime;
    if (e.haveTicks && dt > 0 && ticks >= e.ticks)
        e.cpuPercent = double(ticks - e.ticks) * 100.0 / (dt * double(options_.ticksPerSecond));
    else
        e.cpuPercent = 0;  // first sight: no share measured yet
    e.ticks = ticks;
    e.haveTicks = true;
    e.rssBytes = stat.rssPages > 0 ? std::uint64_t(stat.rssPages) * std::uint64_t(options_.pageSize) : 0;
    e.threads = stat.threads;
    return true;
}

metrics::ProcessRow ProcessReader::rowFor(int pid, const Entry& e) const {
    metrics::ProcessRow r;
    r.pid = pid;
    r.name = e.name;
    r.cpuPercent = e.cpuPercent;
    r.memoryBytes = e.rssBytes;
    if (e.haveUid) r.user = users_.nameOf(e.uid);
    r.canQuit = e.haveUid && e.uid == options_.selfUid && pid != options_.selfPid && !e.kernelThread;
    r.executablePath = e.executable;
    if (e.threads > 0) r.threads = e.threads;
    r.isPrivileged = e.haveUid && e.uid == 0;
    r.startTicks = e.startTime;
    return r;
}

bool ProcessReader::read(metrics::ProcessMetrics& out, double now, bool fullList) {
    out = metrics::ProcessMetrics{};
    if (!procDir_) return false;
    users_.refresh();
    const double dt = previousTime_ ? now - *previousTime_ : 0;
    ++generation_;
    order_.clear();
    DIR* dir = static_cast<DIR*>(procDir_);
    ::rewinddir(dir);
    while (dirent* d = ::readdir(dir)) {
        int pid = 0;
        if (!isPidName(d->d_name, pid)) continue;
        auto [it, inserted] = entries_.try_emplace(pid);
        Entry& e = it->second;
        if (!readOne(pid, e, inserted, dt)) {
            if (e.fd >= 0) {
                ::close(e.fd);
                --openDescriptors_;
            }
            entries_.erase(it);
            continue;
        }
        e.generation = generation_;
        order_.emplace_back(pid, &e);
    }
    // Forget processes that have exited.
    for (auto it = entries_.begin(); it != entries_.end();) {
        if (it->second.generation != generation_) {
            if (it->second.fd >= 0) {
                ::close(it->second.fd);
                --openDescriptors_;
            }
            it = entries_.erase(it);
        } else {
            ++it;
        }
    }
    lastCount_ = static_cast<std::int64_t>(order_.size());
    out.totalCount = lastCount_;

    const size_t top = std::min(options_.topCount, order_.size());
    auto byCpu = [](const auto& a, const auto& b) {
        return a.second->cpuPercent != b.second->cpuPercent ? a.second->cpuPercent > b.second->cpuPercent
                                                            : a.first < b.first;
    };
    auto byMemory = [](const auto& a, const auto& b) {
        return a.second->rssBytes != b.second->rssBytes ? a.second->rssBytes > b.second->rssBytes
                                                        : a.first < b.first;
    };
    std::partial_sort(order_.begin(), order_.begin() + static_cast<long>(top), order_.end(), byCpu);
    for (size_t i = 0; i < top; ++i) out.topCPU.push_back(rowFor(order_[i].first, *order_[i].second));
    std::partial_sort(order_.begin(), order_.begin() + static_cast<long>(top), order_.end(), byMemory);
    for (size_t i = 0; i < top; ++i) out.topMemory.push_back(rowFor(order_[i].first, *order_[i].second));
    if (fullList) {
        std::sort(order_.begin(), order_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<metrics::ProcessRow> all;
        all.reserve(order_.size());
        for (const auto& [pid, e] : order_) all.push_back(rowFor(pid, *e));
        out.all = std::move(all);
    }
    const bool hadPrevious = previousTime_.has_value();
    previousTime_ = now;
    return hadPrevious;
}

std::int64_t scanStatAndStatm(const std::string& root) {
    const std::string proc = underRoot(root, "/proc");
    DIR* dir = ::opendir(proc.c_str());
    if (!dir) return 0;
    const int procFd = ::dirfd(dir);
    std::int64_t count = 0;
    char buf[4096];
    char path[64];
    while (dirent* d = ::readdir(dir)) {
        int pid = 0;
        if (!isPidName(d->d_name, pid)) continue;
        bool ok = true;
        for (const char* file : {"stat", "statm"}) {
            std::snprintf(path, sizeof path, "%d/%s", pid, file);
            const int fd = ::openat(procFd, path, O_RDONLY | O_CLOEXEC);
            if (fd < 0) { ok = false; break; }
            if (::read(fd, buf, sizeof buf) <= 0) ok = false;
            ::close(fd);
        }
        if (ok) ++count;
    }
    ::closedir(dir);
    return count;
}

}  // namespace trotlet::platform
