#include "mascot/Gait.h"

namespace trotlet::mascot {

Gait gaitForLoad(double load) {
    if (load < 0.05) return Gait::napping;
    if (load < 0.2) return Gait::strolling;
    if (load < 0.45) return Gait::trotting;
    if (load < 0.7) return Gait::running;
    if (load < 0.9) return Gait::sprinting;
    return Gait::zoomies;
}

Gait gaitFor(double load, std::optional<Gait> previous) {
    const Gait g = gaitForLoad(load);
    if (!previous || g == *previous) return g;
    if (gaitForLoad(load - 0.03) == *previous || gaitForLoad(load + 0.03) == *previous)
        return *previous;
    return g;
}

}  // namespace trotlet::mascot
