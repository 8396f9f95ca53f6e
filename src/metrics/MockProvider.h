#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsProvider.h"

namespace trotlet::metrics {

// TROTLET_MOCK_OVERRIDES: comma-separated key=value pairs that pin mock readings, e.g.
// "cpu=0.9,batteryPercent=12,online=false". Keys:
//   cpu              total CPU load 0..1 (every core follows)
//   cpuC             CPU temperature in °C (the thermal state follows a 100 °C limit)
//   memoryPressure   normal | warning | critical | unknown
//   freePercent      free memory in percent 0..100 (used memory follows)
//   batteryPercent   0..100;  charging, pluggedIn, lowPowerMode  true | false
//   battery          none (a machine without a battery)
//   online           true | false (false also drops the interface, address and router)
//   downBps, upBps   network rates in bytes per second
//   gpu              GPU load 0..1, or none
//   diskFreePercent  free space on the root volume in percent
// A pair with an unknown key or a bad value is skipped and reported in `errors`.
struct MockOverrides {
    std::optional<double> cpu, cpuC, downBps, upBps, gpu, diskFreePercent;
    std::optional<MemoryPressure> memoryPressure;
    std::optional<std::int64_t> freePercent, batteryPercent;
    std::optional<bool> charging, pluggedIn, lowPowerMode, online;
    bool noBattery = false, noGpu = false;
    std::vector<std::string> errors;

    static MockOverrides parse(std::string_view text);
};

// `--mock`: animated fake data, a pure function of the time. The CPU idles around 20 % and
// bursts to about 90 % for 8 s every 40 s (at each multiple of 40 s of Unix time); temperature,
// fan, power and the busiest process follow the bursts; memory, network and the battery drift
// slowly.
class MockProvider : public MetricsProvider {
public:
    explicit MockProvider(MockOverrides overrides = {}) : overrides_(std::move(overrides)) {}
    std::string name() const override { return "mock"; }
    MetricsSnapshot sample(MetricKinds kinds, Timestamp now) override;

    // The burst level 0..1 at a time: 0 between bursts, rising and falling within 1 s.
    static double burstLevel(double unixSeconds);

private:
    MockOverrides overrides_;
};

}  // namespace trotlet::metrics
