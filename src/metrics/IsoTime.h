#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// ISO 8601 in UTC, "2026-11-22T04:38:59.25Z": fractional seconds carry as many digits as the
// time needs (none for a whole second, at most nine), so format and parse round-trip exactly.
std::string formatIso8601(Timestamp t);

// Accepts "YYYY-MM-DDTHH:MM:SS[.fraction](Z|+HH:MM|-HH:MM)" for a moment within the plausible
// range (TimeRange.h). Anything else is absent.
std::optional<Timestamp> parseIso8601(std::string_view text);

}  // namespace trotlet::metrics
