#pragma once

#include <optional>
#include <string>

#include "mascot/LoadSource.h"
#include "mascot/MascotState.h"
#include "menubar/DisplayUnits.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::mascot {

// The one-sentence caption under the mascot in the panel header, in the mascot's own voice.
// A pure function of the state, the sample and a time: each mood has three variants and the
// caption moves to the next every 8 seconds. Numbers come from the sample through Format;
// a missing reading is left unsaid, never invented.
namespace MoodLine {

// A short reading of one source: "CPU 37%", "GPU idle", "Memory 64%", "Down 1.2 MB/s".
std::string reading(const metrics::MetricsSnapshot& snapshot, LoadSource source);

// The caption. `date` absent uses the sample's time.
std::string text(const MascotState& state, const metrics::MetricsSnapshot& snapshot,
                 const std::string& name, std::optional<metrics::Timestamp> date,
                 LoadSource source, menubar::TemperatureUnit unit);

// The 8-second slot of a time, counted from 1 January 2001 UTC (negative before it).
long long slot(metrics::Timestamp t);

}  // namespace MoodLine

}  // namespace trotlet::mascot
