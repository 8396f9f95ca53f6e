#include "shop/Calendar.h"

#include <cmath>
#include <cstdio>

namespace trotlet::shop {

namespace {

long long floorDiv(double value, long long divisor) {
    return static_cast<long long>(std::floor(value / static_cast<double>(divisor)));
}

std::optional<long long> dayNumber(std::string_view key) {
    if (key.size() != 10 || key[4] != '-' || key[7] != '-') return std::nullopt;
    int parts[3] = {0, 0, 0};
    const size_t starts[3] = {0, 5, 8};
    const size_t lengths[3] = {4, 2, 2};
    for (int p = 0; p < 3; ++p) {
        for (size_t i = starts[p]; i < starts[p] + lengths[p]; ++i) {
            if (key[i] < '0' || key[i] > '9') return std::nullopt;
            parts[p] = parts[p] * 10 + (key[i] - '0');
        }
    }
    if (parts[1] < 1 || parts[1] > 12 || parts[2] < 1 || parts[2] > 31) return std::nullopt;
    const long long days = daysFromCivil(parts[0], static_cast<unsigned>(parts[1]), static_cast<unsigned>(parts[2]));
    const CivilDate check = civilFromDays(days);
    if (static_cast<int>(check.day) != parts[2]) return std::nullopt;
    return days;
}

std::string keyOfDayNumber(long long days) {
    const CivilDate date = civilFromDays(days);
    char text[24];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", date.year, date.month, date.day);
    return text;
}

}  // namespace

int Calendar::localHour(Timestamp t) const {
    const double local = localSeconds(t);
    const long long secondOfDay = static_cast<long long>(std::floor(local)) - floorDiv(local, 86400) * 86400;
    return static_cast<int>(secondOfDay / 3600);
}

bool Calendar::sameDay(Timestamp a, Timestamp b) const {
    return floorDiv(localSeconds(a), 86400) == floorDiv(localSeconds(b), 86400);
}

namespace DayKey {

std::string of(Timestamp t, const Calendar& calendar) {
    return keyOfDayNumber(floorDiv(calendar.localSeconds(t), 86400));
}

std::optional<Timestamp> startOf(std::string_view key, const Calendar& calendar) {
    const auto days = dayNumber(key);
    if (!days) return std::nullopt;
    const double localMidnight = static_cast<double>(*days) * 86400.0;
    // The offset depends on the moment we're looking for; two rounds settle it across a
    // daylight-saving change.
    double guess = localMidnight - static_cast<double>(calendar.utcOffsetSeconds(localMidnight));
    guess = localMidnight - static_cast<double>(calendar.utcOffsetSeconds(guess));
    return guess;
}

std::optional<long long> distance(std::string_view from, std::string_view to) {
    const auto a = dayNumber(from);
    const auto b = dayNumber(to);
    if (!a || !b) return std::nullopt;
    return *b - *a;
}

std::optional<std::string> offset(std::string_view key, long long days) {
    const auto n = dayNumber(key);
    if (!n) return std::nullopt;
    return keyOfDayNumber(*n + days);
}

bool isValid(std::string_view key) { return dayNumber(key).has_value(); }

}  // namespace DayKey

}  // namespace trotlet::shop
