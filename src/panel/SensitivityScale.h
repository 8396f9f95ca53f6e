#pragma once

namespace trotlet::panel {

// The speed sensitivity as the settings screen shows it. The setting is the exponent of the
// speed curve (speed = load ^ exponent); the slider shows position s = 2 × (1 − exponent) and
// writes exponent = 1 − 0.5 × s, so the default exponent 0.75 sits at 0.5.
//
// The slider runs from 0 (exponent 1: speed in plain proportion to the load) to 1.5 (exponent
// 0.25: a quarter of the load already gives 70 % of the top speed), in steps of 0.1. Beyond 1.5
// the curve is nearly flat at full speed and the gaits stop telling loads apart; below 0 an idle
// machine would crawl while a busy one still looked calm.
struct SensitivityScale {
    static constexpr int steps = 15;  // positions 0 … 15, each 0.1 of the slider
    static constexpr double stepSize = 0.1;
    static constexpr double minPosition = 0;                 // exponent 1
    static constexpr double maxPosition = steps * stepSize;  // 1.5, exponent 0.25

    // s = 2 × (1 − exponent), unclamped: a hand-edited exponent may lie outside the slider.
    static double positionFor(double exponent);
    // exponent = 1 − 0.5 × s, for s clamped to the slider's range.
    static double exponentAt(double position);
    // The step nearest to an exponent, clamped to 0 … steps.
    static int stepFor(double exponent);
    // The exponent a step writes: exactly 1 − step / 20, so every stop stores a short decimal.
    static double exponentAtStep(int step);
    // A word for the curve: "Steady", "Balanced", "Lively" or "Eager".
    static const char* word(double exponent);
};

}  // namespace trotlet::panel
