#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

// One line of /proc/stat, in clock ticks. Guest time is already inside user and nice.
struct CpuTicks {
    std::uint64_t user = 0, nice = 0, system = 0, idle = 0, iowait = 0, irq = 0, softirq = 0,
                  steal = 0;
    std::uint64_t busy() const { return user + nice + system + irq + softirq + steal; }
    std::uint64_t total() const { return busy() + idle + iowait; }
};

struct CpuStat {
    CpuTicks all;
    std::vector<CpuTicks> cores;  // by position of the "cpuN" lines (online CPUs)
};

// Parses /proc/stat into `out`, reusing its storage. False when the "cpu" line is missing or
// malformed.
bool parseProcStat(std::string_view text, CpuStat& out);

struct CpuShares {
    double total = 0, user = 0, system = 0;
};

// The ticks that passed between two readings of the same CPU; absent when a counter went
// backwards (a CPU taken offline and back, or a reset) or the ticks sum past 64 bits, which no
// real machine reaches: the readings can't be compared then.
std::optional<CpuTicks> ticksBetween(const CpuTicks& before, const CpuTicks& after);

// The busy shares between two readings of the same CPU; absent when no tick passed or the
// readings can't be compared: no share is invented then.
std::optional<CpuShares> sharesBetween(const CpuTicks& before, const CpuTicks& after);

// Each core's busy share between two readings, by position; a core with no tick did no work.
// Empty when a core came or went, or any core's readings can't be compared: the totals still
// stand then, and the cores are skipped this once.
std::vector<double> coreLoadsBetween(const CpuStat& before, const CpuStat& after);

// "0-3,8,10-11" (sysfs cpu lists) as CPU numbers; malformed pieces are skipped.
std::vector<int> parseCpuList(std::string_view text);

struct LoadAverage {
    double one = 0, five = 0, fifteen = 0;
    std::optional<std::int64_t> schedulingEntities;  // threads, from "running/total"
};
std::optional<LoadAverage> parseLoadAvg(std::string_view text);

// The cpu group: loads from tick deltas, load averages, thread count, the hybrid split.
// The process count is the process reader's (or a /proc scan) and is filled by the provider.
class CpuReader {
public:
    explicit CpuReader(const std::string& root = "/");

    // Fills `out` from the change since the previous call. False when there is no usable
    // previous reading (the first call, or counters that went backwards): then the loads are
    // left at their defaults and the caller takes a baseline first.
    bool read(metrics::CPUMetrics& out);

private:
    KeptFile stat_;
    KeptFile loadavg_;
    CpuStat previous_, current_;
    bool havePrevious_ = false;
    std::vector<int> efficiencyCores_;
};

}  // namespace trotlet::platform
