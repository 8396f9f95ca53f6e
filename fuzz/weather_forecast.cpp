// An Open-Meteo forecast answer (timeformat=unixtime). A decoded forecast is shown and saved
// to the cache, so it must survive the cache's own decoder and the header's arithmetic.

#include <nlohmann/json.hpp>

#include "weather/ForecastResponse.h"
#include "weather/WeatherReport.h"

#include "Consumers.h"
#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::weather;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WeatherLocation place;
    place.id = 2643743;
    place.name = "London";
    place.countryCode = "GB";
    place.latitude = 51.5085;
    place.longitude = -0.12574;
    place.timezone = size % 2 ? "Europe/London" : "";  // known, or taken from the answer
    const auto fetchedAt = static_cast<UnixTime>(fuzz::kNowUnixSeconds);
    const auto report = decodeForecast(fuzz::bytes(data, size), place, fetchedAt);
    if (!report) return 0;
    FUZZ_CHECK(report->fetchedAt == fetchedAt);
    fuzz::consumeReport(*report);
    const auto cached = reportFromJson(nlohmann::json::parse(reportToJson(*report).dump()));
    FUZZ_CHECK(cached && *cached == *report);
    return 0;
}
