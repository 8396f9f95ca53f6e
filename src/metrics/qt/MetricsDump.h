#pragma once

#include "app/LaunchOptions.h"

namespace trotlet::metrics {

// `--dump-metrics`: one full sample (plus the mascot it would show) as JSON on stdout.
struct MetricsDump {
    static int run(const app::LaunchOptions& options);
};

// `--bench-metrics [n]`: sampling cost per kind of reading, as JSON on stdout.
struct MetricsBench {
    static int run(const app::LaunchOptions& options);
};

}  // namespace trotlet::metrics
