#include "metrics/SamplingPlan.h"

#include <algorithm>
#include <cmath>

namespace trotlet::metrics {

SamplingPlan planFor(ConsumerTier tier, double updateIntervalSec, bool processListVisible,
                     MetricKinds extraKinds) {
    const double open = std::isfinite(updateIntervalSec) ? std::clamp(updateIntervalSec, 0.5, 60.0) : 2.0;
    const MetricKinds menuBar = MetricKinds::cpu | MetricKinds::memory | MetricKinds::network |
                                MetricKinds::battery | MetricKinds::sensors | extraKinds;
    switch (tier) {
    case ConsumerTier::menuBarOnly:
        return {menuBar, std::max(open, 5.0), false};
    case ConsumerTier::panelClosed:
        return {menuBar | MetricKinds::volumes, std::max(open, 3.0), false};
    case ConsumerTier::panelOpen:
        return {MetricKinds::all, open, processListVisible};
    }
    return {menuBar, 5.0, false};
}

}  // namespace trotlet::metrics
