#pragma once

#include <optional>

#include "weather/WeatherReport.h"

namespace trotlet::weather {

// Who on screen needs the weather right now.
struct WeatherNeeds {
    bool placeChosen = false;
    bool panelOpen = false;
    bool showInHeader = true;
    bool cardVisible = false;
    bool showInMenuBar = false;

    bool panelNeedsWeather() const { return panelOpen && (showInHeader || cardVisible); }
    bool needsUpdates() const { return placeChosen && (panelNeedsWeather() || showInMenuBar); }
};

// The refresh and backoff rules of the weather store as a value over explicit times, so a
// test can replay a day of failures in a millisecond. The store owns one and feeds it events.
struct WeatherSchedule {
    static constexpr UnixTime kPanelInterval = 1200;    // 20 min while the panel shows the weather
    static constexpr UnixTime kMenuBarInterval = 1800;  // 30 min for the menu bar alone
    static constexpr UnixTime kFirstBackoff = 60;
    static constexpr UnixTime kMaxBackoff = 1800;
    static constexpr UnixTime kRetryOnOpenGap = 60;

    int failureCount = 0;
    std::optional<UnixTime> lastAttempt;
    // One early retry is allowed for the current opening of the panel.
    bool retryOnOpen = false;
    // The network path as last reported; unknown until the watch's first report.
    std::optional<bool> pathSatisfied;

    // 60, 120, 240, 480, 960, 1800, 1800 ... seconds for 1, 2, 3 ... failures.
    static UnixTime backoffDelay(int failures);

    // When the next fetch is due. `reportFetchedAt` is the fetch time of the report for the
    // chosen place, if there is one. While failing the backoff decides (an open panel may pull
    // one retry forward, but never closer than a minute to the last attempt); otherwise the
    // report's age decides (never sooner than a minute after the last attempt); with
    // neither, now.
    UnixTime dueDate(UnixTime now, std::optional<UnixTime> reportFetchedAt, bool panelNeedsWeather) const;

    void attempted(UnixTime now) {
        lastAttempt = now;
        retryOnOpen = false;
    }
    void succeeded() { failureCount = 0; }
    void failed() { ++failureCount; }
    void panelOpened() { retryOnOpen = true; }
    void panelClosed() { retryOnOpen = false; }
    void placeChanged() {
        failureCount = 0;
        lastAttempt.reset();
    }
    // A user's "try again": the failure state goes, the last attempt stays so the one-minute
    // gap of an open panel still holds against hammering the button.
    void retryNow() { failureCount = 0; }

    // The path watch runs only while failing.
    bool wantsNetworkWatch() const { return failureCount >= 1; }
    void watchStopped() { pathSatisfied.reset(); }
    // A path report. True when the path came back (known unsatisfied, now satisfied) while
    // failing: the backoff is reset and the caller fetches at once. A satisfied report after a
    // satisfied or unknown path changes nothing, because a firewall that blocks only this app
    // leaves the path satisfied.
    bool networkChanged(bool satisfied);
};

}  // namespace trotlet::weather
