#pragma once

#include <string>

#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// Builds one sample. A provider fills exactly the groups that `kinds` names and leaves every
// reading it cannot obtain absent; the other groups keep their defaults. Rates come from the
// difference to the provider's previous sample, so a provider is stateful and not shared
// between threads.
class MetricsProvider {
public:
    virtual ~MetricsProvider() = default;

    // "real", "mock" or "fixture:<name>": printed by the dump.
    virtual std::string name() const = 0;

    virtual MetricsSnapshot sample(MetricKinds kinds, Timestamp now) = 0;

    // How long the last `sample` spent on a baseline (a first reading and the wait after it,
    // since rates need two readings), so a harness can tell that from the cost of one sample.
    virtual double lastWaitSec() const { return 0; }

    // Whether `processes.all` is filled (the Processes screen); the top lists are always filled.
    virtual void setFullProcessList(bool wanted) { fullProcessList_ = wanted; }
    bool fullProcessList() const { return fullProcessList_; }

protected:
    bool fullProcessList_ = false;
};

}  // namespace trotlet::metrics
