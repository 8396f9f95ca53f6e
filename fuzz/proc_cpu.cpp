// /proc/stat (two readings a tick apart: the CPU shares between them, and btime),
// /proc/loadavg and the sysfs CPU lists. Two readings are split at the first NUL byte.

#include <cmath>

#include "metrics/TimeRange.h"
#include "platform/linux/CpuReader.h"
#include "platform/linux/SystemReader.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::platform;

namespace {

void checkShares(const std::optional<CpuShares>& s) {
    if (!s) return;
    for (double v : {s->total, s->user, s->system})
        FUZZ_CHECK(std::isfinite(v) && v >= 0 && v <= 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto [before, after] = fuzz::twoReadings(fuzz::bytes(data, size));
    CpuStat a, b;
    if (parseProcStat(before, a) && parseProcStat(after, b)) {
        checkShares(sharesBetween(a.all, b.all));
        for (size_t i = 0; i < std::min(a.cores.size(), b.cores.size()); ++i)
            checkShares(sharesBetween(a.cores[i], b.cores[i]));
        const auto loads = coreLoadsBetween(a, b);
        FUZZ_CHECK(loads.empty() || loads.size() == b.cores.size());
        for (double v : loads) FUZZ_CHECK(std::isfinite(v) && v >= 0 && v <= 1);
    }
    if (auto boot = parseBootTime(before))
        FUZZ_CHECK(metrics::isPlausibleUnixSeconds(double(*boot)));
    if (auto load = parseLoadAvg(before)) {
        for (double v : {load->one, load->five, load->fifteen})
            FUZZ_CHECK(std::isfinite(v) && v >= 0);
        if (load->schedulingEntities) FUZZ_CHECK(*load->schedulingEntities >= 0);
    }
    const auto cpus = parseCpuList(before.substr(0, 256));
    for (int c : cpus) FUZZ_CHECK(c >= 0 && c <= 65535);
    return 0;
}
