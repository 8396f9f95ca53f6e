#pragma once

#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// The sample with only the groups `kinds` names; the others reset to their defaults (absent
// readings, empty lists), as a real provider leaves the kinds it was not asked for. diskIO and
// volumes share the disks group: the rates and totals belong to diskIO, the list to volumes.
MetricsSnapshot restrictedTo(MetricsSnapshot snapshot, MetricKinds kinds);

}  // namespace trotlet::metrics
