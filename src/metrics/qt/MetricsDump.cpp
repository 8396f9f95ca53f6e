#include "metrics/qt/MetricsDump.h"

#include <cstdio>

namespace trotlet::metrics {

// Placeholder until the metrics readers land.
int MetricsDump::run(const app::LaunchOptions&) {
    std::fputs("trotlet: --dump-metrics is not available in this build\n", stderr);
    return 1;
}

int MetricsBench::run(const app::LaunchOptions&) {
    std::fputs("trotlet: --bench-metrics is not available in this build\n", stderr);
    return 1;
}

}  // namespace trotlet::metrics
