#pragma once

#include <string>
#include <vector>

#include "shop/DailyCounters.h"

namespace trotlet::reports {

// The distance the mascots have run, as the header's odometer and the Paw Report show it.
struct MascotDistance {
    std::string id;
    std::string name;  // "Mochi"; the id when the catalog does not know it
    double meters = 0;
    bool operator==(const MascotDistance&) const = default;
};

struct PawTrack {
    double todayMeters = 0;
    double lifetimeMeters = 0;
    std::vector<MascotDistance> byMascot;  // longest first, mascots that ran at all
    double marathonFraction = 0;           // of the Marathon achievement's goal, 0…1
    bool marathonDone = false;
    bool operator==(const PawTrack&) const = default;
};

inline constexpr double trackLapMeters = 400;
inline constexpr double marathonMeters = 42195;

PawTrack pawTrack(const shop::DailyCounters& today, const shop::LifetimeStats& lifetime);

// "640 m", "3.42 km", "18.6 km", "131 km", "1,204 km".
std::string distanceText(double meters);
// What a distance compares with, for a reader who cannot picture kilometres: a share of one
// lap or laps of a 400 m track for a day's run, a marathon's share or marathons beyond that.
// "Half a lap of a 400 m track", "8.6 laps of a 400 m track", "12% of a marathon",
// "3.1 marathons". Empty for no distance at all.
std::string comparisonText(double meters);
// The same in few words for a card: "Half a lap", "8.6 track laps", "29% of a marathon".
std::string shortComparisonText(double meters);
// "38% of the way to Marathon", or "Marathon reached".
std::string marathonText(const PawTrack& track);

}  // namespace trotlet::reports
