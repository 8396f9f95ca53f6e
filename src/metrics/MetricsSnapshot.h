#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "metrics/MetricEnums.h"

namespace trotlet::metrics {

// One sample of everything the monitor measures. Plain values, built by a provider and read by
// the mascot, the menu bar, the alerts and the panel.
//
// Conventions:
// - Times are `Timestamp` (system_clock); JSON carries them as ISO 8601 UTC strings with as many
//   fractional digits as needed (up to nanoseconds), so they round-trip exactly.
// - A reading the machine or this sampling pass cannot provide is absent (std::optional), never
//   zero. Groups whose kind was not asked for keep their defaults (empty lists, absent values).
// - Loads are fractions 0..1; fields whose names end in Percent/Pct are 0..100.

using Timestamp = std::chrono::system_clock::time_point;

// Seconds since the Unix epoch, for logic that works in plain numbers.
double unixSeconds(Timestamp t);
Timestamp fromUnixSeconds(double seconds);

struct CoreLoad {
    int index = 0;  // logical CPU number
    double load = 0;
    bool operator==(const CoreLoad&) const = default;
};

struct CPUMetrics {
    double total = 0;   // all cores together, 0..1
    double user = 0;
    double system = 0;
    std::vector<double> perCore;   // one load per logical core, in core order
    std::vector<double> loadAvg;   // 1, 5 and 15 minutes
    std::optional<std::int64_t> processCount;
    std::optional<std::int64_t> threadCount;

    // Not encoded: the logical CPUs of the efficiency cluster on a hybrid CPU (from sysfs
    // cpu_atom). Empty on a CPU with one kind of core, which then lists every core as a
    // performance core.
    std::vector<int> efficiencyCoreIndices;

    std::vector<CoreLoad> performanceCores() const;
    std::vector<CoreLoad> efficiencyCores() const;

    bool operator==(const CPUMetrics&) const = default;
};

// Linux /proc/meminfo mapped onto the groups the panel shows (see MemoryReader.h for the
// mapping, which agrees with `free`: used = total - available).
struct MemoryMetrics {
    std::uint64_t total = 0;
    std::uint64_t used = 0;
    std::uint64_t app = 0;
    std::uint64_t wired = 0;
    std::uint64_t compressed = 0;
    std::uint64_t cached = 0;
    std::uint64_t free = 0;
    std::uint64_t swapUsed = 0;
    std::uint64_t swapTotal = 0;
    MemoryPressure pressure = MemoryPressure::unknown;
    std::optional<std::int64_t> freePercent;

    bool operator==(const MemoryMetrics&) const = default;
};

struct VolumeInfo {
    std::string name;
    std::string path;  // the mount point; a volume's identity
    // Absent while the volume has not answered (a hung network share): its space is unknown,
    // not zero.
    std::optional<std::int64_t> totalBytes;
    std::optional<std::int64_t> availableBytes;
    bool isInternal = false;
    bool isRemovable = false;
    bool isRoot = false;
    bool isReadOnly = false;

    // Both sizes are known and describe a volume that has room at all.
    bool hasSpace() const { return totalBytes && availableBytes && *totalBytes > 0; }

    bool operator==(const VolumeInfo&) const = default;
};

struct DiskMetrics {
    std::vector<VolumeInfo> volumes;
    std::optional<double> readBps;
    std::optional<double> writeBps;
    std::optional<std::uint64_t> totalReadBytes;
    std::optional<std::uint64_t> totalWrittenBytes;

    // The volume mounted at "/", if it was sampled.
    std::optional<VolumeInfo> rootVolume() const;

    bool operator==(const DiskMetrics&) const = default;
};

// What the kernel tells without privileges or nl80211: /proc/net/wireless and sysfs. The SSID
// and the band need nl80211, so they are absent unless a richer source fills them.
struct WifiDetails {
    std::optional<std::string> ssid;
    std::optional<std::int64_t> rssiDbm;
    std::optional<std::int64_t> noiseDbm;
    std::optional<std::int64_t> qualityPercent;  // link quality scaled to 0..100 (of 70)
    std::optional<double> frequencyMHz;

    bool operator==(const WifiDetails&) const = default;
};

struct NetworkMetrics {
    double downBps = 0;
    double upBps = 0;
    std::optional<std::uint64_t> totalDownBytes;
    std::optional<std::uint64_t> totalUpBytes;
    std::optional<std::string> interface;  // the primary (default-route) interface
    std::optional<InterfaceKind> interfaceKind;
    std::optional<std::string> localIP;
    std::optional<std::string> router;
    bool online = false;  // a default route over an interface with carrier
    std::optional<WifiDetails> wifi;
    std::optional<std::string> vpnInterface;

