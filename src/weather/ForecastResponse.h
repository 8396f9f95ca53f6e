#pragma once

#include <optional>
#include <string_view>

#include "weather/WeatherReport.h"

namespace trotlet::weather {

// Decodes a forecast answer (requested with timeformat=unixtime) into a report for
// `location`, stamped `fetchedAt` (when the answer arrived). The hourly and daily blocks are
// parallel arrays zipped by index; arrays of unequal length, a null inside them, a missing
// field or a time outside the plausible years (metrics/TimeRange.h) make the whole answer
// unusable (nothing), never a partial report.
// A location that does not know its zone yet takes the zone the answer names.
std::optional<WeatherReport> decodeForecast(std::string_view body, const WeatherLocation& location,
                                            UnixTime fetchedAt);

}  // namespace trotlet::weather
