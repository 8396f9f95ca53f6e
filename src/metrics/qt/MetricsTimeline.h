#pragma once

#include <string>

#include "cli/LaunchOptions.h"

namespace trotlet::metrics {

// TROTLET_METRICS_TIMELINE=<scenario> with --dump-metrics: scripted checks of the metrics store
// run against its real timer, sampling thread and publication path. Scenarios: "tiers" (kinds
// and intervals follow the consumers), "history" (charts keep a bounded, ordered history),
// "overlap" (a slow sample makes ticks skip, never pile up), "upgrade" (opening the panel
// during a sample asks again as soon as it ends), "absent" (a machine without a
// battery gets no battery points), and "all". Prints JSON and returns 0 when every check
// passed, 1 otherwise (an unknown scenario included).
struct MetricsTimeline {
    static int run(const std::string& scenario, const cli::LaunchOptions& options);
};

}  // namespace trotlet::metrics
