#include "panel/SensitivityScale.h"

#include <algorithm>
#include <cmath>

namespace trotlet::panel {

double SensitivityScale::positionFor(double exponent) { return 2 * (1 - exponent); }

double SensitivityScale::exponentAt(double position) {
    return 1 - 0.5 * std::clamp(position, minPosition, maxPosition);
}

int SensitivityScale::stepFor(double exponent) {
    if (!std::isfinite(exponent)) return stepFor(0.75);
    const double step = std::round(positionFor(exponent) / stepSize);
    return int(std::clamp(step, 0.0, double(steps)));
}

double SensitivityScale::exponentAtStep(int step) {
    return double(20 - std::clamp(step, 0, steps)) / 20;
}

const char* SensitivityScale::word(double exponent) {
    const double s = positionFor(exponent);
    if (s < 0.25) return "Steady";
    if (s < 0.75) return "Balanced";
    if (s < 1.15) return "Lively";
    return "Eager";
}

}  // namespace trotlet::panel
