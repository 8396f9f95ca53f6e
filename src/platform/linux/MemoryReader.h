#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "metrics/PressureLevels.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

// The /proc/meminfo fields the memory group needs, in bytes; absent when the kernel omits one.
struct MemInfo {
    std::optional<std::uint64_t> total, free, available, buffers, cached, swapCached, swapTotal,
        swapFree, shmem, sReclaimable, sUnreclaim, kernelStack, pageTables, unevictable, zswap;
};
MemInfo parseMemInfo(std::string_view text);

struct PsiAverages {
    std::optional<double> someAvg10, fullAvg10;
};
PsiAverages parsePressure(std::string_view text);

// Bytes of RAM that zram devices use for their compressed pages: the third field of mm_stat.
std::optional<std::uint64_t> parseZramMemUsed(std::string_view mmStat);

// /proc/meminfo mapped onto the memory group. The mapping agrees with procps `free`:
//   total      = MemTotal
//   used       = MemTotal - MemAvailable                         (free's "used")
//   wired      = SUnreclaim + KernelStack + PageTables + Unevictable  (cannot be paged out)
//   compressed = RAM held by zram devices + Zswap                (compressed pages)
//   app        = used - wired - compressed                       (process memory, floored at 0)
//   cached     = Buffers + Cached + SReclaimable                 (free's "buff/cache")
//   free       = MemFree                                         (free's "free")
//   swapUsed   = SwapTotal - SwapFree, swapTotal = SwapTotal
//   freePercent = MemAvailable / MemTotal, rounded
// Kernels before 3.14 have no MemAvailable; used is then total - free - buff/cache, as old
// `free` computed it. Without MemTotal the group cannot be built (false).
bool mapMemInfo(const MemInfo& info, std::uint64_t zramBytes, metrics::MemoryMetrics& out);

class MemoryReader {
public:
    explicit MemoryReader(const std::string& root = "/");
    bool read(metrics::MemoryMetrics& out);

private:
    KeptFile meminfo_;
    KeptFile pressure_;
    std::vector<KeptFile> zramStats_;
    metrics::MemoryPressureTracker tracker_;
};

}  // namespace trotlet::platform
