#include "menubar/Format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace trotlet::menubar {
namespace {

// std::to_chars ignores the C locale entirely, unlike printf, which follows LC_NUMERIC.
std::string toFixed(double x, int decimals) {
    if (std::isnan(x)) return "nan";
    if (decimals < 0) decimals = 0;
    // Room for the largest double's 309 integer digits, the sign, the point and the decimals.
    std::string out(static_cast<size_t>(decimals) + 320, '\0');
    auto [end, ec] = std::to_chars(out.data(), out.data() + out.size(), x,
                                   std::chars_format::fixed, decimals);
    if (ec != std::errc()) return std::isinf(x) ? (x < 0 ? "-inf" : "inf") : "?";
    out.resize(static_cast<size_t>(end - out.data()));
    // "-0" and "-0.0" are artefacts of rounding a tiny negative number, never a reading.
    if (!out.empty() && out[0] == '-' && out.find_first_not_of("-0.") == std::string::npos)
        out.erase(0, 1);
    return out;
}

// Half away from zero, as people round; large or non-finite input saturates instead of
// overflowing the integer.
long long roundedWhole(double x) {
    constexpr double limit = 9.0e15;
    if (std::isnan(x)) return 0;
    return static_cast<long long>(std::round(std::clamp(x, -limit, limit)));
}

std::string wholeText(long long n) {
    std::array<char, 24> buffer{};
    auto [end, ec] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), n);
    return ec == std::errc() ? std::string(buffer.data(), end) : std::string("0");
}

// The magnitude shown for rates below one unit: a trickle reads as nothing moving.
Format::Parts scaledRate(double k, const std::array<const char*, 3>& units, double divisor) {
    int step = 0;
    while (step < 2 && k >= 1000) {
        k /= divisor;
        ++step;
    }
    return {toFixed(k, k < 10 ? 1 : 0), units[step], k};
}

}  // namespace

std::string Format::Parts::joined() const { return unit.empty() ? value : value + " " + unit; }

std::string Format::fixed(int decimals, double x) { return toFixed(x, decimals); }

std::string Format::percent(double fraction) { return percentParts(fraction).value + "%"; }

Format::Parts Format::percentParts(double fraction) {
    long long whole = roundedWhole(fraction * 100);
    if (whole < 0) whole = 0;
    return {wholeText(whole), "%", static_cast<double>(whole)};
}

Format::Parts Format::temperatureParts(double celsius, TemperatureUnit unit) {
    const bool f = unit == TemperatureUnit::fahrenheit;
    long long whole = roundedWhole(f ? celsius * 9 / 5 + 32 : celsius);
    return {wholeText(whole), f ? "°F" : "°C", static_cast<double>(whole)};
}

Format::Parts Format::rateParts(double bytesPerSecond, bool bits) {
    const double rate = std::isfinite(bytesPerSecond) ? std::max(bytesPerSecond, 0.0)
                        : bytesPerSecond > 0          ? 1e300
                                                      : 0.0;
    if (bits) {
        // Bit rates are decimal throughout, as network gear quotes them.
        const double k = rate * 8 / 1000;
        if (k < 1) return {"0", "Kbps", 0};
        return scaledRate(k, {"Kbps", "Mbps", "Gbps"}, 1000);
    }
    // Byte rates step up at 1000 but divide by 1024, so 1000 KB/s already shows as 1.0 MB/s;
    // the item never needs room for a four-digit KB/s figure for long.
    const double k = rate / 1024;
    if (bytesPerSecond < 0 || k < 1) return {"0", "KB/s", 0};
    return scaledRate(k, {"KB/s", "MB/s", "GB/s"}, 1024);
}

std::string Format::bytes(double count) { return bytesParts(count).joined(); }

Format::Parts Format::bytesParts(double count) {
    static constexpr std::array<const char*, 6> units = {"B", "KB", "MB", "GB", "TB", "PB"};
    if (!std::isfinite(count)) count = 0;
    if (count < 1000) {
        long long whole = static_cast<long long>(count);
        return {wholeText(whole), "B", static_cast<double>(whole)};
    }
    double x = count;
    size_t step = 0;
    while (x >= 1000 && step < 5) {
        x /= 1024;
        ++step;
    }
    const int decimals = x >= 100 ? 0 : x >= 10 ? 1 : 2;
    return {toFixed(x, decimals), units[step], x};
}

std::string Format::duration(double seconds) {
    long long n = std::isfinite(seconds) && seconds > 0
                      ? static_cast<long long>(std::min(seconds, 9.0e15))
                      : 0;
    char buffer[64];
    if (n < 3600) {
        std::snprintf(buffer, sizeof buffer, "%lldm", n / 60);
    } else if (n < 86400) {
        std::snprintf(buffer, sizeof buffer, "%lldh %lldm", n / 3600, n % 3600 / 60);
    } else {
        std::snprintf(buffer, sizeof buffer, "%lldd %lldh", n / 86400, n % 86400 / 3600);
    }
    return buffer;
}

}  // namespace trotlet::menubar
