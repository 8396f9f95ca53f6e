#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trotlet::shop {

// A moment as seconds since the Unix epoch (UTC). Fractions matter for the Golden Fish swim
// (4.2 s), so this is a double; at millisecond precision it stays exact for millennia.
using Timestamp = double;

// Civil-date arithmetic on the proleptic Gregorian calendar (Howard Hinnant's algorithms).
long long daysFromCivil(int year, unsigned month, unsigned day);
struct CivilDate {
    int year = 1970;
    unsigned month = 1;
    unsigned day = 1;
};
CivilDate civilFromDays(long long days);

// "2026-10-01T09:00:00Z"; milliseconds are written only when the moment has them.
std::string formatIso8601(Timestamp t);

// Accepts "YYYY-MM-DDTHH:MM:SS[.fff]" followed by "Z" or "+hh:mm"/"-hh:mm", for a moment within
// the plausible range (metrics/TimeRange.h). Anything else is none: a ledger date that can't be
// read makes the row unreadable rather than guessing.
std::optional<Timestamp> parseIso8601(std::string_view text);

}  // namespace trotlet::shop
