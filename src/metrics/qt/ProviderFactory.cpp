#include "metrics/qt/ProviderFactory.h"

#include <cstdlib>

#include "metrics/FixtureProvider.h"
#include "metrics/MockProvider.h"
#include "platform/linux/LinuxMetricsProvider.h"

namespace trotlet::metrics {

std::unique_ptr<MetricsProvider> makeProvider(const cli::LaunchOptions& options,
                                              std::vector<std::string>* warnings) {
    if (options.mock) {
        const char* env = std::getenv("TROTLET_MOCK_OVERRIDES");
        auto overrides = MockOverrides::parse(env ? env : "");
        if (warnings)
            for (const auto& e : overrides.errors)
                warnings->push_back("TROTLET_MOCK_OVERRIDES: " + e);
        return std::make_unique<MockProvider>(std::move(overrides));
    }
    if (options.fixture) return std::make_unique<FixtureProvider>(*options.fixture);
    return std::make_unique<platform::LinuxMetricsProvider>();
}

}  // namespace trotlet::metrics
