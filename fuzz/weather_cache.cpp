// weather.json as the cache reads it back at launch, and the chosen place as the settings keep
// it. A report the cache accepts is shown at once, so it goes on to the header and the card.

#include "json/ParseBounded.h"

#include "weather/WeatherLocation.h"
#include "weather/WeatherReport.h"

#include "Consumers.h"
#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::weather;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::bytes(data, size);
    // The cache's envelope: {"version":1,"savedAt":…,"report":{…}} (WeatherCache::load).
    const auto j = json::parseBounded(text);
    if (!j.is_discarded() && j.is_object()) {
        const auto report = j.find("report");
        if (auto decoded = report != j.end() ? reportFromJson(*report) : reportFromJson(j)) {
            const auto again = reportFromJson(nlohmann::json::parse(reportToJson(*decoded).dump()));
            FUZZ_CHECK(again && *again == *decoded);
            fuzz::consumeReport(*decoded);
        }
    }
    if (auto place = decodeLocationSetting(std::string(text))) {
        const auto again = decodeLocationSetting(encodeLocationSetting(*place));
        FUZZ_CHECK(again && *again == *place);
    }
    return 0;
}
