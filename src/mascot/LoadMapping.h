#pragma once

#include "mascot/LoadSource.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::mascot {

// One number in 0...1 for the chosen speed source of a sample.
struct LoadMapping {
    static double load(const metrics::MetricsSnapshot& snapshot, LoadSource source);

    // The source whose term is largest for `busiest` (earlier wins a tie); any other source is
    // returned unchanged.
    static LoadSource winningSource(const metrics::MetricsSnapshot& snapshot, LoadSource source);

    // The single terms, each clamped to 0...1.
    static double cpuLoad(const metrics::MetricsSnapshot& snapshot);
    static double gpuLoad(const metrics::MetricsSnapshot& snapshot);
    static double memoryLoad(const metrics::MetricsSnapshot& snapshot);
    static double networkLoad(const metrics::MetricsSnapshot& snapshot);
    // Memory as it competes in the busiest race: only pressure counts, so a machine that keeps
    // most of its memory in use but is otherwise idle can still nap.
    static double memoryPressureLoad(const metrics::MetricsSnapshot& snapshot);
};

}  // namespace trotlet::mascot
