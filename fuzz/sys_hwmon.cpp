// hwmon chips and thermal zones under /sys/class, read by the sensor reader: temperatures, their
// limits, fans and the thermal state. Input: "hwmon/hwmon0/temp1_input=45000" lines.

#include <cmath>

#include "platform/linux/SensorReader.h"

#include "SysTree.h"

using namespace trotlet;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 8192) return 0;
    static fuzz::SysTree tree;
    tree.build(fuzz::bytes(data, size));
    platform::SensorReader reader(tree.root());
    metrics::ThermalMetrics out;
    for (int sample = 0; sample < 2; ++sample) {
        reader.read(out);
        for (const auto& s : out.sensors)
            FUZZ_CHECK(std::isfinite(s.celsius) && s.celsius > -40 && s.celsius < 150);
        for (const auto& f : out.fans) {
            FUZZ_CHECK(std::isfinite(f.rpm) && f.rpm >= 0);
            if (f.minRpm) FUZZ_CHECK(std::isfinite(*f.minRpm));
            if (f.maxRpm) FUZZ_CHECK(std::isfinite(*f.maxRpm));
        }
        for (const auto* c : {&out.cpuC, &out.cpuMaxC, &out.gpuC, &out.socC})
            if (*c) FUZZ_CHECK(std::isfinite(**c));
        // Every fan with a speed is counted; a counted fan may have no speed this time.
        if (out.fanCount) FUZZ_CHECK(*out.fanCount >= static_cast<std::int64_t>(out.fans.size()));
        else FUZZ_CHECK(out.fans.empty());
    }
    return 0;
}