    bool operator==(const NetworkMetrics&) const = default;
};

// The battery group is always there (low power mode is a machine-wide setting), but a machine
// without a battery has `present == false`: then percent, charging, pluggedIn and fullyCharged
// mean nothing and are not encoded, and every optional is absent. `present` itself is not a JSON
// key: a decoded group is present exactly when it carries "percent".
struct BatteryMetrics {
    bool present = false;
    std::int64_t percent = 0;
    bool charging = false;
    bool pluggedIn = false;
    bool fullyCharged = false;
    std::optional<std::int64_t> timeRemainingMin;  // to empty, or to full while charging
    std::optional<double> healthPct;               // full capacity vs design capacity
    std::optional<std::int64_t> cycles;
    std::optional<std::string> condition;          // the kernel's health text, e.g. "Good"
    std::optional<double> temperatureC;
    std::optional<double> watts;                   // into (+, charging) or out of (-) the battery
    std::optional<double> systemWatts;
    std::optional<std::int64_t> adapterWatts;
    std::optional<std::string> adapterName;
    bool lowPowerMode = false;

    bool operator==(const BatteryMetrics&) const = default;
};

struct TemperatureSensor {
    std::string name;
    SensorGroup group = SensorGroup::other;
    double celsius = 0;

    bool operator==(const TemperatureSensor&) const = default;
};

struct FanReading {
    std::int64_t index = 0;  // a fan's identity
    double rpm = 0;
    std::optional<double> minRpm;
    std::optional<double> maxRpm;

    bool operator==(const FanReading&) const = default;
};

struct ThermalMetrics {
    ThermalState state = ThermalState::nominal;
    std::optional<double> cpuC;
    std::optional<double> cpuMaxC;  // the highest CPU core reading
    std::optional<double> gpuC;
    std::optional<double> socC;
    std::vector<TemperatureSensor> sensors;
    std::vector<FanReading> fans;
    // The fans found, with or without a speed this time (`fans` holds those with one); 0:
    // sensors readable but no fan reported; absent: unknown.
    std::optional<std::int64_t> fanCount;
    std::optional<double> systemPowerW;
    std::optional<std::string> source;  // "hwmon" or "thermal_zone"

    // The highest available temperature (the named readings and every sensor), absent when none.
    std::optional<double> hottestC() const;

    bool operator==(const ThermalMetrics&) const = default;
};

struct GPUMetrics {
    std::string name;
    std::optional<std::int64_t> cores;
    double utilization = 0;  // 0..1
    std::optional<double> renderer;
    std::optional<double> tiler;
    std::optional<std::uint64_t> memoryUsedBytes;

    bool operator==(const GPUMetrics&) const = default;
};

struct ProcessRow {
    std::int32_t pid = 0;
    std::string name;
    double cpuPercent = 0;  // of one core, as `top` shows it (a busy 4-thread process may be 400)
    std::uint64_t memoryBytes = 0;  // resident set
    std::optional<std::string> user;
    bool canQuit = false;  // the user's own, not this process, not a kernel thread
    std::optional<std::string> bundlePath;
    std::optional<std::string> executablePath;
    std::optional<std::int64_t> threads;
    bool isPrivileged = false;  // runs as root
    // When the kernel started it, in clock ticks after boot: with the PID, tells this process
    // from a later one that got the same PID.
    std::optional<std::uint64_t> startTicks;

    bool operator==(const ProcessRow&) const = default;
};

struct ProcessMetrics {
    std::vector<ProcessRow> topCPU;
    std::vector<ProcessRow> topMemory;
    std::optional<std::int64_t> totalCount;
    std::optional<std::vector<ProcessRow>> all;  // only when the full list was asked for

    bool operator==(const ProcessMetrics&) const = default;
};

struct SystemInfo {
    double uptimeSec = 0;
    std::string model;
    std::optional<std::string> modelName;
    std::optional<std::string> chip;
    std::string osVersion;
    std::optional<Timestamp> bootDate;
    std::optional<double> selfCpuPercent;
    std::optional<std::uint64_t> selfMemoryBytes;

    bool operator==(const SystemInfo&) const = default;
};

struct MetricsSnapshot {
    Timestamp timestamp{};
    CPUMetrics cpu;
    MemoryMetrics memory;
    DiskMetrics disks;
    NetworkMetrics network;
    BatteryMetrics battery;
    ThermalMetrics thermal;
    // Absent when no GPU statistics are readable; encoded as an empty object then, so the
    // group's key is always there.
    std::optional<GPUMetrics> gpu;
    ProcessMetrics processes;
    SystemInfo system;

    bool operator==(const MetricsSnapshot&) const = default;
};

}  // namespace trotlet::metrics
