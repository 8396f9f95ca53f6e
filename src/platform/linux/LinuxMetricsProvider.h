#pragma once

#include <memory>
#include <string>

#include "metrics/MetricsProvider.h"

namespace trotlet::platform {

class CpuReader;
class MemoryReader;
class DiskIOReader;
class VolumeReader;
class NetworkReader;
class BatteryReader;
class SensorReader;
class GpuReader;
class ProcessReader;
class SystemReader;

// The real provider: one reader per kind over /proc and /sys under `root`. A reader is built
// (and its files discovered) the first time its kind is asked for. Rates need a previous
// reading: when a kind is asked for the first time, the provider reads it, waits `baselineSec`
// and reads again, so that even a one-shot sample is meaningful.
class LinuxMetricsProvider : public metrics::MetricsProvider {
public:
    struct Options {
        std::string root = "/";
        double baselineSec = 0.25;
    };
    LinuxMetricsProvider();
    explicit LinuxMetricsProvider(Options options);
    ~LinuxMetricsProvider() override;

    std::string name() const override { return "real"; }
    metrics::MetricsSnapshot sample(metrics::MetricKinds kinds, metrics::Timestamp now) override;

    double lastWaitSec() const override { return lastWaitSec_; }

    // power-profiles-daemon's answer, kept by the application layer (it is a D-Bus call).
    void setLowPowerMode(bool on) { lowPowerMode_ = on; }

private:
    void pass(metrics::MetricKinds kinds, double monotonicSec, metrics::MetricsSnapshot& s);

    Options options_;
    metrics::MetricKinds primed_;
    bool lowPowerMode_ = false;
    double lastWaitSec_ = 0;
    std::unique_ptr<CpuReader> cpu_;
    std::unique_ptr<MemoryReader> memory_;
    std::unique_ptr<DiskIOReader> diskIO_;
    std::unique_ptr<VolumeReader> volumes_;
    std::unique_ptr<NetworkReader> network_;
    std::unique_ptr<BatteryReader> battery_;
    std::unique_ptr<SensorReader> sensors_;
    std::unique_ptr<GpuReader> gpu_;
    std::unique_ptr<ProcessReader> processes_;
    std::unique_ptr<SystemReader> system_;
};

// The number of processes in /proc (numeric entries).
std::int64_t countProcesses(const std::string& root = "/");

}  // namespace trotlet::platform
