#include "weather/WeatherSchedule.h"

#include <algorithm>

namespace trotlet::weather {

UnixTime WeatherSchedule::backoffDelay(int failures) {
    if (failures < 1) return 0;
    // 60 × 2^(n−1) reaches the cap at n = 6; stop doubling there so large counts cannot overflow.
    UnixTime delay = kFirstBackoff;
    for (int i = 1; i < failures && delay < kMaxBackoff; ++i) delay *= 2;
    return std::min(delay, kMaxBackoff);
}

UnixTime WeatherSchedule::dueDate(UnixTime now, std::optional<UnixTime> reportFetchedAt,
                                  bool panelNeedsWeather) const {
    if (failureCount >= 1 && lastAttempt) {
        UnixTime backoffDue = *lastAttempt + backoffDelay(failureCount);
        if (retryOnOpen && panelNeedsWeather) {
            UnixTime early = std::max(now, *lastAttempt + kRetryOnOpenGap);
            return std::min(early, backoffDue);
        }
        return backoffDue;
    }
    if (reportFetchedAt) {
        UnixTime due = *reportFetchedAt + (panelNeedsWeather ? kPanelInterval : kMenuBarInterval);
        // A report stamped by a clock behind ours (the clock was set forward) would be due
        // again at once, forever; a minute after the last attempt is the soonest retry.
        if (lastAttempt) due = std::max(due, *lastAttempt + kRetryOnOpenGap);
        return due;
    }
    return now;
}

bool WeatherSchedule::networkChanged(bool satisfied) {
    const bool cameBack = pathSatisfied == false && satisfied;
    pathSatisfied = satisfied;
    if (cameBack && failureCount > 0) {
        failureCount = 0;
        return true;
    }
    return false;
}

}  // namespace trotlet::weather
