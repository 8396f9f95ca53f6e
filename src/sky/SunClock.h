#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "weather/WeatherReport.h"

namespace trotlet::sky {

// The sky's four looks through a day.
enum class SkyPhase { dawn, day, dusk, night };
inline constexpr std::array<std::string_view, 4> SkyPhaseNames = {"dawn", "day", "dusk", "night"};

// Sunrise and sunset at a place on one day, as minutes after its local midnight; or a day
// without either, when the sun stays up (polar day) or down (polar night).
struct DayLight {
    enum class Kind { normal, polarDay, polarNight };
    Kind kind = Kind::normal;
    double sunrise = 6 * 60;
    double sunset = 18 * 60;
    double minuteOfDay = 12 * 60;  // now, at the place
    bool operator==(const DayLight&) const = default;
};

// The day at the place of `report` at `now`: its local time from the report's UTC offset, the
// sun from the day's sunrise and sunset. Without a report (or past its days) the day runs
// 06:00 to 18:00 by the local clock of `fallbackOffsetSeconds`. A day whose sunset does not
// follow its sunrise within the day is a polar one, day or night by the forecast's day flag.
DayLight dayLightAt(const weather::WeatherReport* report, weather::UnixTime now,
                    int fallbackOffsetSeconds);

// Where the sun is: `elevation` runs from -1 (deep night) through 0 (sunrise, sunset) to 1 (the
// middle of the day); `progress` is the share of the day (sun up) or of the night (sun down)
// gone by, which places the sun or the moon on its arc.
struct SunClock {
    SkyPhase phase = SkyPhase::day;
    double elevation = 1;
    double progress = 0.5;
    bool operator==(const SunClock&) const = default;
};

// The phase follows the elevation: day from 0.3, night below -0.45, dawn or dusk between (by
// whether sunrise or sunset is nearer), so the twilight lasts from about 40 minutes before the
// sun to about an hour after it.
SunClock sunClock(const DayLight& light);
// A typical moment of a phase, for screenshots.
SunClock sunClockFor(SkyPhase phase);

// The moon's age as a share of its cycle: 0 new, 0.5 full.
double moonPhase(weather::UnixTime at);

}  // namespace trotlet::sky
