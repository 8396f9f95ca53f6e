#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "mascot/LocalCalendar.h"
#include "mascot/MascotBehavior.h"
#include "mascot/MascotMotion.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::mascot {

// The "mascot" block of a one-sample metrics dump: the mascot this sample would settle into if
// it held steady. One sample alone would never show panic (held 10 s), offline (3 s) or sleep
// (a calm minute), so the machine is stepped once a second over a simulated minute of the same
// sample, ending at the sample's time.
//
// Keys: "id", "state", "gait", "load", "cyclesPerSecond", "fps", "frames", "accessories" (the
// names of the charging, backpack, nightcap, sweat and umbrella bits that are set).
nlohmann::ordered_json mascotDumpBlock(const metrics::MetricsSnapshot& snapshot,
                                       const std::string& characterId,
                                       const MascotBehavior& behavior,
                                       const FrameEnvironment& frameSettings,
                                       const LocalCalendar& calendar);

// The state the mascot settles into when `snapshot` holds for a minute (the dump's mascot and
// the panel's screenshots).
MascotState settledMascotState(const metrics::MetricsSnapshot& snapshot,
                               const MascotCharacter& character, const MascotBehavior& behavior,
                               const LocalCalendar& calendar);

// The simulated stretch, in seconds; long enough for every hold the machine knows.
inline constexpr int dumpSettleSeconds = 60;

}  // namespace trotlet::mascot
