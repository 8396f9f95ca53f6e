// /proc/meminfo mapped onto the memory group, /proc/pressure/memory and zram's mm_stat, and the
// pressure level that follows from them over a few samples.

#include <cmath>

#include "metrics/PressureLevels.h"
#include "platform/linux/MemoryReader.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::bytes(data, size);
    const MemInfo info = parseMemInfo(text);
    const auto zram = parseZramMemUsed(text);
    metrics::MemoryMetrics out;
    if (mapMemInfo(info, zram.value_or(0), out)) {
        FUZZ_CHECK(out.total == *info.total && out.used <= out.total);
        FUZZ_CHECK(out.app + out.wired + out.compressed == out.used);
        if (out.freePercent) FUZZ_CHECK(*out.freePercent >= 0 && *out.freePercent <= 100);
        FUZZ_CHECK(out.swapUsed <= out.swapTotal);
    }
    const PsiAverages psi = parsePressure(text);
    for (const auto& v : {psi.someAvg10, psi.fullAvg10})
        if (v) FUZZ_CHECK(std::isfinite(*v) && *v >= 0);
    metrics::MemoryPressureTracker tracker;
    for (int sample = 0; sample < 4; ++sample) (void)tracker.update(psi.someAvg10, psi.fullAvg10);
    return 0;
}
