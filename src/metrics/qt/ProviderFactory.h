#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/LaunchOptions.h"
#include "metrics/MetricsProvider.h"

namespace trotlet::metrics {

// The provider the options select: mock with --mock, the fixture with --fixture, else the real
// Linux readers. `warnings` receives complaints about TROTLET_MOCK_OVERRIDES.
std::unique_ptr<MetricsProvider> makeProvider(const cli::LaunchOptions& options,
                                              std::vector<std::string>* warnings = nullptr);

}  // namespace trotlet::metrics
