#include "sky/SkyColor.h"

#include <algorithm>
#include <cmath>

namespace trotlet::sky {
namespace {

double linear(double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); }
double encoded(double c) {
    return c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
}

}  // namespace

Rgb mix(Rgb a, Rgb b, double t) {
    t = std::clamp(t, 0.0, 1.0);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

Rgb desaturate(Rgb c, double amount) {
    const double grey = std::clamp(encoded(luminance(c)), 0.0, 1.0);
    return mix(c, Rgb{grey, grey, grey}, amount);
}

double luminance(Rgb c) {
    return 0.2126 * linear(c.r) + 0.7152 * linear(c.g) + 0.0722 * linear(c.b);
}

double contrast(Rgb a, Rgb b) {
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

}  // namespace trotlet::sky
