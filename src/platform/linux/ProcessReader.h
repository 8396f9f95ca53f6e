#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/UserNames.h"

namespace trotlet::platform {

// The fields of /proc/[pid]/stat the process table needs.
struct ProcStat {
    std::string_view comm;  // inside the outermost parentheses; may hold spaces and ')'
    char state = '?';
    std::uint64_t flags = 0;
    std::uint64_t utime = 0, stime = 0;  // clock ticks
    std::int64_t threads = 0;
    std::uint64_t startTime = 0;  // ticks after boot; tells a reused PID from the old process
    std::int64_t rssPages = 0;
    bool isKernelThread() const { return (flags & 0x00200000) != 0; }  // PF_KTHREAD
};

// Parses one stat line. The command name is everything between the first '(' and the LAST ')',
// since a process may call itself "a) b (c". False on anything malformed.
bool parseProcStat(std::string_view text, ProcStat& out);

// The name to show: the kernel's 15-character comm, or the base name of argv[0] when comm was
// cut short and argv[0] extends it.
std::string displayName(std::string_view comm, std::string_view cmdline);

// The process table: every PID's CPU share (tick delta between samples), resident memory and
// threads, with the top rows by CPU and by memory. A process's name, command line, owner and
// executable are read only when its PID first appears. The stat file of each process stays open
// (within a descriptor budget) and is re-read with pread.
class ProcessReader {
public:
    struct Options {
        std::string root = "/";
        int selfPid = 0;
        unsigned selfUid = 0;
        long ticksPerSecond = 100;
        long pageSize = 4096;
        size_t topCount = 10;
        size_t keptDescriptors = 256;  // stat files kept open at most
    };
    explicit ProcessReader(Options options);
    ~ProcessReader();
    ProcessReader(const ProcessReader&) = delete;
    ProcessReader& operator=(const ProcessReader&) = delete;

    // False on the first call (CPU shares need a previous sample) or when /proc is unreadable.
    bool read(metrics::ProcessMetrics& out, double monotonicSec, bool fullList);

    // The number of processes the last read found.
    std::int64_t lastCount() const { return lastCount_; }

private:
    struct Entry {
        int fd = -1;
        std::uint64_t startTime = 0;
        std::uint64_t ticks = 0;
        bool haveTicks = false;
        double cpuPercent = 0;
        std::uint64_t rssBytes = 0;
        std::int64_t threads = 0;
        std::uint32_t generation = 0;
        bool kernelThread = false;
        unsigned uid = 0;
        bool haveUid = false;
        std::string name;
        std::optional<std::string> executable;
    };
    bool readOne(int pid, Entry& e, bool fresh, double dt);
    void describe(int pid, Entry& e, const ProcStat& stat);
    metrics::ProcessRow rowFor(int pid, const Entry& e) const;

    Options options_;
    int procFd_ = -1;
    void* procDir_ = nullptr;  // DIR*
    std::unordered_map<int, Entry> entries_;
    std::vector<std::pair<int, Entry*>> order_;
    UserNames users_;
    std::uint32_t generation_ = 0;
    size_t openDescriptors_ = 0;
    std::optional<double> previousTime_;
    std::int64_t lastCount_ = 0;
    char buffer_[4096];
};

// The bare cost the benchmark compares against: open, read and close /proc/[pid]/stat and
// statm for every process. Returns the number of processes read.
std::int64_t scanStatAndStatm(const std::string& root = "/");

}  // namespace trotlet::platform
