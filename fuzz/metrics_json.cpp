// The metrics sample as JSON (the dump's groups and the fixtures), and the mock provider's
// overrides from TROTLET_MOCK_OVERRIDES. What decodes is handed to the mascot, the alerts, the
// ticker and the cards, which meet samples from every provider.

#include "metrics/MetricsJson.h"
#include "metrics/MockProvider.h"

#include "Consumers.h"
#include "FuzzSupport.h"

using namespace trotlet;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(fuzz::bytes(data, size));
    const auto decoded = metrics::decodeSnapshotText(text);
    if (decoded.value) {
        const auto again =
            metrics::decode<metrics::MetricsSnapshot>(metrics::encode(*decoded.value));
        FUZZ_CHECK(again.value && *again.value == *decoded.value);
        fuzz::consumeSnapshot(*decoded.value);
    } else {
        FUZZ_CHECK(!decoded.error.empty());
    }

    auto overrides = metrics::MockOverrides::parse(text);
    metrics::MockProvider mock(std::move(overrides));
    fuzz::consumeSnapshot(mock.sample(
        metrics::MetricKinds::all, metrics::fromUnixSeconds(fuzz::kNowUnixSeconds + double(size))));
    return 0;
}
