#pragma once

#include <vector>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// The full process table behind a fixture's top lists: its top rows and, up to the sample's
// process count, a laptop's usual background (the desktop's services, the user's apps and their
// helpers, system daemons of several users, kernel threads), each quieter and smaller than the
// last top row so the top lists stay true. Sorted by PID; the same every time.
std::vector<ProcessRow> fixtureProcessTable(const MetricsSnapshot& sample);

}  // namespace trotlet::metrics
