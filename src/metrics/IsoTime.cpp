#include "metrics/IsoTime.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

#include "metrics/TimeRange.h"

namespace trotlet::metrics {

using namespace std::chrono;

std::string formatIso8601(Timestamp t) {
    const auto ns = duration_cast<nanoseconds>(t.time_since_epoch());
    auto secs = floor<seconds>(ns);
    auto frac = (ns - secs).count();  // 0..999'999'999
    const auto days = floor<std::chrono::days>(secs);
    const year_month_day ymd{sys_days{days}};
    const hh_mm_ss hms{secs - days};
    char buf[64];
    int n = std::snprintf(buf, sizeof buf, "%04d-%02u-%02uT%02d:%02d:%02d", int(ymd.year()),
                          unsigned(ymd.month()), unsigned(ymd.day()), int(hms.hours().count()),
                          int(hms.minutes().count()), int(hms.seconds().count()));
    std::string out(buf, static_cast<size_t>(n));
    if (frac > 0) {
        char digits[32];
        std::snprintf(digits, sizeof digits, ".%09lld", static_cast<long long>(frac));
        std::string f(digits);
        while (f.back() == '0') f.pop_back();
        out += f;
    }
    out += 'Z';
    return out;
}

namespace {

bool digitsAt(std::string_view s, size_t pos, size_t count, int& value) {
    if (pos + count > s.size()) return false;
    value = 0;
    for (size_t i = 0; i < count; ++i) {
        const char c = s[pos + i];
        if (c < '0' || c > '9') return false;
        value = value * 10 + (c - '0');
    }
    return true;
}

}  // namespace

std::optional<Timestamp> parseIso8601(std::string_view s) {
    int y, mo, d, h, mi, se;
    if (!digitsAt(s, 0, 4, y) || s.size() < 19 || s[4] != '-' || !digitsAt(s, 5, 2, mo) ||
        s[7] != '-' || !digitsAt(s, 8, 2, d) || (s[10] != 'T' && s[10] != 't') ||
        !digitsAt(s, 11, 2, h) || s[13] != ':' || !digitsAt(s, 14, 2, mi) || s[16] != ':' ||
        !digitsAt(s, 17, 2, se))
        return std::nullopt;
    if (h > 23 || mi > 59 || se > 60) return std::nullopt;
    // Judged before any arithmetic: year 4200 in nanoseconds does not fit in 64 bits.
    if (!isPlausibleYear(y)) return std::nullopt;
    const year_month_day ymd{year{y}, month{static_cast<unsigned>(mo)},
                             day{static_cast<unsigned>(d)}};
    if (!ymd.ok()) return std::nullopt;
    size_t pos = 19;
    std::int64_t fracNs = 0;
    if (pos < s.size() && s[pos] == '.') {
        ++pos;
        int count = 0;
        std::int64_t scale = 100'000'000;
        while (pos < s.size() && s[pos] >= '0' && s[pos] <= '9') {
            if (count < 9) {
                fracNs += (s[pos] - '0') * scale;
                scale /= 10;
            }
            ++count;
            ++pos;
        }
        if (count == 0) return std::nullopt;
    }
    std::int64_t offsetSec = 0;
    if (pos < s.size() && (s[pos] == 'Z' || s[pos] == 'z')) {
        ++pos;
    } else if (pos < s.size() && (s[pos] == '+' || s[pos] == '-')) {
        const int sign = s[pos] == '-' ? -1 : 1;
        int oh, om;
        if (!digitsAt(s, pos + 1, 2, oh) || pos + 3 >= s.size() || s[pos + 3] != ':' ||
            !digitsAt(s, pos + 4, 2, om))
            return std::nullopt;
        offsetSec = sign * (oh * 3600 + om * 60);
        pos += 6;
    } else {
        return std::nullopt;
    }
    if (pos != s.size()) return std::nullopt;
    const auto total = sys_days{ymd}.time_since_epoch() + hours{h} + minutes{mi} + seconds{se} -
                       seconds{offsetSec};
    // An offset can still carry a boundary time across the edge ("1970-01-01T00:30:00+01:00").
    if (!isPlausibleUnixSeconds(static_cast<double>(total.count()))) return std::nullopt;
    return Timestamp(duration_cast<Timestamp::duration>(duration_cast<nanoseconds>(total) +
                                                        nanoseconds{fracNs}));
}

}  // namespace trotlet::metrics
