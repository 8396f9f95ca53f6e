#pragma once

#include <functional>
#include <optional>

#include <nlohmann/json.hpp>

#include "cli/LaunchOptions.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// `--dump-metrics`: one full sample (plus the mascot it would show) as JSON on stdout.
// With TROTLET_METRICS_TIMELINE set, runs that timeline scenario of the store instead.
struct MetricsDump {
    static int run(const cli::LaunchOptions& options);

    // The "mascot" block, which comes after "system": the mascot subsystem registers its
    // encoder at start-up; without one the dump prints the other twelve keys.
    using MascotEncoder = std::function<std::optional<nlohmann::ordered_json>(
        const MetricsSnapshot&, const cli::LaunchOptions&)>;
    static void setMascotEncoder(MascotEncoder encoder);
};

// `--bench-metrics [n]`: sampling cost per kind of reading, as JSON on stdout:
// {"provider", "iterations", "processCount", "kinds": [{"kind", "minUs", "medianUs", "maxUs"}
// for each single kind and "all" (with the full process list)], "menuBar": the menu bar's kinds
// together, "procScanBaseline": opening and reading /proc/[pid]/stat and statm of every process}.
// Each measurement uses a fresh provider whose first (baseline) sample is not counted.
struct MetricsBench {
    static int run(const cli::LaunchOptions& options);
};

}  // namespace trotlet::metrics
