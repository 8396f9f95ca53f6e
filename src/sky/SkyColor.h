#pragma once

namespace trotlet::sky {

// An sRGB colour with channels in 0…1. The sky is decided in these, so its contrast with the
// header's text can be checked without a painter.
struct Rgb {
    double r = 0, g = 0, b = 0;
    bool operator==(const Rgb&) const = default;

    static constexpr Rgb hex(unsigned rgb) {
        return {double((rgb >> 16) & 0xFF) / 255.0, double((rgb >> 8) & 0xFF) / 255.0,
                double(rgb & 0xFF) / 255.0};
    }
};

// Straight interpolation, t = 0 gives a.
Rgb mix(Rgb a, Rgb b, double t);
// `above` painted over `below` at `alpha`.
inline Rgb over(Rgb below, Rgb above, double alpha) { return mix(below, above, alpha); }
// The grey of the same relative luminance, mixed in by `amount`.
Rgb desaturate(Rgb c, double amount);
// WCAG relative luminance, 0 (black) … 1 (white).
double luminance(Rgb c);
// WCAG contrast ratio, 1 … 21.
double contrast(Rgb a, Rgb b);

}  // namespace trotlet::sky
