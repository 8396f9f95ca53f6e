#pragma once

#include "metrics/MetricsFixture.h"
#include "metrics/MetricsProvider.h"

namespace trotlet::metrics {

// The nine deterministic data sets of `--fixture`, each shaped to its name: a laptop at
// `normal`, `idle` and `busy` load; `panic` saturates the CPU and memory; `hot` runs close to the
// CPU's limit; `lowBattery` is unplugged at 7 %; `offline` has no network; `desktop` has no
// battery; `stress` loads everything. Every reading is fixed; only the timestamp is `now`.
MetricsSnapshot fixtureSnapshot(MetricsFixture fixture, Timestamp now);

class FixtureProvider : public MetricsProvider {
public:
    explicit FixtureProvider(MetricsFixture fixture) : fixture_(fixture) {}
    std::string name() const override;
    MetricsSnapshot sample(MetricKinds kinds, Timestamp now) override;

private:
    MetricsFixture fixture_;
};

}  // namespace trotlet::metrics
