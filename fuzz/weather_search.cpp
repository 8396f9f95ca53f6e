// An Open-Meteo geocoding answer, and the search that ranks, deduplicates and merges answers
// in several languages. A chosen hit becomes the "weather.location" setting.

#include "weather/PlaceSearch.h"
#include "weather/WeatherLocation.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::weather;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::bytes(data, size);
    const auto hits = decodeSearchHits(text);
    if (!hits) return 0;
    for (const auto& hit : *hits) {
        const auto again = decodeLocationSetting(encodeLocationSetting(hit.place));
        FUZZ_CHECK(again && *again == hit.place);
    }
    // The same answer as the user's language and as a second, recognised one.
    const std::vector<SearchAnswer> answers{{"en", *hits}, {"ja", *hits}};
    for (auto script : {QueryScript::latin, QueryScript::han, QueryScript::kana})
        for (bool byPopulation : {false, true}) {
            const auto combined = combineAnswers(answers, "東京", script, byPopulation);
            if (const auto* places = std::get_if<std::vector<WeatherLocation>>(&combined))
                FUZZ_CHECK(places->size() <= hits->size());
        }
    (void)planSearch(std::string_view(text).substr(0, 64), "en", {});
    return 0;
}
