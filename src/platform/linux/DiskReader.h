#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

struct DiskCounters {
    std::string name;
    std::uint64_t sectorsRead = 0, sectorsWritten = 0;  // 512-byte units, whatever the device
};
// /proc/diskstats into `out` (storage reused); malformed lines skipped.
void parseDiskStats(std::string_view text, std::vector<DiskCounters>& out);

// Whether a /proc/diskstats name is a whole physical disk worth counting: partitions, loop,
// ram, zram and layered devices (device-mapper, md RAID) would count the same bytes twice.
// `wholeDisk` says whether /sys/block/<name> exists (only whole disks are listed there).
bool countsAsDisk(std::string_view name, bool wholeDisk);

// Disk read/write rates and totals from /proc/diskstats over whole disks only.
class DiskIOReader {
public:
    explicit DiskIOReader(const std::string& root = "/");
    bool read(metrics::DiskMetrics& out, double monotonicSec);

private:
    bool counted(const std::string& name);
    std::string root_;
    KeptFile stats_;
    std::vector<DiskCounters> current_, previous_;
    std::vector<std::pair<std::string, bool>> verdicts_;
    std::optional<double> previousTime_;
};

}  // namespace trotlet::platform
