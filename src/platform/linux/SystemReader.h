#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

// PRETTY_NAME from os-release text, else NAME and VERSION.
std::optional<std::string> parseOsRelease(std::string_view text);
// The first "model name" (x86), else "Hardware"/"Processor"/"cpu model" (ARM, MIPS) of cpuinfo.
std::optional<std::string> parseCpuModel(std::string_view cpuinfo);
// "btime" of /proc/stat: the boot time in Unix seconds; absent outside the plausible years.
std::optional<long long> parseBootTime(std::string_view procStat);

// The system group. Model, chip, OS and boot time never change while running and are read once;
// uptime and this process's own CPU share and memory are read on every call.
class SystemReader {
public:
    SystemReader(const std::string& root = "/", long ticksPerSecond = 100, long pageSize = 4096);
    void read(metrics::SystemInfo& out, double monotonicSec);

private:
    metrics::SystemInfo fixed_;
    KeptFile uptime_, selfStat_, selfStatm_;
    long ticksPerSecond_, pageSize_;
    std::optional<std::uint64_t> previousTicks_;
    double previousTime_ = 0;
};

}  // namespace trotlet::platform
