#pragma once

#include <cstdint>

namespace trotlet::metrics {

// The moments the app believes when it reads a time from text or a file: 1970-01-01T00:00:00Z
// through 2200-12-31T23:59:59Z. A time outside is a decode error, not a value: no sample,
// ledger row or forecast honestly carries one, and a far-future year would overflow the
// nanosecond clock (which ends in 2262). The sample, the shop and the weather cache share it.
inline constexpr int kFirstPlausibleYear = 1970;
inline constexpr int kLastPlausibleYear = 2200;
inline constexpr std::int64_t kFirstPlausibleUnixSeconds = 0;
inline constexpr std::int64_t kLastPlausibleUnixSeconds = 7'289'654'399;  // 2200-12-31T23:59:59Z

constexpr bool isPlausibleYear(int year) {
    return year >= kFirstPlausibleYear && year <= kLastPlausibleYear;
}

// Takes a double too, so that a fractional or huge time is judged before any conversion.
constexpr bool isPlausibleUnixSeconds(double seconds) {
    return seconds >= static_cast<double>(kFirstPlausibleUnixSeconds) &&
           seconds < static_cast<double>(kLastPlausibleUnixSeconds + 1);
}

}  // namespace trotlet::metrics
