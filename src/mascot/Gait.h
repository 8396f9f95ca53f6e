#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace trotlet::mascot {

// The named pace of the mascot, slowest first; the order is meaningful (comparisons use it).
enum class Gait { napping, strolling, trotting, running, sprinting, zoomies };
inline constexpr std::array<std::string_view, 6> GaitNames = {"napping", "strolling", "trotting",
                                                              "running", "sprinting", "zoomies"};

// The gait for a smoothed load in 0...1.
Gait gaitForLoad(double load);

// The gait for a load given the one shown before: a ±0.03 margin around every threshold keeps a
// load hovering at a boundary from flipping the name on each sample.
Gait gaitFor(double load, std::optional<Gait> previous);

}  // namespace trotlet::mascot
