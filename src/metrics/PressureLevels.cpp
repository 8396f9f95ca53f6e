#include "metrics/PressureLevels.h"

namespace trotlet::metrics {

MemoryPressure MemoryPressureTracker::update(std::optional<double> someAvg10,
                                             std::optional<double> fullAvg10) {
    if (!someAvg10 || !fullAvg10) return level_ = MemoryPressure::unknown;
    const double some = *someAvg10, full = *fullAvg10;
    const bool wasCritical = level_ == MemoryPressure::critical;
    const bool wasWarning = level_ == MemoryPressure::warning || wasCritical;
    if (full >= levels_.criticalEnter || (wasCritical && full >= levels_.criticalExit))
        return level_ = MemoryPressure::critical;
    if (some >= levels_.warningEnter || (wasWarning && some >= levels_.warningExit))
        return level_ = MemoryPressure::warning;
    return level_ = MemoryPressure::normal;
}

ThermalState ThermalStateTracker::update(std::optional<double> cpuC, std::optional<double> limitC) {
    if (!cpuC) return state_ = ThermalState::nominal;
    const double limit = limitC && *limitC > 0 ? *limitC : levels_.defaultLimitC;
    const double below = limit - *cpuC;  // how far under the limit
    auto reached = [&](ThermalState s, double enterBelow) {
        // Holding a state already reached takes the exit margin; entering it does not.
        const double allowance = state_ >= s ? levels_.exitMarginC : 0;
        return below <= enterBelow + allowance;
    };
    if (reached(ThermalState::critical, levels_.criticalBelowLimitC)) return state_ = ThermalState::critical;
    if (reached(ThermalState::serious, levels_.seriousBelowLimitC)) return state_ = ThermalState::serious;
    if (reached(ThermalState::fair, levels_.fairBelowLimitC)) return state_ = ThermalState::fair;
    return state_ = ThermalState::nominal;
}

}  // namespace trotlet::metrics
