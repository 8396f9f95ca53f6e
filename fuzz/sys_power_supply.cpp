// /sys/class/power_supply as the battery reader sees it: batteries (energy or charge, power or
// current, times, health) and adapters, combined into the battery group. Input:
// "power_supply/BAT0/capacity=57" lines.

#include <cmath>

#include "platform/linux/BatteryReader.h"

#include "SysTree.h"

using namespace trotlet;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 8192) return 0;
    static fuzz::SysTree tree;
    tree.build(fuzz::bytes(data, size));
    platform::BatteryReader reader(tree.root());
    metrics::BatteryMetrics out;
    for (int sample = 0; sample < 2; ++sample) {
        reader.read(out);
        if (!out.present) {
            FUZZ_CHECK(!out.watts && !out.timeRemainingMin && !out.healthPct);
            continue;
        }
        FUZZ_CHECK(out.percent >= 0 && out.percent <= 100);
        if (out.timeRemainingMin) FUZZ_CHECK(*out.timeRemainingMin >= 0);
        for (const auto* v : {&out.healthPct, &out.temperatureC, &out.watts, &out.systemWatts})
            if (*v) FUZZ_CHECK(std::isfinite(**v));
        if (out.cycles) FUZZ_CHECK(*out.cycles >= 0);
        if (out.adapterWatts) FUZZ_CHECK(*out.adapterWatts >= 0);
    }
    return 0;
}
