#include "shop/Timestamp.h"

#include <cmath>
#include <cstdio>

#include "metrics/TimeRange.h"

namespace trotlet::shop {

long long daysFromCivil(int year, unsigned month, unsigned day) {
    const long long y = static_cast<long long>(year) - (month <= 2 ? 1 : 0);
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long long>(doe) - 719468;
}

CivilDate civilFromDays(long long z) {
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long y = static_cast<long long>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    return {static_cast<int>(y + (m <= 2 ? 1 : 0)), m, d};
}

std::string formatIso8601(Timestamp t) {
    long long millis = std::llround(t * 1000.0);
    long long seconds = millis >= 0 ? millis / 1000 : -((-millis + 999) / 1000);
    const int fraction = static_cast<int>(millis - seconds * 1000);
    long long days = seconds >= 0 ? seconds / 86400 : -((-seconds + 86399) / 86400);
    const long long secondOfDay = seconds - days * 86400;
    const CivilDate date = civilFromDays(days);
    char text[48];
    if (fraction == 0) {
        std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02lld:%02lld:%02lldZ", date.year, date.month,
                      date.day, secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60);
    } else {
        std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02lld:%02lld:%02lld.%03dZ", date.year,
                      date.month, date.day, secondOfDay / 3600, secondOfDay / 60 % 60,
                      secondOfDay % 60, fraction);
    }
    return text;
}

namespace {

bool digits(std::string_view text, size_t at, size_t count, int& out) {
    if (at + count > text.size()) return false;
    int value = 0;
    for (size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9') return false;
        value = value * 10 + (text[i] - '0');
    }
    out = value;
    return true;
}

}  // namespace

std::optional<Timestamp> parseIso8601(std::string_view text) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (!digits(text, 0, 4, year) || text.size() < 20 || text[4] != '-' || !digits(text, 5, 2, month) ||
        text[7] != '-' || !digits(text, 8, 2, day) || (text[10] != 'T' && text[10] != 't') ||
        !digits(text, 11, 2, hour) || text[13] != ':' || !digits(text, 14, 2, minute) ||
        text[16] != ':' || !digits(text, 17, 2, second))
        return std::nullopt;
    if (month < 1 || month > 12 || day < 1 || hour > 23 || minute > 59 || second > 60)
        return std::nullopt;
    if (!metrics::isPlausibleYear(year)) return std::nullopt;
    const CivilDate roundTrip = civilFromDays(daysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)));
    if (static_cast<int>(roundTrip.month) != month) return std::nullopt;  // 2026-02-30 and friends

    size_t at = 19;
    double fraction = 0;
    if (at < text.size() && text[at] == '.') {
        ++at;
        double scale = 0.1;
        const size_t start = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9') {
            fraction += (text[at] - '0') * scale;
            scale /= 10;
            ++at;
        }
        if (at == start) return std::nullopt;
    }
    int offsetSeconds = 0;
    if (at < text.size() && (text[at] == 'Z' || text[at] == 'z')) {
        ++at;
    } else if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        int oh = 0, om = 0;
        if (!digits(text, at + 1, 2, oh) || at + 3 >= text.size() || text[at + 3] != ':' ||
            !digits(text, at + 4, 2, om) || oh > 23 || om > 59)
            return std::nullopt;
        offsetSeconds = (oh * 3600 + om * 60) * (text[at] == '-' ? -1 : 1);
        at += 6;
    } else {
        return std::nullopt;
    }
    if (at != text.size()) return std::nullopt;
    const long long days = daysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
    const long long seconds = days * 86400 + hour * 3600 + minute * 60 + second - offsetSeconds;
    // Keep to milliseconds so that format(parse(x)) is stable.
    const Timestamp moment = static_cast<double>(seconds) + std::round(fraction * 1000.0) / 1000.0;
    // An offset can still carry a boundary time across the edge ("1970-01-01T00:30:00+01:00").
    if (!metrics::isPlausibleUnixSeconds(moment)) return std::nullopt;
    return moment;
}

}  // namespace trotlet::shop
