#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "shop/Timestamp.h"

namespace trotlet::shop {

// The user's calendar and time zone, as far as the economy needs it: the offset from UTC in
// force at a moment. Days, streaks and daily caps follow the user's local midnight, so the
// economy never asks the process's time zone itself; the app passes the system's zone in and
// tests pass a fixed or scripted one.
class Calendar {
public:
    virtual ~Calendar() = default;
    virtual long utcOffsetSeconds(Timestamp t) const = 0;

    // Local wall-clock seconds since the epoch (the UTC moment shifted by the zone's offset).
    double localSeconds(Timestamp t) const { return t + static_cast<double>(utcOffsetSeconds(t)); }
    // Local hour of day, 0-23.
    int localHour(Timestamp t) const;
    bool sameDay(Timestamp a, Timestamp b) const;
};

class FixedOffsetCalendar final : public Calendar {
public:
    explicit FixedOffsetCalendar(long offsetSeconds = 0) : offset_(offsetSeconds) {}
    long utcOffsetSeconds(Timestamp) const override { return offset_; }

private:
    long offset_;
};

// A zone given as a function, for zones with daylight-saving changes in tests.
class FunctionCalendar final : public Calendar {
public:
    explicit FunctionCalendar(std::function<long(Timestamp)> offset) : offset_(std::move(offset)) {}
    long utcOffsetSeconds(Timestamp t) const override { return offset_(t); }

private:
    std::function<long(Timestamp)> offset_;
};

// A calendar day as "yyyy-MM-dd" in the user's zone.
namespace DayKey {

std::string of(Timestamp t, const Calendar& calendar);
// The day's local midnight as a moment; none for text that is not a day key.
std::optional<Timestamp> startOf(std::string_view key, const Calendar& calendar);
// Whole calendar days from `from` to `to` (negative when `to` is earlier).
std::optional<long long> distance(std::string_view from, std::string_view to);
std::optional<std::string> offset(std::string_view key, long long days);
bool isValid(std::string_view key);

}  // namespace DayKey

}  // namespace trotlet::shop
